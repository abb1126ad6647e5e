// The proxy socket through real SOCKS5 servers, to a real server of commands.
#include "transport/framework_client_proxy_socket.h"

#include "tests/support/loopback.h"
#include "tests/support/proxy_client.h"
#include "tests/support/socks_server.h"

#include <gtest/gtest.h>

namespace
{

using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::ProxyClient;
using test::SocksServer;
using test::tickUntil;

constexpr const wchar_t* kHere = L"127.0.0.1";
// Larger than any buffer on the path.
constexpr int kBallast = 300000;

// A server that replies to each number with the next one, a client, and a proxy between them.
struct Through
{
    explicit Through(const std::vector<std::string>& proxyWords)
        : m_ServerAnalyser(
              [this](CCommandSocket* socket, const NoteCommand& note)
              {
                  m_Asked.push_back(note.m_Number);
                  socket->send(NoteCommand(note.m_Number + 1, note.m_Ballast));
              }),
          m_Analyser(
              [this](CCommandSocket*, const NoteCommand& note)
              {
                  m_Answered.push_back(note.m_Number);
                  m_Ballast += note.m_Ballast;
              }),
          m_Net(m_ServerAnalyser), m_Proxy(m_Net.m_System, proxyWords), m_Client(new ProxyClient(m_Analyser))
    {
        m_Client->start(&m_Net.m_System);
    }
    ~Through() { m_Client->close(); }

    bool connect(const wchar_t* account, const wchar_t* password, unsigned short port)
    {
        m_Client->SetProxy(kHere, m_Proxy.port(), account, password);
        return m_Client->connect(kHere, port, true);
    }
    bool works()
    {
        return tickUntil(m_Net.m_System, [this] { return m_Client->m_Workings == 1; });
    }
    // Whether the proxy closes.
    bool ends()
    {
        return tickUntil(m_Net.m_System, [this] { return m_Client->getConnectionState() != 2; });
    }
    void talk()
    {
        for (int i = 0; i < 20; ++i)
            ASSERT_TRUE(m_Client->send(NoteCommand(10 * i, i == 7 ? kBallast : i)));
        ASSERT_TRUE(tickUntil(m_Net.m_System, [this] { return m_Answered.size() == 20; }));
        for (int i = 0; i < 20; ++i)
        {
            EXPECT_EQ(m_Asked[static_cast<size_t>(i)], 10 * i);
            EXPECT_EQ(m_Answered[static_cast<size_t>(i)], 10 * i + 1);
        }
        EXPECT_EQ(m_Ballast, kBallast + 19 * 20 / 2 - 7);
        // The server can also send first, once it has received a command.
        ASSERT_TRUE(m_Net.accepted()->send(NoteCommand(4711)));
        EXPECT_TRUE(tickUntil(m_Net.m_System, [this] { return m_Answered.back() == 4711; }));
        // The server sees the end through the proxy.
        m_Client->close();
        EXPECT_TRUE(tickUntil(m_Net.m_System, [this] { return m_Net.m_Server->GetClientCount() == 0; }));
    }

    std::vector<int> m_Asked;
    std::vector<int> m_Answered;
    int m_Ballast = 0;
    NoteAnalyser m_ServerAnalyser;
    NoteAnalyser m_Analyser;
    Loopback m_Net;
    SocksServer m_Proxy;
    test::ProxyClientHandle m_Client;
    test::BothLogs m_Logs;
};

const std::vector<std::string> kOpen;
const std::vector<std::string> kGuarded{"-u", "gr\xC3\xBCn", "-P", "open sesame"};
constexpr const wchar_t* kAccount = L"gr\u00fcn";
constexpr const wchar_t* kPassword = L"open sesame";

// Without a proxy the test is skipped with the reason.
#define NEED_PROXY(through)                                                                                            \
    if (!(through).m_Proxy.isUp())                                                                                     \
    GTEST_SKIP() << (through).m_Proxy.reason()

TEST(ProxyServer, CommandsCrossBothWaysThroughOneWithoutPassword)
{
    Through through(kOpen);
    NEED_PROXY(through);
    ASSERT_TRUE(through.connect(L"", L"", through.m_Net.m_Server->getPort()));
    ASSERT_TRUE(through.works());
    through.talk();
    EXPECT_EQ(through.m_Logs.lines().size(), 3U);
    EXPECT_TRUE(through.m_Logs.agree());
}

TEST(ProxyServer, CommandsCrossBothWaysThroughOneWithPassword)
{
    Through through(kGuarded);
    NEED_PROXY(through);
    ASSERT_TRUE(through.connect(kAccount, kPassword, through.m_Net.m_Server->getPort()));
    ASSERT_TRUE(through.works());
    through.talk();
    EXPECT_EQ(through.m_Logs.lines().size(), 4U);
    EXPECT_TRUE(through.m_Logs.agree());
}

TEST(ProxyServer, AWrongPasswordStaysInStateThree)
{
    Through through(kGuarded);
    NEED_PROXY(through);
    ASSERT_TRUE(through.connect(kAccount, L"wrong", through.m_Net.m_Server->getPort()));
    ASSERT_TRUE(through.ends());
    EXPECT_EQ(through.m_Client->m_ProxyState, 3);
    EXPECT_EQ(through.m_Client->m_Workings, 0);
    EXPECT_FALSE(through.m_Client->isInvalid());
}

TEST(ProxyServer, OneThatFindsNoMethodOfItsOwnLeavesStateOne)
{
    // A client without an account, and one with an account at a proxy that does not check it.
    for (const bool isGuarded : {true, false})
    {
        Through through(isGuarded ? kGuarded : kOpen);
        NEED_PROXY(through);
        ASSERT_TRUE(through.connect(isGuarded ? L"" : kAccount, isGuarded ? L"" : kPassword,
                                    through.m_Net.m_Server->getPort()));
        ASSERT_TRUE(through.ends());
        EXPECT_EQ(through.m_Client->m_ProxyState, 1);
        EXPECT_EQ(through.m_Client->m_Workings, 0);
    }
}

TEST(ProxyServer, ATargetThatItCannotReachStartsWorkingAndThenCloses)
{
    Through through(kOpen);
    NEED_PROXY(through);
    const unsigned short port = through.m_Net.m_Server->getPort();
    through.m_Net.m_Server->close();
    ASSERT_TRUE(through.connect(L"", L"", port));
    ASSERT_TRUE(through.works());
    EXPECT_TRUE(tickUntil(through.m_Net.m_System, [&] { return through.m_Client->isInvalid(); }));
    EXPECT_EQ(through.m_Client->m_ProxyState, 4);
}

} // namespace
