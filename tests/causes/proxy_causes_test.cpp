// The causes of ends through a proxy.
#include "tests/support/accepting_port.h"
#include "tests/support/scripted_proxy.h"
#include "tests/support/standard_error.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::accountMessage;
using test::Bytes;
using test::expectIn;
using test::kAccountGreeting;
using test::kGranted;
using test::kGreeting;
using test::kHere;
using test::kRequest;
using test::kTargetPort;
using test::NoteAnalyser;
using test::StandardError;
using test::tickUntil;
using zet::EndCause;

struct Analysed
{
    NoteAnalyser m_Analyser;
};

// A client whose proxy refuses and closes.
struct Refusing : Analysed, test::Proxied
{
    Refusing() : Proxied(m_Analyser) { test::refillLogShares(); }

    bool refuses(const Bytes& bytes) { return answer(bytes) && closes(); }
    bool closes()
    {
        m_Proxy->m_Stream->close();
        return tickUntil(m_System, [this] { return static_cast<bool>(m_Client->getEndCause()); });
    }
    std::wstring line(const std::wstring& cause) const { return L"Connect to " + proxyName() + L" failed: " + cause; }
    bool has(const std::wstring& text) const
    {
        const auto lines = m_Logs.allLines();
        return std::count(lines.begin(), lines.end(), text) == 1;
    }
};

TEST(ProxyCauses, AMethodIsRefused)
{
    Refusing proxied;
    ASSERT_TRUE(proxied.greets(kGreeting));
    ASSERT_TRUE(proxied.refuses({5, 0xFF}));
    EXPECT_EQ(proxied.m_Client->getEndCause(), (EndCause{EndCause::kProxy, 0xFF}));
    EXPECT_TRUE(proxied.has(proxied.line(L"the proxy answered 255")));
    // The host closes the socket, as before.
    EXPECT_FALSE(proxied.m_Client->isInvalid());
    EXPECT_EQ(proxied.m_Client->m_ProxyState, test::ProxyClient::kAwaitsMethod);
}

TEST(ProxyCauses, APasswordIsRefused)
{
    Refusing proxied;
    ASSERT_TRUE(proxied.greets(kAccountGreeting, L"name", L"word"));
    ASSERT_TRUE(proxied.answer({5, 2}));
    ASSERT_TRUE(proxied.says(accountMessage({'n', 'a', 'm', 'e'}, {'w', 'o', 'r', 'd'})));
    ASSERT_TRUE(proxied.refuses({1, 1}));
    EXPECT_EQ(proxied.m_Client->getEndCause(), (EndCause{EndCause::kProxy, 1}));
    EXPECT_TRUE(proxied.has(proxied.line(L"the proxy answered 1")));
}

TEST(ProxyCauses, TheTargetIsNotReached)
{
    Refusing proxied;
    ASSERT_TRUE(proxied.greets(kGreeting));
    ASSERT_TRUE(proxied.answer({5, 0}));
    ASSERT_TRUE(proxied.says(kRequest));
    ASSERT_TRUE(proxied.refuses({5, 4, 0, 1, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(proxied.m_Client->getEndCause(), (EndCause{EndCause::kProxy, 4}));
    EXPECT_TRUE(proxied.has(proxied.line(L"the proxy answered 4")));
}

TEST(ProxyCauses, AfterAGrantTheProxyIsNotTheCause)
{
    Refusing proxied;
    ASSERT_TRUE(proxied.greets(kGreeting));
    // A first reply that is not understood.
    ASSERT_TRUE(proxied.answer({5, 9}));
    ASSERT_TRUE(proxied.answer({5, 0}));
    ASSERT_TRUE(proxied.says(kRequest));
    ASSERT_TRUE(proxied.answer(kGranted));
    ASSERT_TRUE(proxied.closes());
    EXPECT_EQ(proxied.m_Client->getEndCause().m_Code, EndCause::kClosedByPeer);
}

TEST(ProxyCauses, NoProxyListens)
{
    const zet::Unknown::Handle_T<test::AcceptingPort> other = new test::AcceptingPort;
    ASSERT_TRUE(other->listen(0, 1));
    const unsigned short port = other->getPort();
    other->close();
    zet::System system;
    system.init();
    NoteAnalyser analyser;
    StandardError error;
    const test::ProxyClientHandle client = new test::ProxyClient(analyser);
    client->start(&system);
    client->SetProxy(kHere, port, L"", L"");
    client->connect(test::kTarget, kTargetPort, false);
    ASSERT_TRUE(tickUntil(system, [&] { return client->getEndCause().m_Code == EndCause::kRefused; }));
    system.tick();
    expectIn(error.text(), " [W] Connect to 127.0.0.1:" + std::to_string(port) + " failed: refused\n");
    client->close();
    system.exit();
}

} // namespace
