// What the log says about the bytes of one peer, within bounds.
#pragma once

#include "framework/string.h"

namespace zet
{

// A peer's share of the log. Of what the library reports about bytes that the peer sent, such as malformed frames and
// unknown commands, the first lines are logged, and from then on a few in a second; those left out are counted, and the
// next line, or the end of the connection, says how many they were. Lines that a host logs have no bound here. An
// object belongs to one thread at a time; the static operations are for any thread.
class COMMONGROUND_API PeerLog
{
public:
    // Lines that are logged at once, and milliseconds until there is room for one more.
    static constexpr unsigned int kBurst = 32;
    static constexpr unsigned int kInterval = 250;

    // The name of a peer, asked for when its lines are left out.
    using NameOf = String_T<wchar_t> (*)(const void* peer);

    PeerLog() = default;
    // As finish().
    ~PeerLog();
    PeerLog(const PeerLog&) = delete;
    PeerLog& operator=(const PeerLog&) = delete;

    // Logs how many lines were left out since the last one, if any were, and begins anew for another connection.
    // Without memory that line is lost.
    void finish() noexcept;

    // What this thread reports is about a peer's bytes as long as it lives. The share must outlive it.
    class COMMONGROUND_API Scope
    {
    public:
        Scope(PeerLog& share, const void* peer, NameOf nameOf);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        friend class PeerLog;

        PeerLog& m_Share;
        const void* const m_Peer;
        const NameOf m_NameOf;
        const Scope* const m_Before;
    };

    // Asked by the library before it reports such a line: whether the share of the peer whose scope this thread is in
    // has room for it. True outside of a scope. Takes the room, or counts the line.
    static bool takesLine();
    // Lines left out since the start of the process.
    static unsigned long long getLeftOut();

private:
    bool takes(const Scope& scope);
    void sayLeftOut();

    unsigned int m_Room = kBurst;
    // When room was added last, as getTimeTick() gives it.
    unsigned int m_Refilled = 0;
    unsigned long long m_LeftOut = 0;
    // Of the peer, once lines were left out.
    String_T<wchar_t> m_Name;
};

} // namespace zet
