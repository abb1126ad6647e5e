// Writes what the sockets of a thread carry to capture files.
#pragma once

#include "host/inner/pcapng.h"
#include "host/inner/secrets.h"
#include "net/door/endpoint.h"
#include "net/inner/end_watcher.h"
#include "net/inner/recorder.h"

#include <map>
#include <memory>
#include <vector>

namespace zet
{
class System;
}

namespace host::inner
{

// Command sockets over TCP and UDP and net sessions. A connection over TCP becomes a made TCP connection with the
// packets of its byte stream, also where TLS encrypted them; one over UDP becomes datagrams, each with one command of
// its stream and the length before it. A comment at its first and at its last packet tells its life.
//
// In each further file an open connection begins anew, so that the file can be read alone. THREADS: that of start().
class SocketRecorder final : private zet::inner::Recorder, private zet::inner::EndWatcher
{
public:
    // Bytes that one connection may have sent before it is established; more are dropped.
    static constexpr size_t kMostHeld = 0x100000;

    SocketRecorder(zet::System& system, const zet::String_T<wchar_t>& path, uint64_t fileSize, int files);
    ~SocketRecorder();

    // False and logged if the file cannot be written, or the thread has a recorder.
    bool start();
    // The file is complete then.
    void stop();
    // False also after a failure, which the log has.
    bool isOn() const { return m_IsOn; }

    // Packets of commands and messages. A dropped one is counted in both.
    const PcapngFile::Counts& getCounts() const { return m_Counts; }

private:
    struct Flow;
    struct Held
    {
        Direction m_Direction;
        std::vector<unsigned char> m_Packet;
    };

    void onEstablished(zet::ConnectionEvents& connection) noexcept override;
    void onPacket(zet::ConnectionEvents& connection, Direction direction,
                  std::span<const unsigned char> packet) noexcept override;
    void onWatchedEnd(const zet::ConnectionEvents& connection, zet::EndCause cause) noexcept override;

    // Calls it; ends the recording where the file has failed or memory is short.
    template <class Call>
    void guard(Call call) noexcept;
    void end(const std::string& reason);
    // Null for a connection that is not recorded.
    Flow* flowOf(zet::ConnectionEvents& connection);
    void open(Flow& flow, const std::string& life);
    void addPacket(Flow& flow, Direction direction, std::span<const unsigned char> packet);
    void addEnd(Flow& flow, zet::EndCause cause);
    // Ensures that the file has space for the bytes, and the beginning of the flow.
    void prepare(Flow& flow, uint64_t size);
    void addOpening(Flow& flow, const std::string& comment);
    void addEvent(Flow& flow, const std::string& comment);
    void addSegment(Flow& flow, Direction direction, unsigned int flags, std::string_view payload,
                    const std::string& comment);
    void addDatagram(Flow& flow, Direction direction, std::string_view payload, const std::string& comment);
    void takeEnds(Flow& flow) const;

    zet::System& m_System;
    zet::String_T<wchar_t> m_Path;
    uint64_t m_FileSize;
    PcapngFile m_File;
    // Counts the files.
    unsigned int m_FileNumber = 1;
    PcapngFile::Counts m_Counts;
    bool m_IsOn = false;
    std::map<const zet::ConnectionEvents*, std::unique_ptr<Flow>> m_Flows;
};

} // namespace host::inner
