// The life of a proxy socket.
#include "transport/framework_client_proxy_socket.h"

#include "tests/support/raw_peer.h"
#include "tests/support/scripted_proxy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace
{

using test::kAccountGreeting;
using test::kGranted;
using test::kGreeting;
using test::kHere;
using test::kRequest;
using test::kTarget;
using test::kTargetPort;
using test::NoteAnalyser;
using test::NoteCommand;
using test::Proxied;
using test::ProxyClient;
using test::tickUntil;

TEST(ProxySocketLife, MessagesOnNoConnectionAreNotSent)
{
    const test::ProxyClientHandle client = new ProxyClient(nullptr);
    EXPECT_FALSE(client->SendNoNameCheck());
    EXPECT_FALSE(client->SendAccountCheck());
    EXPECT_FALSE(client->SendAccountID());
    client->m_TargetIP = kTarget;
    EXPECT_FALSE(client->SendTargetAddress());
}

TEST(ProxySocketLife, CloseLeavesTheStateAndAClosedOneDoesNothing)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting));
    ASSERT_TRUE(net.answer({5, 0}));
    net.m_Client->close();
    EXPECT_EQ(net.m_Client->m_ProxyState, 2);
    net.m_Client->onTick(0);
    EXPECT_EQ(net.m_Client->m_Workings, 0);
    // The next attempt starts from the beginning.
    net.m_Proxy->m_Stream.clear();
    EXPECT_TRUE(net.greets(kGreeting));
    EXPECT_EQ(net.m_Client->m_ProxyState, 1);
    ASSERT_TRUE(net.answer({5, 0}));
    EXPECT_TRUE(net.says(kRequest));
}

TEST(ProxySocketLife, ATickInAnyOtherStateDoesNothing)
{
    for (const int state : {0, 5, -1, 0x7FFFFFFF})
    {
        Proxied net;
        ASSERT_TRUE(net.greets(kGreeting));
        const size_t reports = net.m_Logs.lines().size();
        net.m_Client->m_ProxyState = state;
        ASSERT_TRUE(net.answer({5, 0}));
        EXPECT_EQ(net.m_Client->m_ProxyState, state);
        EXPECT_TRUE(net.isSilent());
        EXPECT_EQ(net.m_Logs.lines().size(), reports);
        // All of it is readable in memory.
        net.m_Client->m_ProxyState = ProxyClient::kAwaitsMethod;
        net.m_System.tick();
        EXPECT_EQ(net.m_Client->m_ProxyState, 2);
    }
}

TEST(ProxySocketLife, NoCommandIsDispatchedBeforeItWorks)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Proxied net(analyser);
    ASSERT_TRUE(net.greets(kAccountGreeting, L"n", L"p"));
    ASSERT_TRUE(net.answer(test::packetOf(NoteCommand(1))));
    ASSERT_TRUE(net.answer({5, 2}));
    ASSERT_TRUE(net.answer(test::packetOf(NoteCommand(2))));
    EXPECT_EQ(net.m_Client->m_ProxyState, 3);
    EXPECT_EQ(got, 0);
    EXPECT_FALSE(net.m_Client->isInvalid());
}

TEST(ProxySocketLife, TheHostMayCloseOrLetGoWhenItWorks)
{
    for (const bool letsGo : {false, true})
    {
        Proxied net;
        ASSERT_TRUE(net.greets(kGreeting));
        ASSERT_TRUE(net.answer({5, 0}));
        ASSERT_TRUE(net.says(kRequest));
        int calls = 0;
        ProxyClient* const client = net.m_Client;
        client->m_OnWorking = [&calls, letsGo, client, &net]
        {
            ++calls;
            client->stop();
            if (letsGo)
                net.m_Client = new ProxyClient(nullptr);
            else
                client->close();
        };
        net.m_Proxy->m_Stream->send(kGranted.data(), static_cast<int>(kGranted.size()));
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return calls == 1; }));
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Proxy->m_Stream->getConnectionState() != 2; }));
    }
}

TEST(ProxySocketLife, OneInNoSystemLooksForItself)
{
    Proxied net;
    net.m_Client->stop();
    net.m_Client = new ProxyClient(nullptr);
    net.m_Client->SetProxy(kHere, net.m_Proxy->getPort(), L"", L"");
    ASSERT_TRUE(net.m_Client->connect(kTarget, kTargetPort, false));
    const auto tickBothUntil = [&](int state)
    {
        for (int i = 0; i < 1000 && net.m_Client->m_ProxyState != state; ++i)
        {
            net.m_Client->onTick(0);
            net.m_System.tick();
        }
        return net.m_Client->m_ProxyState == state;
    };
    ASSERT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              net.m_Client->onTick(0);
                              return net.m_Proxy->m_Stream && net.m_Proxy->m_Stream->available() == 3;
                          }));
    net.m_Proxy->m_Stream->send("\5\0", 2);
    ASSERT_TRUE(tickBothUntil(2));
    net.m_Proxy->m_Stream->send("\5\0\0\1\0\0\0\0\0\0", 10);
    ASSERT_TRUE(tickBothUntil(4));
    EXPECT_EQ(net.m_Client->m_Workings, 1);
}

TEST(ProxySocketLife, ACopyTakesTheFieldsAndNoConnection)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kAccountGreeting, L"name", L"password"));
    const ProxyClient copy(*net.m_Client);
    EXPECT_TRUE(copy.m_ProxyIP == kHere);
    EXPECT_EQ(copy.m_ProxyPort, net.m_Proxy->getPort());
    EXPECT_TRUE(copy.m_TargetIP == kTarget);
    EXPECT_TRUE(copy.m_ProxyAccount == L"name");
    EXPECT_TRUE(copy.m_ProxyPassword == L"password");
    EXPECT_EQ(copy.m_ProxyState, 1);
    EXPECT_TRUE(copy.isInvalid());
    EXPECT_EQ(copy.getConnectionState(), 0);
    EXPECT_EQ(net.m_Client->getConnectionState(), 2);
}

TEST(ProxySocketLife, ThePasswordIsNotLeftInMemory)
{
    // A text of this length is stored inside the object.
    const std::wstring password = L"geheim";
    std::vector<unsigned char> needle(password.size() * sizeof(wchar_t));
    std::memcpy(needle.data(), password.data(), needle.size());
    void* const place = ::operator new(sizeof(ProxyClient));
    std::memset(place, 0, sizeof(ProxyClient));
    const auto isThere = [&]
    {
        const auto* const bytes = static_cast<const unsigned char*>(place);
        const auto* const end = bytes + sizeof(ProxyClient);
        return std::search(bytes, end, needle.begin(), needle.end()) != end;
    };
    auto* const client = new (place) ProxyClient(nullptr);
    client->SetProxy(L"127.0.0.1", 1080, L"name", password.c_str());
    EXPECT_TRUE(isThere());
    client->SetProxy(L"127.0.0.1", 1080, L"name", L"x");
    EXPECT_FALSE(isThere());
    client->SetProxy(L"127.0.0.1", 1080, L"name", password.c_str());
    client->~ProxyClient();
    EXPECT_FALSE(isThere());
    ::operator delete(place);
}

} // namespace
