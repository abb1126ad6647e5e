// Bounds the log lines about the bytes of one peer.
#pragma once

#include "framework/string.h"

namespace zet
{

// A peer's share of the log. Of the library's lines about the peer's bytes, such as malformed frames and unknown
// commands, the first ones are logged, then a few per second; the omitted ones are counted, and the next line or the
// end of the connection reports their number. Lines that a host logs are not bounded. An object belongs to one thread
// at a time; the static operations may be called from any thread.
class COMMONGROUND_API PeerLog
{
public:
    // Lines that may be logged at once, and milliseconds until one more is allowed.
    static constexpr unsigned int kBurst = 32;
    static constexpr unsigned int kInterval = 250;

    // The number of lines at once, 0 for no limit, and the milliseconds until one more line, 0 for never.
    struct Rate
    {
        // Of a number of lines at once and a number per second; 0 or less as NetLimits::m_LogLines has it.
        static Rate of(int lines, int perSecond)
        {
            const int interval = perSecond > 1000 ? 1 : perSecond > 0 ? 1000 / perSecond : 0;
            return {lines > 0 ? static_cast<unsigned int>(lines) : 0, static_cast<unsigned int>(interval)};
        }

        unsigned int m_Burst = kBurst;
        unsigned int m_Interval = kInterval;
    };

    // Returns the name of the peer; called when lines are omitted.
    using NameOf = String_T<wchar_t> (*)(const void* peer);
    // Returns the rate of the peer; called before the first line about a connection.
    using RateOf = Rate (*)(const void* peer);

    PeerLog() = default;
    // Calls finish().
    ~PeerLog();
    PeerLog(const PeerLog&) = delete;
    PeerLog& operator=(const PeerLog&) = delete;

    // Logs the number of lines omitted since the last one, if any, and resets the share for another connection.
    // Without memory that line is lost.
    void finish() noexcept;

    // While it lives, this thread's reports are about the peer of the share, which must outlive it.
    class COMMONGROUND_API Scope
    {
    public:
        // Both must outlive this object. It must be destroyed on the same thread, before any that was made earlier.
        // Without rateOf the rate is kBurst and kInterval.
        Scope(PeerLog& share, const void* peer, NameOf nameOf, RateOf rateOf = nullptr);
        ~Scope();
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

    private:
        friend class PeerLog;

        PeerLog& m_Share;
        const void* const m_Peer;
        const NameOf m_NameOf;
        const RateOf m_RateOf;
        const Scope* const m_Before;
    };

    // Called by the library before it logs such a line: whether the current scope's share allows it. True outside of a
    // scope. Uses one line of the share, or counts the line as omitted.
    static bool takesLine();
    // Lines omitted since the start of the process.
    static unsigned long long getLeftOut();

private:
    struct Share;

    bool takes(const Scope& scope);
    void sayLeftOut();

    // Null until the peer has caused a line: most never do. Owned.
    Share* m_Used = nullptr;
};

} // namespace zet
