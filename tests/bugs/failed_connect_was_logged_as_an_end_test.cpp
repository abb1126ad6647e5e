// A connect() that returned true and failed later, for example at the proxy or in close() before its first event, was
// logged as "Connection with A ended: ...", like one that had been established: a host that searched its log for failed
// connects found nothing.
#include "framework/log.h"
#include "tests/support/log_lines.h"
#include "tests/support/log_shares.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

namespace
{

struct Attempt : testing::Test
{
    Attempt() : m_Net(m_Analyser), m_Client(new test::Client(m_Analyser))
    {
        m_Client->start(&m_Net.m_System);
        m_Net.m_Clients.push_back(m_Client);
        test::refillLogShares();
    }
    std::wstring target() const { return L"127.0.0.1:" + std::to_wstring(m_Net.m_Server->getPort()); }

    test::NoteAnalyser m_Analyser;
    test::Loopback m_Net;
    test::ClientHandle m_Client;
};

TEST_F(Attempt, CloseBeforeTheConnectionIsEstablished)
{
    const test::LogLines log;
    ASSERT_TRUE(m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    m_Client->close();
    EXPECT_EQ(log.texts(), (std::vector<std::wstring>{L"Connect to " + target() + L" failed: closed here"}));
}

TEST_F(Attempt, NextConnectionOfTheObjectHasItsOwnLine)
{
    ASSERT_TRUE(m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    ASSERT_TRUE(test::tickUntil(m_Net.m_System, [&] { return !m_Net.m_Server->m_Accepted.empty(); }));
    m_Net.m_System.tick();
    test::refillLogShares();
    const test::LogLines log;
    m_Client->close();
    ASSERT_TRUE(m_Client->connect(L"127.0.0.1", m_Net.m_Server->getPort(), false));
    m_Client->closeFor(7);
    EXPECT_EQ(log.texts(),
              (std::vector<std::wstring>{L"Connection with " + target() + L" ended: closed here",
                                         L"Connect to " + target() + L" failed: ended by the host (reason 7)"}));
}

} // namespace
