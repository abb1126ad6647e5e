// The requests of the proxy socket, and its handling of replies.
#include "transport/framework_client_proxy_socket.h"

#include "tests/support/raw_peer.h"
#include "tests/support/scripted_proxy.h"

#include <gtest/gtest.h>

namespace
{

using test::accountMessage;
using test::Bytes;
using test::kAccountGreeting;
using test::kGranted;
using test::kGreeting;
using test::kHere;
using test::kRequest;
using test::kTarget;
using test::kTargetPort;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::Proxied;
using test::ProxyClient;
using test::tickUntil;
using Lines = std::vector<std::wstring>;

TEST(ProxySocket, ANewOneHasNoProxyAndIsInStateZero)
{
    const ProxyClient client(nullptr);
    EXPECT_EQ(client.m_ProxyState, 0);
    EXPECT_TRUE(client.m_ProxyIP.isEmpty());
    EXPECT_EQ(client.m_ProxyPort, 0);
    EXPECT_TRUE(client.m_TargetIP.isEmpty());
    EXPECT_EQ(client.m_TargetPort, 0);
    EXPECT_TRUE(client.m_ProxyAccount.isEmpty());
    EXPECT_TRUE(client.m_ProxyPassword.isEmpty());
    EXPECT_TRUE(zet::String_T<wchar_t>(client.getClassTimestamp()) == L"Mon Dec  9 15:18:49 2019");
}

TEST(ProxySocket, WithAnEmptyProxyAddressOrPort0ItConnectsDirectlyAndWorksAtOnce)
{
    for (const bool hasAddress : {false, true})
    {
        const test::BothLogs logs;
        std::vector<int> got;
        NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note)
                            { socket->send(NoteCommand(note.m_Number + 1)); });
        NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
        Loopback net(server);
        const test::ProxyClientHandle client = new ProxyClient(analyser);
        client->start(&net.m_System);
        client->SetProxy(hasAddress ? kHere : L"", hasAddress ? 0 : 1080, L"name", L"password");
        ASSERT_TRUE(client->connect(kHere, net.m_Server->getPort(), false));
        EXPECT_EQ(client->m_Workings, 1);
        // The event is reported to the host first.
        EXPECT_EQ(client->m_StateThen, 0);
        EXPECT_EQ(client->m_ProxyState, 4);
        ASSERT_TRUE(client->send(NoteCommand(1)));
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return !got.empty(); }));
        EXPECT_EQ(got, std::vector<int>{2});
        EXPECT_TRUE(client->GetIP() == kHere);
        EXPECT_EQ(client->m_TargetPort, net.m_Server->getPort());
        EXPECT_EQ(logs.lines(), Lines());
        client->close();
    }
}

TEST(ProxySocket, ADirectConnectionThatFailsLeavesTheStateAndCallsNoOne)
{
    const ProxyClient untouched(nullptr);
    const test::ProxyClientHandle client = new ProxyClient(nullptr);
    EXPECT_FALSE(client->connect(L"", 4711, false));
    EXPECT_FALSE(client->connect(nullptr, 4711, false));
    EXPECT_EQ(client->m_Workings, 0);
    EXPECT_EQ(client->m_ProxyState, untouched.m_ProxyState);
    EXPECT_EQ(client->m_TargetPort, 4711);
}

TEST(ProxySocket, GoesThroughAProxyWithoutAuthentication)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Proxied net(analyser);
    ASSERT_TRUE(net.greets(kGreeting));
    EXPECT_EQ(net.m_Client->m_ProxyState, 1);
    EXPECT_TRUE(net.m_Client->m_TargetIP == kTarget);
    EXPECT_EQ(net.m_Client->m_TargetPort, kTargetPort);
    EXPECT_TRUE(net.m_Client->GetIP() == kHere);
    EXPECT_EQ(net.m_Client->GetPort(), net.m_Proxy->getPort());
    ASSERT_TRUE(net.answer({5, 0}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 2);
    ASSERT_TRUE(net.says(kRequest));
    EXPECT_EQ(net.m_Client->m_Workings, 0);
    ASSERT_TRUE(net.answer(kGranted));
    EXPECT_EQ(net.m_Client->m_ProxyState, 4);
    EXPECT_EQ(net.m_Client->m_Workings, 1);
    EXPECT_EQ(net.m_Client->m_StateThen, 4);
    ASSERT_TRUE(net.answer(test::packetOf(NoteCommand(7))));
    EXPECT_EQ(got, std::vector<int>{7});
    ASSERT_TRUE(net.m_Client->send(NoteCommand(8)));
    EXPECT_TRUE(net.says(test::packetOf(NoteCommand(8))));
    EXPECT_EQ(net.m_Client->m_Workings, 1);
    EXPECT_EQ(net.m_Logs.lines(), (Lines{L"connect proxy " + net.proxyName() + L" success, waiting for socks5 reply",
                                         L"Check proxy " + net.proxyName() + L" ok, send real address code",
                                         L"Check proxy " + net.proxyName() + L" ok, Start Working"}));
    EXPECT_TRUE(net.m_Logs.agree());
    EXPECT_TRUE(net.m_Logs.areMessages());
}

TEST(ProxySocket, GoesThroughAProxyThatChecksTheAccountAndLogsThePassword)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kAccountGreeting, L"m\u00fcller", L"se cret"));
    ASSERT_TRUE(net.answer({5, 2}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 3);
    ASSERT_TRUE(net.says(accountMessage({'m', 0xC3, 0xBC, 'l', 'l', 'e', 'r'}, {'s', 'e', ' ', 'c', 'r', 'e', 't'})));
    ASSERT_TRUE(net.answer({1, 0}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 2);
    ASSERT_TRUE(net.says(kRequest));
    ASSERT_TRUE(net.answer(kGranted));
    EXPECT_EQ(net.m_Client->m_ProxyState, 4);
    EXPECT_EQ(net.m_Client->m_Workings, 1);
    EXPECT_EQ(net.m_Logs.lines(),
              (Lines{L"connect proxy " + net.proxyName() + L" success, waiting for socks5 reply",
                     L"Check proxy " + net.proxyName() + L" ok, send account name m\u00fcller & pwd se cret",
                     L"Check proxy account " + net.proxyName() + L" ok, send real address code",
                     L"Check proxy " + net.proxyName() + L" ok, Start Working"}));
    EXPECT_TRUE(net.m_Logs.agree());
    EXPECT_TRUE(net.m_Logs.areMessages());
}

TEST(ProxySocket, AnAccountWithoutPasswordOrAPasswordWithoutAccountGreetsWithoutCredentials)
{
    {
        Proxied net;
        EXPECT_TRUE(net.greets(kGreeting, L"name", L""));
    }
    Proxied net;
    EXPECT_TRUE(net.greets(kGreeting, L"", L"password"));
    // A proxy that requests the account nevertheless gets what is set.
    ASSERT_TRUE(net.answer({5, 2}));
    EXPECT_TRUE(net.says(accountMessage({}, {'p', 'a', 's', 's', 'w', 'o', 'r', 'd'})));
}

TEST(ProxySocket, AProxyThatIsNotReachedIsReportedAndLeavesStateZero)
{
    Proxied net;
    const std::wstring name = net.proxyName();
    net.m_Client->SetProxy(kHere, net.m_Proxy->getPort(), L"", L"");
    net.m_Proxy->close();
    net.m_Client->m_ProxyState = ProxyClient::kWorking;
    EXPECT_FALSE(net.m_Client->connect(kTarget, kTargetPort, false));
    EXPECT_EQ(net.m_Client->m_ProxyState, 0);
    EXPECT_EQ(net.m_Client->m_Workings, 0);
    EXPECT_EQ(net.m_Logs.lines(), Lines{L"connect proxy " + name + L" error"});
    EXPECT_TRUE(net.m_Logs.agree());
}

TEST(ProxySocket, AMethodReplyOfThreeBytesIsDropped)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting));
    ASSERT_TRUE(net.answer({5, 0, 0}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 1);
    EXPECT_TRUE(net.isSilent());
    ASSERT_TRUE(net.answer({5, 0}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 2);
}

TEST(ProxySocket, AnOddOrRefusingMethodReplyIsDroppedAndNotReported)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting));
    const size_t reports = net.m_Logs.lines().size();
    for (const Bytes& odd : {Bytes{5, 0xFF}, Bytes{5, 1}, Bytes{4, 0}, Bytes{0, 5}, Bytes(1023, 5), Bytes(3000, 0)})
    {
        ASSERT_TRUE(net.answer(odd));
        EXPECT_EQ(net.m_Client->m_ProxyState, 1);
    }
    EXPECT_TRUE(net.isSilent());
    EXPECT_EQ(net.m_Logs.lines().size(), reports);
    EXPECT_FALSE(net.m_Client->isInvalid());
}

TEST(ProxySocket, AMethodReplyOneByteATimeIsIgnored)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting));
    ASSERT_TRUE(net.answer({5}));
    ASSERT_TRUE(net.answer({0}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 1);
    EXPECT_TRUE(net.isSilent());
}

TEST(ProxySocket, ARefusedPasswordStaysInStateThreeAndIsNotReported)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kAccountGreeting, L"name", L"wrong"));
    ASSERT_TRUE(net.answer({5, 2}));
    ASSERT_TRUE(net.says(accountMessage({'n', 'a', 'm', 'e'}, {'w', 'r', 'o', 'n', 'g'})));
    const size_t reports = net.m_Logs.lines().size();
    for (const Bytes& odd : {Bytes{1, 1}, Bytes{5, 0}, Bytes{1}, Bytes{0}, Bytes{1, 0xFF, 1, 0}})
    {
        ASSERT_TRUE(net.answer(odd));
        EXPECT_EQ(net.m_Client->m_ProxyState, 3);
    }
    EXPECT_TRUE(net.isSilent());
    EXPECT_EQ(net.m_Logs.lines().size(), reports);
    // The proxy's end does not close the socket either.
    net.m_Proxy->m_Stream->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Client->getConnectionState() != 2; }));
    for (int i = 0; i < 3; ++i)
        net.m_System.tick();
    EXPECT_EQ(net.m_Client->getConnectionState(), zet::TcpConnection::kClosedByPeer);
    EXPECT_FALSE(net.m_Client->isInvalid());
    EXPECT_EQ(net.m_Client->m_ProxyState, 3);
}

TEST(ProxySocket, AnAccountReplyMayHaveMoreBytesAfterIt)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kAccountGreeting, L"n", L"p"));
    ASSERT_TRUE(net.answer({5, 2}));
    ASSERT_TRUE(net.says(accountMessage({'n'}, {'p'})));
    ASSERT_TRUE(net.answer({1, 0, 9, 9}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 2);
    EXPECT_TRUE(net.says(kRequest));
}

TEST(ProxySocket, ARefusedRequestStartsWorkingAllTheSame)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting));
    ASSERT_TRUE(net.answer({5, 0}));
    ASSERT_TRUE(net.says(kRequest));
    ASSERT_TRUE(net.answer({5, 4}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 4);
    EXPECT_EQ(net.m_Client->m_Workings, 1);
    EXPECT_EQ(net.m_Logs.lines().back(), L"Check proxy " + net.proxyName() + L" ok, Start Working");
    // The command layer runs from now on, and closes when the proxy closes.
    net.m_Proxy->m_Stream->close();
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.m_Client->isInvalid(); }));
    EXPECT_EQ(net.m_Client->m_ProxyState, 4);
}

TEST(ProxySocket, ACommandAfterTheLastReplyIsDroppedWithItAndTheNextOneArrives)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Proxied net(analyser);
    ASSERT_TRUE(net.greets(kGreeting));
    ASSERT_TRUE(net.answer({5, 0}));
    ASSERT_TRUE(net.says(kRequest));
    Bytes reply = kGranted;
    const Bytes command = test::packetOf(NoteCommand(1));
    reply.insert(reply.end(), command.begin(), command.end());
    ASSERT_TRUE(net.answer(reply));
    EXPECT_EQ(net.m_Client->m_ProxyState, 4);
    ASSERT_TRUE(net.answer(test::packetOf(NoteCommand(2))));
    EXPECT_EQ(got, std::vector<int>{2});
}

TEST(ProxySocket, WhatIsBeyond1023BytesOfTheLastReplyGoesToTheCommandLayer)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    Proxied net(analyser);
    ASSERT_TRUE(net.greets(kGreeting));
    ASSERT_TRUE(net.answer({5, 0}));
    ASSERT_TRUE(net.says(kRequest));
    Bytes reply(1023, 5);
    const Bytes command = test::packetOf(NoteCommand(1));
    reply.insert(reply.end(), command.begin(), command.end());
    ASSERT_TRUE(net.answer(reply));
    EXPECT_EQ(net.m_Client->m_ProxyState, 4);
    // Left-over bytes make the next tick due at once, not after the interval.
    net.m_System.setTickInterval(10 * 60 * 1000);
    net.m_System.wait();
    net.m_System.setTickInterval(10);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !got.empty(); }));
    EXPECT_EQ(got, std::vector<int>{1});
}

TEST(ProxySocket, TheSecondPieceOfALastReplyIsAnInvalidPacketAndCloses)
{
    NoteAnalyser analyser;
    Proxied net(analyser);
    ASSERT_TRUE(net.greets(kGreeting));
    ASSERT_TRUE(net.answer({5, 0}));
    ASSERT_TRUE(net.says(kRequest));
    ASSERT_TRUE(net.answer({5}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 4);
    ASSERT_TRUE(net.answer({0, 0, 1, 127, 0, 0, 1, 0x1F, 0x90}));
    EXPECT_TRUE(net.m_Client->isInvalid());
    EXPECT_EQ(net.m_Client->m_Workings, 1);
}

TEST(ProxySocket, ATargetNameThatOnlyTheResolverKnowsGoesOutAsAllOnes)
{
    ASSERT_NE(zet::Socket::gethostbyname("localhost"), nullptr);
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting, L"", L"", L"localhost"));
    ASSERT_TRUE(net.answer({5, 0}));
    EXPECT_TRUE(net.says({5, 1, 0, 1, 0xFF, 0xFF, 0xFF, 0xFF, 0x1F, 0x90}));
}

TEST(ProxySocket, ATargetThatTheResolverDoesNotKnowSendsNothing)
{
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting, L"", L"", L""));
    EXPECT_FALSE(net.m_Client->SendTargetAddress());
    ASSERT_TRUE(net.answer({5, 0}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 2);
    EXPECT_TRUE(net.isSilent());
}

TEST(ProxySocket, ANameOrPasswordOf255BytesIsSentAndALongerOneRefused)
{
    const std::wstring longest = std::wstring(127, L'\u00fc') + L'a';
    const std::wstring tooLong = std::wstring(128, L'\u00fc');
    Bytes told;
    for (int i = 0; i < 127; ++i)
        told.insert(told.end(), {0xC3, 0xBC});
    told.push_back('a');
    {
        Proxied net;
        ASSERT_TRUE(net.greets(kAccountGreeting, longest.c_str(), longest.c_str()));
        ASSERT_TRUE(net.answer({5, 2}));
        EXPECT_TRUE(net.says(accountMessage(told, told)));
    }
    for (const bool isName : {false, true})
    {
        Proxied net;
        const std::wstring name = net.proxyName();
        net.m_Client->SetProxy(kHere, net.m_Proxy->getPort(), isName ? tooLong.c_str() : L"n",
                               isName ? L"p" : tooLong.c_str());
        EXPECT_FALSE(net.m_Client->connect(kTarget, kTargetPort, false));
        EXPECT_EQ(net.m_Client->m_ProxyState, 0);
        EXPECT_TRUE(net.m_Client->isInvalid());
        EXPECT_EQ(net.m_Logs.lines(), Lines{L"connect proxy " + name + L" error"});
    }
    // If only the proxy requires it, it is refused at that point.
    Proxied net;
    ASSERT_TRUE(net.greets(kGreeting, tooLong.c_str(), L""));
    EXPECT_FALSE(net.m_Client->SendAccountID());
    ASSERT_TRUE(net.answer({5, 2}));
    EXPECT_EQ(net.m_Client->m_ProxyState, 3);
    EXPECT_TRUE(net.isSilent());
}

} // namespace
