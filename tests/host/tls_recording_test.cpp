// A recording of a connection with TLS has what was inside it.
#include "host/recording.h"

#include "commands/registry.h"
#include "host/handlers.h"
#include "tests/support/log_folder.h"
#include "tests/support/recorded.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

TEST(TlsRecording, CommandsAreRecordedAfterDecryption)
{
    const auto serverAnalyser = std::make_unique<CCmdAnalyserSocket>();
    const auto clientAnalyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers serverHandlers(*serverAnalyser);
    host::Handlers clientHandlers(*clientAnalyser);
    serverHandlers.on<CCmdServerEcho>(
        [](CCommandSocket& socket, CCmdServerEcho& echo)
        {
            CCmdServerEchoReply reply;
            reply.m_Data = echo.m_Data + 1;
            socket.send(reply);
        });
    int answers = 0;
    clientHandlers.on<CCmdServerEchoReply>([&](CCommandSocket&, CCmdServerEchoReply&) { ++answers; });
    test::TlsLoopback net(serverAnalyser.get());
    const test::LogFolder folder;
    host::Recording recording;
    ASSERT_TRUE(recording.start(net.m_System, (folder.m_Path / "tls.pcapng").generic_wstring().c_str()));
    const auto client = net.connectTls(clientAnalyser.get(), test::makeClientContext());
    ASSERT_TRUE(client);
    for (int i = 0; i < 3; ++i)
    {
        CCmdServerEcho echo;
        echo.m_Data = static_cast<unsigned long>(10 * i);
        ASSERT_TRUE(client->send(echo));
    }
    ASSERT_TRUE(test::tickUntil(net.m_System, [&] { return answers == 3; }));
    recording.stop();
    const test::RecordedFile file(folder.m_Path / "tls.pcapng");
    ASSERT_EQ(file.m_Fault, "");
    const test::RecordedLines lines(file);
    EXPECT_TRUE(lines.m_Notices.empty());
    std::vector<int> asked;
    std::vector<int> answered;
    for (const auto& line : lines.m_Lines)
        (line["class"] == "CCmdServerEcho" ? asked : answered).push_back(line["fields"]["m_Data"]);
    EXPECT_EQ(asked, (std::vector<int>{0, 10, 20}));
    EXPECT_EQ(answered, (std::vector<int>{1, 11, 21}));
    ASSERT_FALSE(file.comments().empty());
    EXPECT_NE(file.comments()[0].find("TLS1.3"), std::string::npos) << file.comments()[0];
}

} // namespace
