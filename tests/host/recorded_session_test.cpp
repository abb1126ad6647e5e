// A recording of a net session has its greetings and messages, which decode as commands.
#include "host/recording.h"

#include "commands/registry.h"
#include "tests/support/log_folder.h"
#include "tests/support/net_pair.h"
#include "tests/support/recorded.h"

#include <gtest/gtest.h>

namespace
{

TEST(RecordedSession, CommandsOfItsMessagesDecode)
{
    test::NetPair pair;
    const test::LogFolder folder;
    host::Recording recording;
    ASSERT_TRUE(recording.start(pair.m_System, (folder.m_Path / "session.pcapng").generic_wstring().c_str()));
    const auto session = pair.connect({1, 2, 3, {}});
    ASSERT_TRUE(session);
    CCmdServerEcho echo;
    echo.SetClientIndex(1);
    echo.m_Data = 30;
    ASSERT_TRUE(session->sendNetCommand(&echo));
    echo.m_Data = 31;
    ASSERT_TRUE(pair.accepted()->sendNetCommand(&echo));
    const auto message = NetMessage::createInstance();
    ASSERT_TRUE(session->send(message));
    for (int i = 0; i < 10; ++i)
        pair.m_System.tick();
    const std::string port = std::to_string(pair.m_Server->getPort());
    session->close();
    recording.stop();
    const test::RecordedFile file(folder.m_Path / "session.pcapng");
    ASSERT_EQ(file.m_Fault, "");
    const test::RecordedLines lines(file);
    EXPECT_TRUE(lines.m_Notices.empty());
    ASSERT_EQ(lines.m_Lines.size(), 3u);
    for (const auto& line : lines.m_Lines)
    {
        EXPECT_TRUE(line["connection"].get<std::string>().ends_with(":" + port));
        if (line["session"]["message"] != "Msg_NetCommand")
            EXPECT_EQ(line["session"]["message"], "NetMessage");
        else
            EXPECT_EQ(line["fields"]["m_Data"], line["direction"] == "to_server" ? 30 : 31);
    }
    const std::vector<std::string> comments = file.comments();
    ASSERT_FALSE(comments.empty());
    EXPECT_EQ(std::count(comments.begin(), comments.end(), "connected to 127.0.0.1:" + port), 1);
    EXPECT_EQ(std::count(comments.begin(), comments.end(), "ended: closed here"), 1);
}

} // namespace
