// Damage to each packet of a capture in turn: every command that is whole in what is left is found, in its order and
// once, and nothing else.
#include "commands/zone_tunnel.h"
#include "framework/memory_stream.h"
#include "tests/support/captures.h"
#include "tests/support/payload_maker.h"
#include "tools/capture/capture_decoder.h"
#include "tools/class_table.h"
#include "transport/net_message.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <string>
#include <vector>

namespace
{

namespace capture = test::capture;

using Json = nlohmann::ordered_json;

constexpr size_t kSegment = 90;

std::string bytesOf(const CCmdPackager& packager)
{
    int size = 0;
    const auto* const frame = packager.FrameInPlace(size);
    return {reinterpret_cast<const char*>(frame), static_cast<size_t>(size)};
}

// Commands of several shapes, one of them with a command inside.
std::vector<std::string> frames()
{
    std::vector<std::string> all;
    const char* const names[] = {"CCmdLogin",        "CCmdServerEcho",        "CCmdGC_gameZoneListResponse",
                                 "CCmdGZ_gameReady", "CCmdServerListReply",   "CCmdHostnameRequest",
                                 "CCmdOrderRequest", "CCmdGZ_ConnectGameSvr", "CCmdGZ_serverToClient"};
    unsigned seed = 0;
    for (int round = 0; round < 2; ++round)
        for (const char* const name : names)
        {
            const tools::ClassInfo& info = *tools::findClass(name);
            CCmdPackager packager;
            packager.SetCmdID(info.m_Id);
            if (++seed % 3 == 0)
                packager.SetAddress({seed, 2, 3, {}}, {});
            const std::string payload = test::PayloadMaker(seed).make(info.m_Wire()).m_Bytes;
            packager.Write(payload.data(), static_cast<int>(payload.size()));
            all.push_back(bytesOf(packager));
        }
    CCmdPackager inner;
    inner.Receive(all[0].data(), static_cast<int>(all[0].size()));
    CCmdGZ_serverToClient tunnel;
    tunnel.SetClientIndex(9);
    EXPECT_TRUE(CCmdPackager_packageToBuffer(inner, tunnel.m_Data1));
    CCmdPackager packager;
    EXPECT_TRUE(tunnel.Write(&packager));
    all.insert(all.begin() + 4, bytesOf(packager));
    return all;
}

std::string sessionPacketOf(const std::string& frame)
{
    const auto message = Msg_NetCommand::createInstance();
    message->data.setBufferSize(static_cast<int>(frame.size()));
    std::copy(frame.begin(), frame.end(), static_cast<char*>(static_cast<void*>(message->data.getBuffer())));
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream output(store.get());
    EXPECT_TRUE(zet::Message::writeWhole(output, *message));
    std::string bytes(static_cast<size_t>(store->getSize()), '\0');
    store->read(bytes.data(), store->getSize());
    return capture::packetOf(bytes);
}

// A connection whose client sends the commands in that order, and whose server sends them in the other one.
struct Damaged
{
    explicit Damaged(bool isSession)
    {
        capture::Conversation all;
        all.open();
        const std::string greeting =
            isSession ? capture::packetOf(std::string("zns\x01", 4) + std::string(16, '\x05')) : "";
        std::vector<std::string> forms = frames();
        for (const bool toServer : {true, false})
        {
            std::string bytes = greeting;
            for (const std::string& frame : forms)
            {
                const size_t begin = bytes.size();
                bytes += isSession ? sessionPacketOf(frame) : capture::packetOf(frame);
                m_Places[toServer].push_back({begin, bytes.size()});
            }
            const size_t before = all.m_Packets.size();
            all.send(toServer, bytes, kSegment);
            for (size_t i = before; i < all.m_Packets.size(); ++i)
            {
                const bool isData = i + 1 < all.m_Packets.size();
                const size_t at = (i - before) * kSegment;
                m_Segments.resize(i, Segment());
                m_Segments.push_back(isData ? Segment{toServer, at, std::min(at + kSegment, bytes.size())} : Segment());
            }
            std::reverse(forms.begin(), forms.end());
        }
        all.close();
        m_Packets = all.m_Packets;
        m_Segments.resize(m_Packets.size(), Segment());
        const auto lines = decode(m_Packets);
        for (const bool toServer : {false, true})
        {
            m_Whole[toServer] = lines[toServer];
            EXPECT_EQ(m_Whole[toServer].size(), m_Places[toServer].size());
        }
    }

    struct Segment
    {
        bool m_ToServer = false;
        // The place in the direction's bytes; empty for a packet without data.
        size_t m_Begin = 0;
        size_t m_End = 0;
    };
    // Each line without what depends on the time and on the first captured byte, to the client and to the server.
    using Lines = std::vector<std::vector<std::string>>;

    static Lines decode(const std::vector<std::string>& packets)
    {
        Lines all(2);
        tools::CaptureDecoder decoder(
            [&](std::string_view line, bool isError)
            {
                Json json = Json::parse(line);
                const bool toServer = json["direction"] == "to_server";
                EXPECT_FALSE(isError) << line;
                for (const char* const key : {"time", "offset", "connection", "direction"})
                    json.erase(key);
                all[toServer].push_back(json.dump());
            },
            [](const tools::Notice&) {});
        for (const std::string& packet : packets)
            decoder.add({1000, tools::Link::kRawIp, packet});
        decoder.finish();
        return all;
    }
    // What is left without the bytes of a segment from this one on.
    Lines without(const Segment& segment, size_t begin) const
    {
        Lines left(2);
        for (const bool toServer : {false, true})
            for (size_t i = 0; i < m_Whole[toServer].size(); ++i)
            {
                const auto [from, to] = m_Places[toServer][i];
                const bool isLost = toServer == segment.m_ToServer && begin < segment.m_End && begin < to &&
                                    from < segment.m_End && segment.m_Begin < segment.m_End;
                if (!isLost)
                    left[toServer].push_back(m_Whole[toServer][i]);
            }
        return left;
    }
    Lines whole() const { return {m_Whole[0], m_Whole[1]}; }

    std::vector<std::string> m_Packets;
    std::vector<Segment> m_Segments;
    std::vector<std::pair<size_t, size_t>> m_Places[2];
    std::vector<std::string> m_Whole[2];
};

class DamagedCapture : public testing::TestWithParam<bool>
{
protected:
    const Damaged m_All{GetParam()};
};

TEST_P(DamagedCapture, EachPacketDropped)
{
    for (size_t i = 0; i < m_All.m_Packets.size(); ++i)
    {
        std::vector<std::string> left = m_All.m_Packets;
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(i));
        EXPECT_EQ(Damaged::decode(left), m_All.without(m_All.m_Segments[i], m_All.m_Segments[i].m_Begin)) << i;
    }
}

TEST_P(DamagedCapture, EachPacketDoubled)
{
    for (size_t i = 0; i < m_All.m_Packets.size(); ++i)
        for (const size_t later : {size_t{1}, size_t{4}})
        {
            std::vector<std::string> twice = m_All.m_Packets;
            twice.insert(twice.begin() + static_cast<std::ptrdiff_t>(std::min(i + later, twice.size())),
                         m_All.m_Packets[i]);
            EXPECT_EQ(Damaged::decode(twice), m_All.whole()) << i << " " << later;
        }
}

// Data may come late by any number of packets; the handshake and the end only by a few, since later ones mean a new
// connection.
TEST_P(DamagedCapture, EachPacketMovedBehindLaterOnes)
{
    for (size_t i = 3; i < m_All.m_Packets.size(); ++i)
        for (const size_t places : {size_t{1}, size_t{2}, size_t{7}})
        {
            std::vector<std::string> moved = m_All.m_Packets;
            const auto from = moved.begin() + static_cast<std::ptrdiff_t>(i);
            const auto to = moved.begin() + static_cast<std::ptrdiff_t>(std::min(i + places + 1, moved.size()));
            std::rotate(from, from + 1, to);
            EXPECT_EQ(Damaged::decode(moved), m_All.whole()) << i << " " << places;
        }
}

TEST_P(DamagedCapture, EachPacketCutToEachLength)
{
    constexpr size_t kHeads = 40;
    for (size_t i = 0; i < m_All.m_Packets.size(); ++i)
    {
        const Damaged::Segment& segment = m_All.m_Segments[i];
        const size_t size = segment.m_End - segment.m_Begin;
        for (const size_t kept : {size_t{0}, size_t{1}, size / 3, size / 2, size > 0 ? size - 1 : 0})
        {
            std::vector<std::string> cut = m_All.m_Packets;
            cut[i].resize(kHeads + kept);
            EXPECT_EQ(Damaged::decode(cut), m_All.without(segment, segment.m_Begin + kept)) << i << " " << kept;
        }
        // Within its heads the packet is as good as dropped.
        for (const size_t kept : {size_t{0}, size_t{10}, size_t{30}})
        {
            std::vector<std::string> cut = m_All.m_Packets;
            cut[i].resize(kept);
            EXPECT_EQ(Damaged::decode(cut), m_All.without(segment, segment.m_Begin)) << i << " " << kept;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OfConnections, DamagedCapture, testing::Bool(),
                         [](const auto& info) { return std::string(info.param ? "NetSession" : "Commands"); });

} // namespace
