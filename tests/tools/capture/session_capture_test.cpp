// Captures of net sessions, and of the stream form of connections over UDP.
#include "framework/memory_stream.h"
#include "packaging/cmd_packager.h"
#include "tests/support/captures.h"
#include "tools/capture/capture_decoder.h"
#include "tools/object_json.h"
#include "transport/net_message.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace
{

namespace capture = test::capture;

using Json = nlohmann::ordered_json;

struct Decoded
{
    explicit Decoded(const std::vector<std::string>& packets)
    {
        tools::CaptureDecoder decoder([this](std::string_view line, bool) { m_Lines.push_back(Json::parse(line)); },
                                      [this](const tools::Notice& notice) { m_Notices.push_back(notice.m_What); });
        for (const std::string& packet : packets)
            decoder.add({1000, tools::Link::kRawIp, packet});
        decoder.finish();
        m_Totals = decoder.totals();
    }
    std::vector<int> numbers() const
    {
        std::vector<int> all;
        for (const Json& line : m_Lines)
            if (line.contains("fields"))
                all.push_back(line["fields"]["m_ServerType"]);
        return all;
    }

    std::vector<Json> m_Lines;
    std::vector<std::string> m_Notices;
    tools::CaptureTotals m_Totals;
};

std::string written(const zet::Message& message)
{
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream output(store.get());
    EXPECT_TRUE(zet::Message::writeWhole(output, message));
    std::string bytes(static_cast<size_t>(store->getSize()), '\0');
    store->read(bytes.data(), store->getSize());
    return capture::packetOf(bytes);
}

// The frame of capture::command() in a message.
zet::Unknown::Handle_T<Msg_NetCommand> netCommand(int number)
{
    const std::string frame = capture::command(number).substr(4);
    const auto message = Msg_NetCommand::createInstance();
    message->data.setBufferSize(static_cast<int>(frame.size()));
    std::memcpy(message->data.getBuffer(), frame.data(), frame.size());
    return message;
}

std::string greeting()
{
    return capture::packetOf(std::string("zns\x01", 4) + std::string(16, '\x05'));
}

// Ten commands to the server after the greetings, and what the server sends.
std::vector<std::string> session(size_t segmentSize = 60)
{
    capture::Conversation all;
    all.open();
    all.send(true, greeting());
    all.send(false, greeting());
    std::string bytes;
    for (int i = 0; i < 10; ++i)
        bytes += written(*netCommand(i));
    all.send(true, bytes, segmentSize);
    const auto addressed = netCommand(50);
    addressed->fromAddress = {1, 2, 3, {}};
    addressed->targetAddress = {{4, 5, 6, {}}, {7, 8, 9, {}}};
    all.send(false, written(*addressed) + written(*NetMessage::createInstance()) + std::string(4, '\0') +
                        written(*netCommand(51)));
    all.close();
    return all.m_Packets;
}

TEST(SessionCapture, CommandsAreThoseOfItsMessages)
{
    const Decoded decoded(session());
    EXPECT_EQ(decoded.numbers(), (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 50, 51}));
    EXPECT_TRUE(decoded.m_Notices.empty()) << decoded.m_Notices[0];
    ASSERT_EQ(decoded.m_Lines.size(), 13u);
    const Json& first = decoded.m_Lines[0];
    EXPECT_EQ(first["session"].dump(), R"({"message":"Msg_NetCommand"})");
    EXPECT_EQ(first["class"], "CCmdHostnameRequest");
    EXPECT_EQ(first["direction"], "to_server");
    // After the greeting: the length, the name with its size, the flags and the size of the frame.
    EXPECT_EQ(first["offset"], 24 + 4 + 15 + 1 + 1);
    const auto addressed = netCommand(50);
    const zet::Uuid from{1, 2, 3, {}};
    const zet::Uuid targets[] = {{4, 5, 6, {}}, {7, 8, 9, {}}};
    EXPECT_EQ(decoded.m_Lines[10]["session"]["from"], tools::hexOf(&from, 16));
    EXPECT_EQ(decoded.m_Lines[10]["session"]["targets"],
              (Json{tools::hexOf(&targets[0], 16), tools::hexOf(&targets[1], 16)}));
    // A message of another class is shown by its name.
    EXPECT_EQ(decoded.m_Lines[11]["session"]["message"], "NetMessage");
    EXPECT_FALSE(decoded.m_Lines[11].contains("id"));
    EXPECT_EQ(decoded.m_Totals.m_Commands, 12u);
    EXPECT_EQ(decoded.m_Totals.m_OtherMessages, 1u);
    EXPECT_EQ(decoded.m_Totals.m_SkippedBytes, 0u);
}

TEST(SessionCapture, AStartInTheMiddleFindsTheNextCommand)
{
    const std::vector<std::string> packets = session(40);
    // Without the handshake, the greetings and their acknowledgements, and the first segment.
    const Decoded decoded(std::vector<std::string>(packets.begin() + 8, packets.end()));
    const std::vector<int> numbers = decoded.numbers();
    ASSERT_EQ(numbers.size(), 10u);
    // The segment had the first command and the beginning of the second one.
    EXPECT_EQ(numbers[0], 2);
    EXPECT_EQ(numbers.back(), 51);
    EXPECT_FALSE(decoded.m_Notices.empty());
}

TEST(SessionCapture, ANameOfAnyBytesPrints)
{
    capture::Conversation all;
    all.open();
    all.send(true, greeting() + capture::packetOf(std::string("\x03\xFFx\x01", 4) + "rest"));
    const Decoded decoded(all.m_Packets);
    ASSERT_EQ(decoded.m_Lines.size(), 1u);
    EXPECT_EQ(decoded.m_Lines[0]["session"]["message"], "?x?");
}

// A message without a frame is not a place to start from.
TEST(SessionCapture, AnEmptyMessageInTheMiddleIsPassedOver)
{
    const std::string bytes = "xx" + written(*Msg_NetCommand::createInstance()) + written(*netCommand(3));
    const Decoded decoded({capture::tcpPacket({}, 500, 0, capture::kAck, bytes)});
    EXPECT_EQ(decoded.numbers(), (std::vector<int>{3}));
    ASSERT_EQ(decoded.m_Notices.size(), 1u);
    EXPECT_NE(decoded.m_Notices[0].find("resynchronised after 23 bytes"), std::string::npos) << decoded.m_Notices[0];
}

// Nothing but whole commands, and all of those that the gap did not touch.
TEST(SessionCapture, EachPacketLostInTurnCostsOnlyTheCommandsInIt)
{
    const std::vector<std::string> packets = session();
    for (size_t lost = 0; lost < packets.size(); ++lost)
    {
        std::vector<std::string> left = packets;
        left.erase(left.begin() + static_cast<std::ptrdiff_t>(lost));
        const std::string_view payload = tools::packetOf(tools::Link::kRawIp, packets[lost]).m_Payload;
        std::vector<int> expected = Decoded(packets).numbers();
        const std::vector<int> found = Decoded(left).numbers();
        size_t missing = 0;
        for (const int each : expected)
            missing += std::count(found.begin(), found.end(), each) == 0;
        EXPECT_EQ(found.size() + missing, expected.size()) << lost << " invented";
        // A segment of 60 bytes touches at most three commands of 32 bytes. Without the greeting the session shows by
        // its first command.
        EXPECT_LE(missing, payload.empty() ? 0u : 3u) << lost;
    }
}

TEST(SessionCapture, DatagramsOfTheStreamFormAreCommands)
{
    const std::string frame("\x00\x10\x14\x00\x02\x00\x07\x09", 8);
    const std::string one = std::string("\x08\x00", 2) + frame;
    const auto datagram = [](const std::string& payload) { return capture::ip({}, 17, capture::udp({}, payload)); };
    const Decoded decoded({datagram(one), datagram(one + one), datagram(one + "x"),
                           datagram(std::string("\x09\x00", 2) + frame), datagram(std::string("\x00\x00", 2)),
                           datagram(std::string("\xFF\xFF", 2) + frame), datagram("")});
    EXPECT_EQ(decoded.m_Lines.size(), 3u);
    EXPECT_EQ(decoded.numbers(), (std::vector<int>{9, 9, 9}));
    EXPECT_EQ(decoded.m_Totals.m_OtherDatagrams, 5u);
}

} // namespace
