// Decodes the commands of captured packets: TCP connections put together in both directions, and single datagrams.
#pragma once

#include "tools/capture/capture_file.h"
#include "tools/capture/packet_finder.h"
#include "tools/frame_decoder.h"
#include "tools/json_text.h"
#include "tools/pack_types.h"

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace tools
{

// What was lost, skipped or given up. The place is a connection with its direction, or empty.
struct Notice
{
    int64_t m_Time = 0;
    std::string m_Connection;
    const char* m_Direction = "";
    std::string m_What;
    uint64_t m_Offset = 0;
    uint64_t m_Skipped = 0;
};

struct CaptureTotals
{
    uint64_t m_Packets = 0;
    uint64_t m_Commands = 0;
    // Bytes of connections that are not in the capture, and captured ones that belong to no whole packet.
    uint64_t m_LostBytes = 0;
    uint64_t m_SkippedBytes = 0;
    uint64_t m_Fragments = 0;
    uint64_t m_OtherPackets = 0;
    uint64_t m_BadPackets = 0;
    uint64_t m_OtherDatagrams = 0;
    // Of net sessions, without a command.
    uint64_t m_OtherMessages = 0;
    uint64_t m_GivenUp = 0;
};

// "2026-01-31T12:00:00.000001Z", of microseconds since 1970.
std::string timeText(int64_t time);

// A line has "time", "connection" ("client-server") and "direction" ("to_server" or "to_client"), then what the line
// of the same frame from a FrameDecoder has. The client sent the SYN; where none was seen it has the higher port. The
// command of a net session has "session" before that, with the class and the addresses of its message; another message
// has "session" and "size" only.
//
// Memory is bounded: at most one packet of commands and TcpDirection::kMostAhead bytes per direction, and the limits
// for all connections. Beyond them the connection that was idle for the longest time ends, with a notice.
class CaptureDecoder
{
public:
    struct Limits
    {
        size_t m_Connections = 4096;
        size_t m_HeldBytes = 0x3000000;
    };

    CaptureDecoder(Tell tell, std::function<void(const Notice&)> notice, const Limits& limits);
    CaptureDecoder(Tell tell, std::function<void(const Notice&)> notice)
        : CaptureDecoder(std::move(tell), std::move(notice), Limits())
    {
    }
    ~CaptureDecoder();

    // Called with each command itself, before its line, with its time, connection and direction.
    using TakeFrame = std::function<void(int64_t time, const std::string& connection, std::string_view direction,
                                         const CCmdPackager& frame)>;
    void setTakeFrame(TakeFrame take) { m_TakeFrame = std::move(take); }

    // Counts commands instead of reporting them, and does not read their fields. Not owned.
    void setCounts(CommandCounts* counts) { m_Counts = counts; }
    // Opens the messages of packs, and tunnels in tunnels. Not owned.
    void setPackTypes(const PackTypes* types) { m_PackTypes = types; }
    void add(const CapturedPacket& captured);
    // Ends all connections. Nothing may be added after it.
    void finish();

    const CaptureTotals& totals() const { return m_Totals; }
    size_t connections() const { return m_Connections.size(); }
    size_t held() const { return m_Held; }

private:
    struct Side;
    struct Connection;
    using Key = std::pair<Endpoint, Endpoint>;

    void addTcp(const Packet& packet);
    void addDatagram(const Packet& packet);
    Connection& connectionOf(const Packet& packet);
    void startSide(Side& side, const Packet& packet);
    void end(Connection& connection);
    void bound();
    void beginLine(const std::string& connection, const char* direction, const uint64_t* offset);
    void tell(const std::string& connection, const char* direction, const CCmdPackager& frame, const uint64_t* offset,
              const NetPacketView* message);
    void addMessageLine(const std::string& connection, const char* direction, std::string_view className,
                        uint64_t offset, uint64_t size);

    Tell m_Tell;
    std::function<void(const Notice&)> m_Notice;
    TakeFrame m_TakeFrame;
    Limits m_Limits;
    const PackTypes* m_PackTypes = nullptr;
    CommandCounts* m_Counts = nullptr;
    CaptureTotals m_Totals;
    JsonText m_Line;
    // The time of the packet being added.
    int64_t m_Now = 0;
    // The one used last is the first.
    std::list<Connection> m_Connections;
    std::map<Key, std::list<Connection>::iterator> m_ByKey;
    size_t m_Held = 0;
};

} // namespace tools
