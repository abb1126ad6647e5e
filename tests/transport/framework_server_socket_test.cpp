#include "transport/framework_server_socket.h"

#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

using test::Client;
using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::Server;
using test::tickUntil;

zet::Uuid idWithNode(unsigned short node)
{
    zet::Uuid id;
    zet::uuid_create(id);
    id.m_Node = zet::uuid_node_t();
    id.m_Node.m_Node[2] = node;
    return id;
}

// Records its ticks, and may change its state first.
struct Ticked : Client
{
    using Client::Client;
    void onTick(unsigned int tick) override
    {
        m_Log->push_back(this);
        m_LastTick = tick;
        if (m_Forced)
            m_State = m_Forced;
        else
            Client::onTick(tick);
    }
    std::vector<Ticked*>* m_Log = nullptr;
    unsigned int m_LastTick = 0;
    unsigned char m_Forced = 0;
};

// A server with a number of accepted connections that record their ticks.
struct TickedNet
{
    explicit TickedNet(int count) : m_Net(m_Analyser)
    {
        m_Net.m_Server->m_Make = [this]
        {
            auto* const client = new Ticked(m_Analyser);
            client->m_Log = &m_Log;
            return ClientHandle(client);
        };
        for (int i = 0; i < count; ++i)
            m_Net.connect(m_Analyser);
        m_Log.clear();
    }
    Ticked& at(size_t index) { return static_cast<Ticked&>(*m_Net.m_Server->m_Accepted[index]); }

    std::vector<Ticked*> m_Log;
    NoteAnalyser m_Analyser;
    Loopback m_Net;
};

TEST(FrameworkServerSocket, KeepsItsAddressAndItsPort)
{
    const CFrameworkServerSocket server(L"10.0.0.1", 8000);
    EXPECT_TRUE(server.GetIP() == L"10.0.0.1");
    EXPECT_EQ(server.GetPort(), 8000);
    EXPECT_EQ(server.GetClientCount(), 0);
    EXPECT_EQ(server.GetAllClientSocket()->getSize(), 0);
    EXPECT_EQ(server.GetAllFrameworkSocket()->getSize(), 0);
    EXPECT_TRUE(zet::String_T<wchar_t>(server.getClassTimestamp()) == L"Mon Dec  9 15:18:50 2019");
}

TEST(FrameworkServerSocket, AnEmptyAddressIsTheNameOfTheMachine)
{
    const CFrameworkServerSocket server(L"", 1);
    EXPECT_TRUE(server.GetIP() == zet::Socket::getHostName());
    EXPECT_FALSE(server.GetIP().isEmpty());
}

TEST(FrameworkServerSocket, ListenLeavesThePortOfTheConstructor)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    ASSERT_TRUE(net.m_IsListening);
    EXPECT_EQ(net.m_Server->GetPort(), 0);
    EXPECT_NE(net.m_Server->getPort(), 0);
}

TEST(FrameworkServerSocket, HoldsWhatItAccepts)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    ASSERT_TRUE(net.connect(analyser));
    CFrameworkClientSocket* const accepted = net.accepted();
    net.m_Server->m_Accepted.clear();
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    ASSERT_NE(net.m_Server->GetAllClientSocket()->find(accepted), nullptr);
    EXPECT_EQ(accepted->getRefCount(), 1);
}

TEST(FrameworkServerSocket, OnlyAFrameworkClientSocketIsAccepted)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const zet::Unknown::Handle_T<zet::TcpStream> plain = new zet::TcpStream;
    EXPECT_FALSE(net.m_Server->accept(plain));
    EXPECT_FALSE(net.m_Server->accept(nullptr));
    EXPECT_EQ(net.m_Server->GetClientCount(), 0);
}

TEST(FrameworkServerSocket, TicksEachConnectionOnceATickInTheOrderOfItsDictionary)
{
    TickedNet ticked(5);
    ticked.m_Net.m_System.tick();
    std::vector<Ticked*> expected;
    for (size_t i = 0; i < 5; ++i)
        expected.push_back(&ticked.at(i));
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(ticked.m_Log, expected);
    EXPECT_EQ(ticked.at(0).m_LastTick, ticked.at(4).m_LastTick);
}

TEST(FrameworkServerSocket, AClassWithATickOfItsOwnIsKnown)
{
    NoteAnalyser analyser;
    const ClientHandle plain = new Client(analyser);
    const zet::Unknown::Handle_T<Ticked> own = new Ticked(analyser);
    struct Deeper : Ticked
    {
        using Ticked::Ticked;
    };
    const zet::Unknown::Handle_T<Deeper> deeper = new Deeper(analyser);
    EXPECT_TRUE(own->HasOwnTick());
    EXPECT_TRUE(deeper->HasOwnTick());
#if defined(__x86_64__) || defined(__aarch64__) || defined(__arm__)
    EXPECT_FALSE(plain->HasOwnTick());
    EXPECT_FALSE(CCommandSocket::createInstance(analyser)->HasOwnTick());
#endif
}

TEST(FrameworkServerSocket, AConnectionInState3IsAbandonedInTheSameWalkAndTheOthersAreTicked)
{
    for (const unsigned char state : {3, 4, 5})
    {
        TickedNet ticked(3);
        const auto* const clients = ticked.m_Net.m_Server->GetAllClientSocket();
        std::vector<Ticked*> order = {&ticked.at(0), &ticked.at(1), &ticked.at(2)};
        std::sort(order.begin(), order.end());
        order[1]->m_Forced = state;
        ticked.m_Net.m_System.tick();
        EXPECT_EQ(ticked.m_Log, order);
        EXPECT_EQ(clients->getSize(), 2);
        EXPECT_EQ(clients->find(order[1]), nullptr);
        EXPECT_EQ(ticked.m_Net.m_Server->m_Abandons, 1);
        ticked.m_Log.clear();
        ticked.m_Net.m_System.tick();
        EXPECT_EQ(ticked.m_Log, (std::vector<Ticked*>{order[0], order[2]}));
    }
}

TEST(FrameworkServerSocket, AConnectingOneStays)
{
    TickedNet ticked(1);
    ticked.at(0).m_Forced = 1;
    ticked.m_Net.m_System.tick();
    EXPECT_EQ(ticked.m_Net.m_Server->GetClientCount(), 1);
}

TEST(FrameworkServerSocket, AnInvalidConnectionIsNotTickedButAbandoned)
{
    TickedNet ticked(2);
    ticked.at(0).close();
    ticked.m_Net.m_System.tick();
    EXPECT_EQ(ticked.m_Log, (std::vector<Ticked*>{&ticked.at(1)}));
    EXPECT_EQ(ticked.m_Net.m_Server->GetClientCount(), 1);
}

TEST(FrameworkServerSocket, AbandonedConnectionsAreDestroyedAfterTheWalk)
{
    TickedNet ticked(3);
    struct Dying : Ticked
    {
        using Ticked::Ticked;
        ~Dying() override { *m_IsDead = true; }
        bool* m_IsDead = nullptr;
    };
    bool isDead = false;
    ticked.m_Net.m_Server->m_Make = [&]
    {
        auto* const client = new Dying(ticked.m_Analyser);
        client->m_Log = &ticked.m_Log;
        client->m_IsDead = &isDead;
        return ClientHandle(client);
    };
    ticked.m_Net.connect(ticked.m_Analyser);
    static_cast<Dying&>(ticked.at(3)).m_Forced = 4;
    ticked.m_Net.m_Server->m_Accepted.pop_back();
    EXPECT_FALSE(isDead);
    ticked.m_Net.m_System.tick();
    EXPECT_TRUE(isDead);
    EXPECT_EQ(ticked.m_Net.m_Server->GetClientCount(), 3);
}

TEST(FrameworkServerSocket, CloseClosesEachAndLeavesBothDictionariesEmpty)
{
    struct Closed : Client
    {
        using Client::Client;
        void close() override
        {
            ++m_Closes;
            Client::close();
        }
        int m_Closes = 0;
    };
    NoteAnalyser analyser;
    Loopback net(analyser);
    net.m_Server->m_Make = [&] { return ClientHandle(new Closed(analyser)); };
    for (unsigned short i = 0; i < 3; ++i)
    {
        ASSERT_TRUE(net.connect(analyser));
        net.accepted()->m_PeerServerId = idWithNode(i);
        net.m_Server->SetFrameworkSocket(net.accepted());
    }
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 3);
    net.m_Server->close();
    for (const ClientHandle& client : net.m_Server->m_Accepted)
    {
        EXPECT_EQ(static_cast<Closed&>(*client).m_Closes, 1);
        EXPECT_TRUE(client->m_RegisteredId.isNull());
    }
    EXPECT_EQ(net.m_Server->m_Abandons, 3);
    EXPECT_EQ(net.m_Server->GetClientCount(), 0);
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 0);
    EXPECT_TRUE(net.m_Server->isInvalid());
    net.m_Server->close();
    EXPECT_EQ(net.m_Server->m_Abandons, 3);
}

TEST(FrameworkServerSocket, CloseAbandonsAnInvalidConnectionWithoutClosingIt)
{
    TickedNet ticked(2);
    ticked.at(1).close();
    ticked.m_Net.m_Server->close();
    EXPECT_EQ(ticked.m_Net.m_Server->m_Abandons, 2);
    EXPECT_EQ(ticked.m_Net.m_Server->GetClientCount(), 0);
}

TEST(FrameworkServerSocket, AHandlerMayCloseTheServer)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    int calls = 0;
    analyser.m_Handler = [&](CCommandSocket*, const NoteCommand&)
    {
        ++calls;
        net.m_Server->close();
        // No other handle holds them now.
        net.m_Server->m_Accepted.clear();
    };
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(net.connect(analyser));
    for (const ClientHandle& client : net.m_Clients)
        ASSERT_TRUE(client->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return calls > 0; }));
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(net.m_Server->GetClientCount(), 0);
    EXPECT_TRUE(net.m_Server->isInvalid());
    for (const ClientHandle& client : net.m_Clients)
        EXPECT_TRUE(tickUntil(net.m_System, [&] { return client->isInvalid(); }));
}

TEST(FrameworkServerSocket, AHandlerMayAbandonAnyConnectionAndTheServerGoesOn)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    int calls = 0;
    analyser.m_Handler = [&](CCommandSocket* socket, const NoteCommand&)
    {
        ++calls;
        for (const ClientHandle& client : net.m_Server->m_Accepted)
            if (client.get() != socket)
                net.m_Server->Abandon(client);
        net.m_Server->m_Accepted.clear();
    };
    for (int i = 0; i < 3; ++i)
        ASSERT_TRUE(net.connect(analyser));
    for (const ClientHandle& client : net.m_Clients)
        ASSERT_TRUE(client->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return calls > 0; }));
    net.m_System.tick();
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
    ASSERT_TRUE(net.connect(analyser));
    EXPECT_EQ(net.m_Server->GetClientCount(), 2);
}

TEST(FrameworkServerSocket, AHostMayWalkOverAllAndAbandonSome)
{
    TickedNet ticked(4);
    struct AbandonEverySecond : CFrameworkServerSocket::ClientSockets::Walker
    {
        explicit AbandonEverySecond(Server& server) : m_Server(server) {}
        bool onEntry(CFrameworkClientSocket* const& key, zet::Unknown::Handle_T<CFrameworkClientSocket>& value) override
        {
            EXPECT_EQ(key, value.get());
            if (m_Seen++ % 2 == 0)
                m_Server.Abandon(key);
            return true;
        }
        Server& m_Server;
        int m_Seen = 0;
    };
    AbandonEverySecond walker(*ticked.m_Net.m_Server);
    EXPECT_TRUE(ticked.m_Net.m_Server->GetAllClientSocket()->foreach(walker));
    EXPECT_EQ(walker.m_Seen, 4);
    EXPECT_EQ(ticked.m_Net.m_Server->GetClientCount(), 2);
    ticked.m_Net.m_System.tick();
    EXPECT_EQ(ticked.m_Log.size(), 2U);
}

TEST(FrameworkServerSocket, ASocketIsRegisteredOnceItsPeerHasSentItsId)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    ASSERT_TRUE(net.connect(analyser));
    const ClientHandle client = net.accepted();
    net.m_Server->SetFrameworkSocket(client);
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 0);

    const zet::Uuid id = idWithNode(5);
    client->m_PeerServerId = id;
    net.m_Server->SetFrameworkSocket(client);
    net.m_Server->SetFrameworkSocket(client);
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 1);
    EXPECT_EQ(client->m_RegisteredId, id);
    EXPECT_EQ(net.m_Server->GetFrameworkSocket(id.m_Node).get(), client.get());

    // A changed id is not picked up.
    client->m_PeerServerId = idWithNode(6);
    net.m_Server->SetFrameworkSocket(client);
    EXPECT_EQ(client->m_RegisteredId, id);
    EXPECT_TRUE(net.m_Server->GetFrameworkSocket(client->m_PeerServerId.m_Node).isNull());

    net.m_Server->RemoveFrameworkSocket(client);
    EXPECT_TRUE(client->m_RegisteredId.isNull());
    EXPECT_TRUE(net.m_Server->GetFrameworkSocket(id.m_Node).isNull());
    net.m_Server->RemoveFrameworkSocket(client);
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
}

TEST(FrameworkServerSocket, AnUnknownKeyGivesANullHandle)
{
    CFrameworkServerSocket server(L"x", 1);
    EXPECT_TRUE(server.GetFrameworkSocket(zet::uuid_node_t()).isNull());
}

TEST(FrameworkServerSocket, OfTwoWithOneKeyTheLaterIsFoundUntilTheEarlierEnds)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    ASSERT_TRUE(net.connect(analyser));
    ASSERT_TRUE(net.connect(analyser));
    const ClientHandle earlier = net.m_Server->m_Accepted[0];
    const ClientHandle later = net.m_Server->m_Accepted[1];
    earlier->m_PeerServerId = idWithNode(5);
    later->m_PeerServerId = idWithNode(5);
    const zet::uuid_node_t key = later->m_PeerServerId.m_Node;
    net.m_Server->SetFrameworkSocket(earlier);
    net.m_Server->SetFrameworkSocket(later);
    EXPECT_EQ(net.m_Server->GetFrameworkSocket(key).get(), later.get());
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 1);
    EXPECT_EQ(net.m_Server->GetClientCount(), 2);
    EXPECT_EQ(earlier->m_RegisteredId, earlier->m_PeerServerId);

    net.m_Server->Abandon(earlier);
    EXPECT_TRUE(net.m_Server->GetFrameworkSocket(key).isNull());
    EXPECT_EQ(later->m_RegisteredId, later->m_PeerServerId);
    EXPECT_EQ(net.m_Server->GetClientCount(), 1);
}

TEST(FrameworkServerSocket, APeerThatEndsLeavesBothDictionaries)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const ClientHandle client = net.connect(analyser);
    ASSERT_TRUE(client);
    net.accepted()->m_PeerServerId = idWithNode(5);
    net.m_Server->SetFrameworkSocket(net.accepted());
    client->close();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(net.m_Server->GetAllFrameworkSocket()->getSize(), 0);
    EXPECT_TRUE(net.accepted()->isInvalid());
}

TEST(FrameworkServerSocket, ItsEndClosesItsConnections)
{
    NoteAnalyser analyser;
    zet::System system;
    system.init();
    zet::Unknown::Handle_T<Server> server = new Server(analyser);
    server->start(&system);
    ASSERT_TRUE(server->listen(0, 5));
    const ClientHandle client = new Client(analyser);
    client->start(&system);
    ASSERT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    ASSERT_TRUE(tickUntil(system, [&] { return server->GetClientCount() == 1; }));
    const ClientHandle accepted = server->m_Accepted[0];
    server->stop();
    server.clear();
    EXPECT_TRUE(accepted->isInvalid());
    EXPECT_TRUE(tickUntil(system, [&] { return client->isInvalid(); }));
}

TEST(FrameworkServerSocket, AnUnstartedOneLooksForItselfAndItsConnections)
{
    int got = 0;
    NoteAnalyser analyser(
        [&](CCommandSocket* socket, const NoteCommand&)
        {
            ++got;
            EXPECT_TRUE(socket->send(NoteCommand(1)));
        });
    int answers = 0;
    NoteAnalyser clientAnalyser([&](CCommandSocket*, const NoteCommand&) { ++answers; });
    const zet::Unknown::Handle_T<Server> server = new Server(analyser);
    ASSERT_TRUE(server->listen(0, 5));
    const ClientHandle client = new Client(clientAnalyser);
    ASSERT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    ASSERT_TRUE(client->send(NoteCommand(1)));
    for (int i = 0; i < 1000 && answers == 0; ++i)
    {
        server->onTick(0);
        client->onTick(0);
    }
    EXPECT_EQ(got, 1);
    EXPECT_EQ(answers, 1);
}

} // namespace
