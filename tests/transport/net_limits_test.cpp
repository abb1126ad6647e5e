// The limits of a TCP port against peers that it does not know: connections, input and output, and time.
#include "net/limits.h"

#include "framework/time.h"
#include "tests/support/log_lines.h"
#include "tests/support/net_pair.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::RawPeer;
using test::tickUntil;
using zet::NetLimits;

constexpr int kEstablished = zet::TcpConnection::kEstablished;

std::vector<unsigned char> announcement(unsigned int size)
{
    return {static_cast<unsigned char>(size), static_cast<unsigned char>(size >> 8),
            static_cast<unsigned char>(size >> 16), static_cast<unsigned char>(size >> 24)};
}

// The log lines that contain a text.
long countLines(const test::LogLines& log, const wchar_t* part)
{
    const auto texts = log.texts();
    return std::count_if(texts.begin(), texts.end(),
                         [part](const std::wstring& text) { return text.find(part) != std::wstring::npos; });
}

// Clients that are connecting.
std::vector<ClientHandle> visit(Loopback& net, NoteAnalyser& analyser, int count)
{
    std::vector<ClientHandle> clients;
    for (int i = 0; i < count; ++i)
    {
        clients.push_back(new test::Client(analyser));
        clients.back()->start(&net.m_System);
        EXPECT_TRUE(clients.back()->connect(L"127.0.0.1", net.m_Server->getPort(), false));
        net.m_Clients.push_back(clients.back());
    }
    return clients;
}

int countOpen(const std::vector<ClientHandle>& clients)
{
    int open = 0;
    for (const ClientHandle& client : clients)
        open += client->getConnectionState() == kEstablished;
    return open;
}

struct Bound
{
    const char* m_Name;
    int NetLimits::*m_Field;
    const wchar_t* m_Logged;
};

class NumbersOfConnections : public testing::TestWithParam<Bound>
{
};

TEST_P(NumbersOfConnections, OneMoreIsTurnedAwayUntilAnotherGoes)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    NetLimits limits;
    limits.*GetParam().m_Field = 3;
    net.m_Server->setLimits(limits);
    const test::LogLines log;
    const auto clients = visit(net, analyser, 5);
    ASSERT_TRUE(
        tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 3 && countOpen(clients) == 3; }));
    EXPECT_EQ(net.m_Server->m_Accepted.size(), 3u);
    // The first closed one is logged, and the others a minute later.
    EXPECT_TRUE(log.has(zet::Log::kWarning,
                        std::wstring(L"Connections closed at once by limits of the port: ") + GetParam().m_Logged));
    EXPECT_EQ(countLines(log, L"Connections closed at once"), 1);
    // The first ones stay.
    clients[1]->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 2; }));
    const auto later = visit(net, analyser, 2);
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 3 && countOpen(later) == 1; }));
    limits.*GetParam().m_Field = 0;
    net.m_Server->setLimits(limits);
    visit(net, analyser, 10);
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 13; }));
}

INSTANTIATE_TEST_SUITE_P(NetLimits, NumbersOfConnections,
                         testing::Values(Bound{"InAll", &NetLimits::m_Connections,
                                               L"1 in all, 0 of an address, 0 of a subnet"},
                                         Bound{"PerAddress", &NetLimits::m_ConnectionsPerAddress,
                                               L"0 in all, 1 of an address, 0 of a subnet"},
                                         Bound{"PerSubnet", &NetLimits::m_ConnectionsPerSubnet,
                                               L"0 in all, 0 of an address, 1 of a subnet"}),
                         [](const auto& info) { return std::string(info.param.m_Name); });

TEST(NetLimits, OneThatIsTurnedAwayByPermissionTakesNoPlace)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    NetLimits limits;
    limits.m_Connections = 1;
    net.m_Server->setLimits(limits);
    net.m_Server->addRejectAddress({127, 0, 0, 1}, {255, 255, 255, 255});
    const auto refused = visit(net, analyser, 3);
    const auto isOver = [](const auto& each) { return each->isInvalid(); };
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return std::all_of(refused.begin(), refused.end(), isOver); }));
    EXPECT_EQ(net.m_Server->GetClientCount(), 0);
    net.m_Server->addPermissionAddress({127, 0, 0, 1}, {255, 255, 255, 255});
    EXPECT_TRUE(net.connect(analyser));
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
}

TEST(NetLimits, TheFirstPacketOfAStrangerIsShort)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    // A command without a handler does not lift the limit of first input.
    CCmdPackager unknown;
    unknown.SetCmdID(0x0124);
    const ClientHandle other = net.connect(analyser);
    ASSERT_TRUE(other);
    ASSERT_TRUE(other->send(unknown));
    net.m_System.tick();
    ASSERT_TRUE(peer.send(announcement(NetLimits().m_FirstInput + 1)));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 1; }));
    ASSERT_TRUE(other->send(NoteCommand(1, NetLimits().m_FirstInput)));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
}

TEST(NetLimits, AfterTheFirstCommandTheHostsLimitCounts)
{
    int ballast = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { ballast = note.m_Ballast; });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    net.accepted()->SetPacketLimit(3 * 1024 * 1024);
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(1, 100))));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return ballast == 100; }));
    ASSERT_TRUE(peer.send(packetOf(NoteCommand(1, 2 * 1024 * 1024))));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return ballast == 2 * 1024 * 1024; }));
    ASSERT_TRUE(peer.send(announcement(3 * 1024 * 1024 + 1)));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
}

TEST(NetLimits, AConnectionOfOurOwnHasNoFirstInputLimit)
{
    int ballast = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand& note) { ballast = note.m_Ballast; });
    NoteAnalyser server;
    Loopback net(server);
    const ClientHandle socket = net.connect(client);
    ASSERT_TRUE(socket);
    EXPECT_FALSE(socket->getPortLimits());
    ASSERT_TRUE(net.accepted()->getPortLimits());
    EXPECT_EQ(net.accepted()->getPortLimits()->m_FirstInput, NetLimits().m_FirstInput);
    ASSERT_TRUE(net.accepted()->send(NoteCommand(1, 2 * 1024 * 1024)));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return ballast == 2 * 1024 * 1024; }));
}

TEST(NetLimits, TheFirstMessageOfASessionIsShort)
{
    test::NetPair net;
    const test::NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    NoteCommand large(1, NetLimits().m_FirstInput);
    const test::NotingHandle far = net.accepted();
    ASSERT_TRUE(session->sendNetCommand(&large));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return far->m_Notes == "oex"; }));

    const test::NotingHandle other = net.connect();
    ASSERT_TRUE(other);
    int got = 0;
    test::NetNotes::s_Handler = [&](unsigned long, unsigned long, const NoteCommand&) { ++got; };
    NoteCommand small(1);
    ASSERT_TRUE(other->sendNetCommand(&small));
    ASSERT_TRUE(other->sendNetCommand(&large));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return got == 2; }));
}

TEST(NetLimits, InputOfAllIsBoundedAndTheGreediestGoes)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    Loopback net(analyser);
    NetLimits limits;
    limits.m_InputSum = 600000;
    net.m_Server->setLimits(limits);
    const ClientHandle honest = net.connect(analyser);
    ASSERT_TRUE(honest);
    // Halves of packets, each in a block larger than itself.
    std::vector<std::unique_ptr<RawPeer>> peers;
    const test::LogLines log;
    for (int i = 0; i < 5; ++i)
    {
        peers.push_back(std::make_unique<RawPeer>(net));
        ASSERT_TRUE(peers.back()->m_IsUp);
        std::vector<unsigned char> half = announcement(1000000);
        half.resize(150000);
        ASSERT_TRUE(peers.back()->send(half));
        ASSERT_TRUE(honest->send(NoteCommand(i, 3000)));
        ASSERT_TRUE(tickUntil(net.m_System, [&] { return got == i + 1; }));
        for (int j = 0; j < 5; ++j)
            net.m_System.tick();
    }
    EXPECT_LT(net.m_Server->GetClientCount(), 6);
    EXPECT_GT(net.m_Server->GetClientCount(), 1);
    EXPECT_EQ(honest->getConnectionState(), kEstablished);
    EXPECT_FALSE(log.texts().empty());
    // The closed ones no longer count.
    peers.clear();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 1; }));
    RawPeer late(net);
    ASSERT_TRUE(late.m_IsUp);
    ASSERT_TRUE(late.send(packetOf(NoteCommand(9, 400000))));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return got == 6; }));
}

TEST(NetLimits, OutputOfAllIsBoundedAndTheGreediestGoes)
{
    NoteAnalyser server([](CCommandSocket* socket, const NoteCommand& note)
                        { socket->send(NoteCommand(note.m_Number, 60000)); });
    int answers = 0;
    NoteAnalyser client([&](CCommandSocket*, const NoteCommand&) { ++answers; });
    Loopback net(server);
    NetLimits limits;
    limits.m_OutputSum = 3000000;
    net.m_Server->setLimits(limits);
    const ClientHandle honest = net.connect(client);
    ASSERT_TRUE(honest);
    std::vector<std::unique_ptr<RawPeer>> deaf;
    std::vector<ClientHandle> far;
    for (int i = 0; i < 4; ++i)
    {
        deaf.push_back(std::make_unique<RawPeer>(net));
        ASSERT_TRUE(deaf.back()->m_IsUp);
        deaf.back()->m_Stream->sleep(0x7FFFFFFF);
        far.push_back(net.accepted());
    }
    const test::LogLines log;
    const auto question = packetOf(NoteCommand(1));
    int asked = 0;
    for (int i = 0; i < 1000 && net.m_Server->GetClientCount() > 2; ++i)
    {
        for (const auto& peer : deaf)
            peer->send(question);
        ASSERT_TRUE(honest->send(NoteCommand(2)));
        ++asked;
        net.m_System.tick();
        size_t sum = 0;
        for (const ClientHandle& each : far)
            sum += each->getOutputSize();
        ASSERT_LE(sum, limits.m_OutputSum + 5 * 60100);
    }
    EXPECT_LE(net.m_Server->GetClientCount(), 2);
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return answers == asked; }));
    EXPECT_EQ(honest->getConnectionState(), kEstablished);
}

TEST(NetLimits, ASilentPeerIsEndedWhereTheHostSaysSo)
{
    zet::TestClock clock(1000000000);
    NoteAnalyser analyser;
    Loopback net(analyser);
    NetLimits limits;
    limits.m_IdleTime = 60000;
    net.m_Server->setLimits(limits);
    const ClientHandle silent = net.connect(analyser);
    const ClientHandle talking = net.connect(analyser);
    ASSERT_TRUE(silent && talking);
    const test::LogLines log;
    for (int i = 0; i < 5; ++i)
    {
        clock.advance(20000);
        ASSERT_TRUE(talking->send(NoteCommand(i)));
        for (int j = 0; j < 3; ++j)
            net.m_System.tick();
        EXPECT_EQ(net.m_Server->GetClientCount(), i < 2 ? 2 : 1) << i;
    }
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return silent->isInvalid(); }));
    EXPECT_EQ(talking->getConnectionState(), kEstablished);
    EXPECT_EQ(countLines(log, L"timed out (no input)"), 1);
}

} // namespace
