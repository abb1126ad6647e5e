#include "tools/capture/capture_decoder.h"

#include "tools/capture/session_message.h"
#include "tools/frame_reader.h"

#include <algorithm>
#include <chrono>
#include <cstdio>

namespace tools
{

namespace
{

// A SYN up to this far before the first captured byte belongs to the same connection.
constexpr uint32_t kLateSyn = 0x100000;

bool isServer(const Endpoint& one, const Endpoint& other)
{
    return one.m_Port < other.m_Port;
}

std::string nameOf(const Endpoint& client, const Endpoint& server)
{
    return textOf(client) + "-" + textOf(server);
}

bool isDatagramFrame(std::string_view bytes)
{
    CCmdPackager frame;
    return bytes.size() > 2 && isKnownId(bytes) &&
           frame.Unpack(bytes.data(), static_cast<int>(bytes.size())) == static_cast<int>(bytes.size());
}

constexpr size_t kStreamLength = 2;

// The frame at the beginning of a stream's bytes; empty without a whole one.
std::string_view nextOfStream(std::string_view bytes)
{
    if (bytes.size() < kStreamLength)
        return {};
    const auto low = static_cast<unsigned char>(bytes[0]);
    const auto high = static_cast<unsigned char>(bytes[1]);
    // The length is a signed number.
    const size_t length = high > 0x7F ? 0 : static_cast<size_t>(high << 8 | low);
    return length > bytes.size() - kStreamLength ? std::string_view() : bytes.substr(kStreamLength, length);
}

// Whether the bytes are whole frames with their lengths, and at least one.
bool isDatagramStream(std::string_view bytes)
{
    if (bytes.empty())
        return false;
    while (!bytes.empty())
    {
        const std::string_view frame = nextOfStream(bytes);
        if (!isDatagramFrame(frame))
            return false;
        bytes.remove_prefix(kStreamLength + frame.size());
    }
    return true;
}

} // namespace

std::string timeText(int64_t time)
{
    using namespace std::chrono;
    const sys_time<microseconds> at{microseconds(time)};
    const auto day = floor<days>(at);
    const year_month_day date(day);
    const hh_mm_ss clock(at - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02d.%06dZ", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()), static_cast<int>(clock.subseconds().count()));
    return text;
}

// One direction of a connection.
struct CaptureDecoder::Side final : public FinderSink
{
    Side(CaptureDecoder& decoder, const Connection& connection) : m_Decoder(decoder), m_Connection(connection) {}

    void onFrame(const CCmdPackager& frame, uint64_t offset, const NetPacketView* message) override;
    void onMessage(std::string_view className, uint64_t offset, uint64_t size) override;
    void onNotice(const std::string& what, uint64_t offset, uint64_t skipped) override;
    void onLoss(uint64_t size) override { m_Decoder.m_Totals.m_LostBytes += size; }
    const char* direction() const;

    size_t held() const { return m_Bytes.held() + m_Finder.held(); }
    void finish()
    {
        m_Bytes.finish(m_Finder);
        m_Finder.finish();
    }

    CaptureDecoder& m_Decoder;
    const Connection& m_Connection;
    TcpDirection m_Bytes;
    PacketFinder m_Finder{*this};
};

struct CaptureDecoder::Connection
{
    Connection(CaptureDecoder& decoder, const Key& key) : m_Key(key), m_First(decoder, *this), m_Second(decoder, *this)
    {
        setClient(!isServer(key.first, key.second));
    }

    void setClient(bool isFirst)
    {
        m_IsFirstClient = isFirst;
        m_Name = isFirst ? nameOf(m_Key.first, m_Key.second) : nameOf(m_Key.second, m_Key.first);
    }
    size_t held() const { return m_First.held() + m_Second.held(); }

    Key m_Key;
    bool m_IsFirstClient = true;
    std::string m_Name;
    // What the first and what the second endpoint sends.
    Side m_First;
    Side m_Second;
};

const char* CaptureDecoder::Side::direction() const
{
    return (this == &m_Connection.m_First) == m_Connection.m_IsFirstClient ? "to_server" : "to_client";
}

void CaptureDecoder::Side::onFrame(const CCmdPackager& frame, uint64_t offset, const NetPacketView* message)
{
    m_Decoder.tell(m_Connection.m_Name, direction(), frame, &offset, message);
}

void CaptureDecoder::Side::onMessage(std::string_view className, uint64_t offset, uint64_t size)
{
    m_Decoder.addMessageLine(m_Connection.m_Name, direction(), className, offset, size);
}

void CaptureDecoder::Side::onNotice(const std::string& what, uint64_t offset, uint64_t skipped)
{
    m_Decoder.m_Totals.m_SkippedBytes += skipped;
    m_Decoder.m_Notice({m_Decoder.m_Now, m_Connection.m_Name, direction(), what, offset, skipped});
}

CaptureDecoder::CaptureDecoder(Tell tell, std::function<void(const Notice&)> notice, const Limits& limits)
    : m_Tell(std::move(tell)), m_Notice(std::move(notice)), m_Limits(limits)
{
}

CaptureDecoder::~CaptureDecoder() = default;

void CaptureDecoder::beginLine(const std::string& connection, const char* direction, const uint64_t* offset)
{
    m_Line.clear();
    m_Line.put("{\"time\":\"");
    m_Line.put(timeText(m_Now));
    m_Line.put("\",\"connection\":\"");
    m_Line.put(connection);
    m_Line.put("\",\"direction\":\"");
    m_Line.put(std::string_view(direction));
    m_Line.put("\",");
    if (offset)
    {
        m_Line.put("\"offset\":");
        m_Line.addInteger(static_cast<long long>(*offset));
        m_Line.put(',');
    }
}

void CaptureDecoder::tell(const std::string& connection, const char* direction, const CCmdPackager& frame,
                          const uint64_t* offset, const NetPacketView* message)
{
    ++m_Totals.m_Commands;
    if (m_Counts)
        return m_Counts->add(frame.GetCmdID(), static_cast<uint64_t>(frame.GetDataSize()), m_Now);
    if (m_TakeFrame)
        m_TakeFrame(m_Now, connection, direction, frame);
    beginLine(connection, direction, offset);
    if (message)
        addSessionMessage(m_Line, *message);
    const bool isGood = addCommand(m_Line, frame, true, m_PackTypes);
    m_Line.put('}');
    m_Tell(m_Line.view(), !isGood);
}

void CaptureDecoder::addMessageLine(const std::string& connection, const char* direction, std::string_view className,
                                    uint64_t offset, uint64_t size)
{
    ++m_Totals.m_OtherMessages;
    if (m_Counts)
        return;
    beginLine(connection, direction, &offset);
    addSessionMessage(m_Line, className, size);
    m_Line.put('}');
    m_Tell(m_Line.view(), false);
}

void CaptureDecoder::add(const CapturedPacket& captured)
{
    ++m_Totals.m_Packets;
    m_Now = captured.m_Time;
    const Packet packet = packetOf(captured.m_Link, captured.m_Bytes);
    switch (packet.m_Kind)
    {
    case Packet::Kind::kTcp:
        return addTcp(packet);
    case Packet::Kind::kUdp:
        return addDatagram(packet);
    case Packet::Kind::kFragment:
        ++m_Totals.m_Fragments;
        return m_Notice({m_Now, addressTextOf(packet.m_From) + "-" + addressTextOf(packet.m_To), "",
                         "a fragment of an IP packet is skipped", 0, 0});
    case Packet::Kind::kOther:
        ++m_Totals.m_OtherPackets;
        return;
    case Packet::Kind::kBad:
        ++m_Totals.m_BadPackets;
        return;
    }
}

// A datagram is a command if its frame takes all of it and a class has its id. In the form of the streams of
// connections over UDP it is such frames, each after its 16-bit length.
void CaptureDecoder::addDatagram(const Packet& packet)
{
    std::string_view bytes = packet.m_Payload;
    const bool isFrame = packet.m_Missing == 0 && isDatagramFrame(bytes);
    if (packet.m_Missing != 0 || !(isFrame || isDatagramStream(bytes)))
    {
        ++m_Totals.m_OtherDatagrams;
        return;
    }
    const bool isFromServer = isServer(packet.m_From, packet.m_To);
    const std::string connection =
        isFromServer ? nameOf(packet.m_To, packet.m_From) : nameOf(packet.m_From, packet.m_To);
    while (!bytes.empty())
    {
        const std::string_view next = isFrame ? bytes : nextOfStream(bytes);
        CCmdPackager frame;
        frame.Unpack(next.data(), static_cast<int>(next.size()));
        tell(connection, isFromServer ? "to_client" : "to_server", frame, nullptr, nullptr);
        bytes.remove_prefix(isFrame ? bytes.size() : kStreamLength + next.size());
    }
}

CaptureDecoder::Connection& CaptureDecoder::connectionOf(const Packet& packet)
{
    const Key key = std::minmax(packet.m_From, packet.m_To);
    const auto known = m_ByKey.find(key);
    if (known != m_ByKey.end())
    {
        m_Connections.splice(m_Connections.begin(), m_Connections, known->second);
        return m_Connections.front();
    }
    m_Connections.emplace_front(*this, key);
    m_ByKey.emplace(key, m_Connections.begin());
    return m_Connections.front();
}

void CaptureDecoder::end(Connection& connection)
{
    connection.m_First.finish();
    connection.m_Second.finish();
}

void CaptureDecoder::startSide(Side& side, const Packet& packet)
{
    if (packet.m_IsSyn)
        side.m_Bytes.startBySyn(packet.m_Sequence);
    else
        side.m_Bytes.start(packet.m_Sequence);
    side.m_Finder.start(packet.m_IsSyn ? "" : "a start in the middle of the connection");
}

void CaptureDecoder::addTcp(const Packet& packet)
{
    // A connection of which only resets are captured has nothing to decode.
    const Key key = std::minmax(packet.m_From, packet.m_To);
    if (packet.m_IsReset && !m_ByKey.contains(key))
        return;
    Connection& connection = connectionOf(packet);
    const bool isFirst = packet.m_From == connection.m_Key.first;
    Side& side = isFirst ? connection.m_First : connection.m_Second;
    Side& other = isFirst ? connection.m_Second : connection.m_First;
    const size_t before = connection.held();

    if (packet.m_IsSyn)
    {
        const bool isLate =
            side.m_Bytes.isStarted() && !side.m_Bytes.hasSyn() && side.m_Bytes.isSoonAfter(packet.m_Sequence, kLateSyn);
        const bool isAgain = side.m_Bytes.hasSyn() && side.m_Bytes.syn() == packet.m_Sequence && !side.m_Bytes.isOver();
        if (isLate)
            side.m_Bytes.setSyn(packet.m_Sequence);
        else if (!isAgain)
        {
            // The ports are used again.
            if (side.m_Bytes.isStarted())
            {
                side.finish();
                if (!packet.m_IsAck)
                {
                    other.finish();
                    other.m_Bytes = TcpDirection();
                }
            }
            startSide(side, packet);
        }
        connection.setClient(isFirst != packet.m_IsAck);
    }
    else if (!side.m_Bytes.isStarted())
    {
        startSide(side, packet);
    }
    else if (!side.m_Bytes.isOver() && side.m_Bytes.isFar(packet.m_Sequence))
    {
        side.finish();
        startSide(side, packet);
    }
    if (packet.m_IsAck)
        other.m_Bytes.acknowledge(packet.m_Acknowledged);
    // A SYN takes the number before its data.
    side.m_Bytes.add(packet.m_Sequence + (packet.m_IsSyn ? 1 : 0), packet.m_Payload, packet.m_Missing, packet.m_IsFin,
                     side.m_Finder);
    if (packet.m_IsReset)
        end(connection);
    else if (side.m_Bytes.isOver())
        side.m_Finder.finish();
    m_Held += connection.held() - before;
    bound();
}

void CaptureDecoder::bound()
{
    while (m_Connections.size() > 1 && (m_Connections.size() > m_Limits.m_Connections || m_Held > m_Limits.m_HeldBytes))
    {
        Connection& oldest = m_Connections.back();
        const bool isOpen = !(oldest.m_First.m_Bytes.isOver() && oldest.m_Second.m_Bytes.isOver());
        m_Held -= oldest.held();
        end(oldest);
        if (isOpen)
        {
            ++m_Totals.m_GivenUp;
            m_Notice({m_Now, oldest.m_Name, "", "the connection idle for the longest time is given up", 0, 0});
        }
        m_ByKey.erase(oldest.m_Key);
        m_Connections.pop_back();
    }
}

void CaptureDecoder::finish()
{
    // In the order of their last packets.
    for (auto connection = m_Connections.rbegin(); connection != m_Connections.rend(); ++connection)
        end(*connection);
    m_ByKey.clear();
    m_Connections.clear();
    m_Held = 0;
}

} // namespace tools
