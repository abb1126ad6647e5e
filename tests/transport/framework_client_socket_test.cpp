#include "transport/framework_client_socket.h"

#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <utility>

namespace
{

using test::Client;
using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::tickUntil;

void fill(Client& client)
{
    client.m_ServerType = 7;
    zet::uuid_create(client.m_PeerServerId);
    client.m_Version = L"1.2.3";
    client.m_ServerName = L"zone of the north, number one";
    client.m_IP = L"10.0.0.1";
    client.m_Port = 8000;
    client.m_Reserved = 99;
    zet::uuid_create(client.m_RegisteredId);
}

void expectEqual(const Client& a, const Client& b)
{
    EXPECT_EQ(a.GetServerType(), b.GetServerType());
    EXPECT_EQ(a.GetPeerServerId(), b.GetPeerServerId());
    EXPECT_TRUE(a.GetVersion() == b.GetVersion());
    EXPECT_TRUE(a.GetServerName() == b.GetServerName());
    EXPECT_TRUE(a.GetIP() == b.GetIP());
    EXPECT_EQ(a.GetPort(), b.GetPort());
    EXPECT_EQ(a.m_Reserved, b.m_Reserved);
    EXPECT_EQ(a.m_RegisteredId, b.m_RegisteredId);
}

TEST(FrameworkClientSocket, ANewOneKnowsNothingOfItsPeer)
{
    NoteAnalyser analyser;
    const Client client(analyser);
    EXPECT_EQ(client.GetServerType(), 255);
    EXPECT_TRUE(client.GetPeerServerId().isNull());
    EXPECT_TRUE(client.m_RegisteredId.isNull());
    EXPECT_TRUE(client.GetVersion().isEmpty());
    EXPECT_TRUE(client.GetServerName().isEmpty());
    EXPECT_TRUE(client.GetIP().isEmpty());
    EXPECT_EQ(client.GetPort(), 0);
    EXPECT_EQ(client.m_Reserved, 0);
    EXPECT_TRUE(zet::String_T<wchar_t>(client.getClassTimestamp()) == L"Mon Dec  9 15:18:49 2019");
}

TEST(FrameworkClientSocket, ConnectKeepsTheAddress)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const ClientHandle client = net.connect(analyser);
    ASSERT_TRUE(client);
    EXPECT_TRUE(client->GetIP() == L"127.0.0.1");
    EXPECT_EQ(client->GetPort(), net.m_Server->getPort());
}

TEST(FrameworkClientSocket, AFailedConnectKeepsTheAddressThatWasTried)
{
    NoteAnalyser analyser;
    const ClientHandle client = new Client(analyser);
    EXPECT_FALSE(client->connect(L"", 4711, false));
    EXPECT_TRUE(client->GetIP() == L"");
    EXPECT_EQ(client->GetPort(), 4711);
    unsigned short port = 0;
    {
        Loopback gone(analyser);
        port = gone.m_Server->getPort();
    }
    client->connect(L"127.0.0.1", port, false);
    EXPECT_TRUE(client->GetIP() == L"127.0.0.1");
    EXPECT_EQ(client->GetPort(), port);
}

TEST(FrameworkClientSocket, AnAcceptedOneHasNoAddress)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    ASSERT_TRUE(net.connect(analyser));
    EXPECT_TRUE(net.accepted()->GetIP().isEmpty());
    EXPECT_EQ(net.accepted()->GetPort(), 0);
    EXPECT_FALSE(net.accepted()->getPeerName().isEmpty());
}

TEST(FrameworkClientSocket, ConnectIsTheOneTheSubclassSees)
{
    struct Curious : Client
    {
        using Client::Client;
        bool attach(unsigned int handle) override
        {
            ++m_Attaches;
            m_StateAtAttach = getConnectionState();
            return Client::attach(handle);
        }
        int m_Attaches = 0;
        int m_StateAtAttach = 0;
    };
    NoteAnalyser analyser;
    Loopback net(analyser);
    const zet::Unknown::Handle_T<Curious> client = new Curious(analyser);
    client->start(&net.m_System);
    zet::TcpConnection* const connection = client;
    ASSERT_TRUE(connection->connect(L"127.0.0.1", net.m_Server->getPort(), true));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return client->getConnectionState() == 2; }));
    EXPECT_EQ(client->m_Attaches, 1);
    EXPECT_EQ(client->m_StateAtAttach, 2);
    EXPECT_TRUE(client->GetIP() == L"127.0.0.1");
    client->close();
}

TEST(FrameworkClientSocket, CopiesAndMovesTakeTheIdentityAndLeaveTheConnection)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const ClientHandle original = net.connect(analyser);
    ASSERT_TRUE(original);
    fill(*original);
    const Client copy(*original);
    expectEqual(copy, *original);
    EXPECT_TRUE(copy.isInvalid());
    EXPECT_EQ(copy.getConnectionState(), 0);
    EXPECT_EQ(copy.getSystem(), nullptr);
    EXPECT_EQ(copy.GetCmdAnalyser(), original->GetCmdAnalyser());
    EXPECT_EQ(copy.getRefCount(), 0);

    const Client moved(std::move(*original));
    expectEqual(moved, *original);
    EXPECT_FALSE(original->isInvalid());

    NoteAnalyser other;
    Client assigned(other);
    assigned = copy;
    expectEqual(assigned, copy);
    EXPECT_EQ(assigned.GetCmdAnalyser(), other.get());
    Client moveAssigned(other);
    moveAssigned = std::move(assigned);
    expectEqual(moveAssigned, copy);

    // On an open connection: the connection stays.
    *original = Client(other);
    EXPECT_EQ(original->GetServerType(), 255);
    EXPECT_EQ(original->getConnectionState(), 2);
}

} // namespace
