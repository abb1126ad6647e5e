// Commands over TLS, and what each end knows about the other.
#include "tests/support/log_lines.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::ClientHandle;
using test::makeClientContext;
using test::makeServerContext;
using test::NoteAnalyser;
using test::NoteCommand;
using test::someAuthority;
using test::tickUntil;
using test::TlsHandle;
using test::TlsLoopback;

TEST(Tls, CommandsGoBothWays)
{
    NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note)
                        { EXPECT_TRUE(socket->send(NoteCommand(note.m_Number + 1, note.m_Ballast))); });
    std::vector<int> got;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    TlsLoopback net(server);
    const ClientHandle socket = net.connectTls(client, makeClientContext());
    ASSERT_TRUE(socket);
    EXPECT_TRUE(socket->isSecure());
    EXPECT_TRUE(net.accepted()->isSecure());
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i, i * 50)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 100; }));
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(got[static_cast<size_t>(i)], i + 1);
}

TEST(Tls, TheConnectionIsConnectingUntilTheHandshakeIsDone)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const ClientHandle socket = net.begin(analyser, makeClientContext());
    ASSERT_TRUE(net.m_IsBegun);
    EXPECT_EQ(socket->getConnectionState(), zet::TcpConnection::kConnecting);
    EXPECT_FALSE(socket->isSecure());
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !net.m_Server->m_Accepted.empty(); }));
    EXPECT_EQ(net.accepted()->getConnectionState(), zet::TcpConnection::kConnecting);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return socket->isSecure() && net.accepted()->isSecure(); }));
    EXPECT_EQ(socket->getConnectionState(), zet::TcpConnection::kEstablished);
    EXPECT_EQ(net.accepted()->getConnectionState(), zet::TcpConnection::kEstablished);
    EXPECT_EQ(net.m_Server->m_Abandons, 0);
}

TEST(Tls, WhatIsSentBeforeTheHandshakeArrivesAfterIt)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    TlsLoopback net(analyser);
    const ClientHandle socket = net.begin(analyser, makeClientContext());
    ASSERT_TRUE(net.m_IsBegun);
    // Enough that a part would be sent at once.
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i, 20000)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 20; }));
    for (int i = 0; i < 20; ++i)
        EXPECT_EQ(got[static_cast<size_t>(i)], i);
}

TEST(Tls, TheAcceptingSideMaySendFirst)
{
    int got = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand& note) { got = note.m_Number; });
    NoteAnalyser server;
    TlsLoopback net(server);
    const ClientHandle socket = net.begin(client, makeClientContext());
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !net.m_Server->m_Accepted.empty(); }));
    ASSERT_TRUE(net.accepted()->send(NoteCommand(7)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 7; }));
}

TEST(Tls, TheNewestVersionIsTaken)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    const ClientHandle socket = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(socket);
    EXPECT_EQ(std::wstring(socket->getTlsDescription().getBuffer()).find(L"(TLS1.3)"), 0u);
    EXPECT_EQ(socket->getVerifiedName(), L"server.example");
    EXPECT_TRUE(net.accepted()->getVerifiedName().isEmpty());
}

TEST(Tls, AHostNameGivenToConnectIsTheOneThatIsChecked)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    EXPECT_TRUE(net.connectTls(analyser, makeClientContext(), L"localhost"));
    TlsLoopback other(analyser, makeServerContext(someAuthority().issue({"", {"somewhere.example"}})));
    EXPECT_FALSE(other.connectTls(analyser, makeClientContext(), L"localhost"));
}

TEST(Tls, AHostNameSetByTheHostIsCheckedInstead)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser, makeServerContext(someAuthority().issue({"", {"somewhere.example"}})));
    const ClientHandle socket = new test::Client(analyser);
    socket->setTlsHostName(L"somewhere.example");
    ASSERT_TRUE(socket->setTlsContext(makeClientContext()));
    socket->start(&net.m_System);
    net.m_Clients.push_back(socket);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return socket->isSecure(); }));
    // Without a common name, the first host name is the peer's.
    EXPECT_EQ(socket->getVerifiedName(), L"somewhere.example");
}

TEST(Tls, AClientShowsItsCertificateToAServerThatAsks)
{
    const TlsHandle wants = makeServerContext();
    ASSERT_TRUE(wants->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(wants->setClientCertificate(zet::TlsContext::kRequired));
    NoteAnalyser analyser;
    TlsLoopback net(analyser, wants);
    const TlsHandle shows = makeClientContext();
    const auto mine = someAuthority().issue({"player 7", {}});
    ASSERT_TRUE(shows->setCertificate(mine.m_Chain.c_str(), mine.m_Key.c_str()));
    ASSERT_TRUE(net.connectTls(analyser, shows));
    EXPECT_EQ(net.accepted()->getVerifiedName(), L"player 7");
}

TEST(Tls, AClientWithoutCertificateIsLetInWhereItIsOnlyAskedFor)
{
    const TlsHandle asks = makeServerContext();
    ASSERT_TRUE(asks->addTrust(someAuthority().pem().c_str()));
    ASSERT_TRUE(asks->setClientCertificate(zet::TlsContext::kAsked));
    NoteAnalyser analyser;
    TlsLoopback net(analyser, asks);
    ASSERT_TRUE(net.connectTls(analyser, makeClientContext()));
    EXPECT_TRUE(net.accepted()->getVerifiedName().isEmpty());
}

TEST(Tls, FiftyMegabytesArriveWholeWithinTheOutputLimit)
{
    long long sum = 0;
    int count = 0;
    NoteAnalyser server(
        [&](CCommandSocket*, const NoteCommand& note)
        {
            sum += note.m_Ballast;
            ++count;
        });
    NoteAnalyser client;
    TlsLoopback net(server);
    zet::NetLimits limits;
    limits.m_TurnInput = 0;
    net.m_Server->setLimits(limits);
    const ClientHandle socket = net.connectTls(client, makeClientContext());
    ASSERT_TRUE(socket);
    constexpr int kPiece = 500000;
    constexpr size_t kLimit = 2 * 1024 * 1024;
    socket->setOutputLimit(kLimit);
    int sent = 0;
    size_t most = 0;
    ASSERT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              while (sent < 100 && socket->getOutputSize() < kLimit &&
                                     socket->send(NoteCommand(sent, kPiece + sent)))
                                  ++sent;
                              most = std::max(most, socket->getOutputSize());
                              return count == 100;
                          }));
    EXPECT_EQ(sum, 100LL * kPiece + 99 * 50);
    // The limit plus one command, and the bytes encrypted at that time.
    EXPECT_LT(most, kLimit + kPiece + 400 * 1024);
}

TEST(Tls, ACloseNotifyIsDistinguishedFromABrokenEnd)
{
    NoteAnalyser analyser;
    TlsLoopback net(analyser);
    struct Noting : test::Client
    {
        using Client::Client;
        void close() override
        {
            if (!isInvalid())
                m_Last = getConnectionState();
            Client::close();
        }
        ConnectionState m_Last = kDown;
    };
    std::vector<zet::Unknown::Handle_T<Noting>> ends;
    net.m_Server->m_Make = [&]
    {
        ends.push_back(new Noting(analyser));
        return ClientHandle(ends.back());
    };
    const ClientHandle polite = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(polite);
    polite->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Abandons == 1; }));
    EXPECT_EQ(ends[0]->m_Last, zet::TcpConnection::kClosedByPeer);

    test::LogLines log;
    const ClientHandle rude = net.connectTls(analyser, makeClientContext());
    ASSERT_TRUE(rude);
    // Its handle is closed without TLS.
    zet::TcpConnection plain;
    ASSERT_TRUE(plain.attach(rude->detach()));
    plain.close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Abandons == 2; }));
    EXPECT_EQ(ends[1]->m_Last, zet::TcpConnection::kBroken);
    EXPECT_EQ(ends[1]->getEndCause().m_Code, zet::EndCause::kCutOff);
    auto texts = log.texts();
    std::erase_if(texts, [](const std::wstring& line) { return line.find(L"Connection with ") == 0; });
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_NE(texts[0].find(L"broke: ended without close_notify"), std::wstring::npos);
}

TEST(Tls, WhatWasSentBeforeACloseArrives)
{
    int got = 0;
    NoteAnalyser server([&](CCommandSocket*, const NoteCommand&) { ++got; });
    NoteAnalyser client;
    TlsLoopback net(server);
    const ClientHandle socket = net.connectTls(client, makeClientContext());
    ASSERT_TRUE(socket);
    for (int i = 0; i < 10; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i, 1000)));
    socket->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Abandons == 1; }));
    EXPECT_EQ(got, 10);
}

TEST(Tls, AConnectionMayJoinASystemInTheMiddleOfItsHandshake)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    TlsLoopback net(analyser);
    const ClientHandle socket = new test::Client(analyser);
    ASSERT_TRUE(socket->setTlsContext(makeClientContext()));
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(socket->start(&net.m_System));
    net.m_Clients.push_back(socket);
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
    EXPECT_TRUE(socket->isSecure());
}

TEST(Tls, AConnectionKeptPlainSwitchesToTlsOnRequest)
{
    std::vector<int> got;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { got.push_back(note.m_Number); });
    TlsLoopback net(analyser);
    net.m_Server->m_Make = [&]
    {
        const ClientHandle made = new test::Client(analyser);
        made->delayTls(true);
        return made;
    };
    const ClientHandle socket = new test::Client(analyser);
    socket->delayTls(true);
    ASSERT_TRUE(socket->setTlsContext(makeClientContext()));
    socket->start(&net.m_System);
    net.m_Clients.push_back(socket);
    ASSERT_TRUE(socket->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return !net.m_Server->m_Accepted.empty(); }));
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 1; }));
    EXPECT_FALSE(socket->isSecure());
    ASSERT_TRUE(net.accepted()->startTls());
    ASSERT_TRUE(socket->startTls());
    EXPECT_FALSE(socket->startTls());
    ASSERT_TRUE(socket->send(NoteCommand(2)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return got.size() == 2; }));
    EXPECT_TRUE(socket->isSecure());
    EXPECT_TRUE(net.accepted()->isSecure());
}

} // namespace
