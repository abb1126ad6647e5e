// Accepting connections: its calls to the operating system, and the options of what is accepted.
#include "framework/inner/fast_paths.h"
#include "tests/support/loopback.h"
#include "tests/support/system_calls.h"

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::tickUntil;
using zet::inner::kHasFastPaths;

class Accept : public testing::Test
{
protected:
    // Opens connections that the server has not accepted yet.
    void connect(int count)
    {
        for (int i = 0; i < count; ++i)
        {
            m_Net.m_Clients.push_back(new test::Client(m_Analyser));
            ASSERT_TRUE(m_Net.m_Clients.back()->start(&m_Net.m_System));
            ASSERT_TRUE(m_Net.m_Clients.back()->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
            ASSERT_EQ(m_Net.m_Clients.back()->getConnectionState(), zet::TcpConnection::kEstablished);
        }
    }
    int optionOf(size_t accepted, int level, int name) const
    {
        int value = -1;
        socklen_t size = sizeof value;
        ::getsockopt(static_cast<int>(m_Net.m_Server->m_Accepted.at(accepted)->getHandle()), level, name, &value,
                     &size);
        return value;
    }

    NoteAnalyser m_Analyser;
    Loopback m_Net{m_Analyser};
};

#ifdef COUNTS_SYSTEM_CALLS
TEST_F(Accept, AConnectionTakesTwoSystemCalls)
{
    constexpr int kCount = 10;
    static_assert(kCount < zet::TcpServer::kAcceptsPerTick);
    connect(1);
    m_Net.m_System.tick();
    ASSERT_EQ(m_Net.m_Server->m_Accepted.size(), 1u);
    connect(kCount);
    const test::SystemCalls before;
    m_Net.m_System.tick();
    const test::SystemCalls after;
    ASSERT_EQ(m_Net.m_Server->m_Accepted.size(), 1u + kCount);
    EXPECT_EQ(after.m_Controls - before.m_Controls, kCount);
    // The last accept finds none. Without fast paths the options of each connection are set.
    const int options = kHasFastPaths ? 0 : 6;
    EXPECT_EQ(after.m_Others - before.m_Others, kCount * (1 + options) + 1);
    EXPECT_EQ(after.m_Sends, before.m_Sends);
    EXPECT_EQ(after.m_Receives, before.m_Receives);
    EXPECT_EQ(after.m_Waits - before.m_Waits, 1);
}
#endif

TEST_F(Accept, AConnectionSendsWithoutDelay)
{
    connect(2);
    m_Net.m_System.tick();
    EXPECT_EQ(optionOf(0, IPPROTO_TCP, TCP_NODELAY), 1);
    EXPECT_EQ(optionOf(1, IPPROTO_TCP, TCP_NODELAY), 1);
}

TEST_F(Accept, NewLimitsApplyToPendingConnectionsToo)
{
    connect(1);
    zet::NetLimits limits;
    limits.m_ProbeAfter = 123;
    m_Net.m_Server->setLimits(limits);
    connect(1);
    m_Net.m_System.tick();
    connect(1);
    m_Net.m_System.tick();
    for (size_t i = 0; i < 3; ++i)
    {
        EXPECT_EQ(optionOf(i, SOL_SOCKET, SO_KEEPALIVE), 1) << i;
        EXPECT_EQ(optionOf(i, IPPROTO_TCP, TCP_KEEPIDLE), 123) << i;
    }
    limits.m_Probes = 0;
    limits.m_UnacknowledgedTime = 0;
    m_Net.m_Server->setLimits(limits);
    for (size_t i = 3; i < 5; ++i)
    {
        connect(1);
        m_Net.m_System.tick();
        EXPECT_EQ(optionOf(i, SOL_SOCKET, SO_KEEPALIVE), 0) << i;
        EXPECT_EQ(optionOf(i, IPPROTO_TCP, TCP_USER_TIMEOUT), 0) << i;
    }
}

TEST_F(Accept, AServerThatTakesAListeningHandleOverSetsTheOptionsToo)
{
    const int handle = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in own{};
    own.sin_family = AF_INET;
    own.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ASSERT_EQ(::bind(handle, reinterpret_cast<sockaddr*>(&own), sizeof own), 0);
    ASSERT_EQ(::listen(handle, 5), 0);
    m_Net.m_Server->close();
    // This connection arrives before the server has the handle.
    socklen_t size = sizeof own;
    ASSERT_EQ(::getsockname(handle, reinterpret_cast<sockaddr*>(&own), &size), 0);
    const ClientHandle early = new test::Client(m_Analyser);
    early->start(&m_Net.m_System);
    m_Net.m_Clients.push_back(early);
    ASSERT_TRUE(early->connect(L"127.0.0.1", ntohs(own.sin_port), false));
    ASSERT_TRUE(m_Net.m_Server->attach(static_cast<unsigned int>(handle)));
    m_Net.m_System.tick();
    connect(1);
    m_Net.m_System.tick();
    const zet::NetLimits limits;
    for (size_t i = 0; i < 2; ++i)
    {
        EXPECT_EQ(optionOf(i, IPPROTO_TCP, TCP_NODELAY), 1) << i;
        EXPECT_EQ(optionOf(i, IPPROTO_TCP, TCP_KEEPIDLE), limits.m_ProbeAfter) << i;
    }
}

} // namespace
