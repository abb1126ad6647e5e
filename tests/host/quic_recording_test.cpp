// A recording of connections over UDP has the commands of their streams as datagrams.
#include "host/recording.h"

#include "commands/registry.h"
#include "tests/support/log_folder.h"
#include "tests/support/recorded.h"
#include "tests/support/udp_loopback.h"

#include <gtest/gtest.h>

namespace
{

TEST(QuicRecording, ACommandIsADatagramWithItsLength)
{
    test::UdpNet net;
    const test::LogFolder folder;
    host::Recording recording;
    ASSERT_TRUE(recording.start(net.m_System, (folder.m_Path / "udp.pcapng").generic_wstring().c_str()));
    const auto socket = net.connect();
    ASSERT_TRUE(socket);
    EXPECT_TRUE(socket->send(test::NoteCommand(1, 20)));
    EXPECT_TRUE(net.accepted().send(test::NoteCommand(2, 20000)));
    ASSERT_TRUE(net.until([&] { return !socket->m_Numbers.empty() && !net.accepted().m_Numbers.empty(); }));
    // A command of the catalogue, which wirelens decodes.
    CCmdServerEcho echo;
    echo.SetClientIndex(1);
    echo.m_Data = 30;
    EXPECT_TRUE(socket->send(echo));
    socket->close();
    recording.stop();
    const test::RecordedFile file(folder.m_Path / "udp.pcapng");
    ASSERT_EQ(file.m_Fault, "");
    // Each note is there twice, as sent and as received.
    std::vector<size_t> sizes;
    for (const auto& each : file.m_Packets)
    {
        const tools::Packet packet = tools::packetOf(tools::Link::kRawIp, each.m_Bytes);
        ASSERT_EQ(packet.m_Kind, tools::Packet::Kind::kUdp);
        if (packet.m_Payload.empty())
        {
            EXPECT_FALSE(each.m_Comment.empty());
            continue;
        }
        ASSERT_GT(packet.m_Payload.size(), 2u);
        const auto length = static_cast<unsigned char>(packet.m_Payload[0]) |
                            static_cast<size_t>(static_cast<unsigned char>(packet.m_Payload[1])) << 8;
        EXPECT_EQ(length + 2, packet.m_Payload.size());
        CCmdPackager frame;
        EXPECT_EQ(frame.Unpack(packet.m_Payload.data() + 2, static_cast<int>(length)), static_cast<int>(length));
        if (frame.GetCmdID() == echo.GetID())
            continue;
        EXPECT_EQ(frame.GetCmdID(), test::NoteCommand::kId);
        const bool isToServer = packet.m_To.m_Port == net.m_Server->getPort();
        EXPECT_NE(isToServer, length > 1000);
        sizes.push_back(length);
    }
    EXPECT_EQ(sizes.size(), 4u);
    const test::RecordedLines lines(file);
    ASSERT_EQ(lines.m_Lines.size(), 1u);
    EXPECT_EQ(lines.m_Lines[0]["fields"]["m_Data"], 30);
    EXPECT_EQ(lines.m_Lines[0]["class"], "CCmdServerEcho");
    const std::vector<std::string> comments = file.comments();
    ASSERT_GE(comments.size(), 3u);
    EXPECT_EQ(std::count_if(comments.begin(), comments.end(),
                            [](const std::string& each)
                            { return each.starts_with("connected to 127.0.0.1:") && each.ends_with(", over QUIC"); }),
              1);
    EXPECT_EQ(std::count_if(comments.begin(), comments.end(),
                            [](const std::string& each) { return each.starts_with("accepted from 127.0.0.1:"); }),
              1);
    EXPECT_EQ(std::count(comments.begin(), comments.end(), "ended: closed here"), 1);
}

} // namespace
