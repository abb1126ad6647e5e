// An exception from an override of one connection, in onTick(), receive() or close(), or of the server in Abandon(),
// left the server's tick: the connections after it had no turn and nothing was accepted, for as long as it threw. Each
// connection now has its own guard, and its input waits for its next tick.
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <map>
#include <stdexcept>

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

class Thrower : public test::Client
{
public:
    using Client::Client;

    int receive(void* data, int size) override
    {
        throwIf(m_InReceive);
        return Client::receive(data, size);
    }
    void close() override
    {
        throwIf(m_InClose);
        Client::close();
    }

    bool m_InReceive = false;
    bool m_InClose = false;
    int m_Throws = 0;

protected:
    void throwIf(bool isWanted)
    {
        if (!isWanted)
            return;
        ++m_Throws;
        throw std::runtime_error("thrown by an override");
    }
};
using ThrowerHandle = zet::Unknown::Handle_T<Thrower>;

class TickThrower : public Thrower
{
public:
    using Thrower::Thrower;
    void onTick(unsigned int tick) override
    {
        throwIf(m_InTick);
        Client::onTick(tick);
    }
    bool m_InTick = false;
};

// A server with one throwing connection among honest ones, some before it in the server's list and some after it.
struct BugsThrowing : testing::Test
{
    BugsThrowing()
        : m_Analyser([this](CCommandSocket* socket, const NoteCommand&) { ++m_Got[socket]; }), m_Net(m_Analyser)
    {
    }
    void SetUp() override
    {
        for (int i = 0; i < 8; ++i)
        {
            m_Net.m_Server->m_Make = [&]() -> ClientHandle
            {
                if (i != 4)
                    return new test::Client(m_Analyser);
                m_Thrower = new Thrower(m_Analyser);
                return ClientHandle(m_Thrower.get());
            };
            ASSERT_TRUE(m_Net.connect(m_Analyser));
            if (i == 4)
                m_Peer = m_Net.m_Clients.back();
        }
        m_Net.m_Server->m_Make = nullptr;
    }
    // Every honest connection is served, and a new one is accepted.
    void expectOthersServed()
    {
        m_Got.clear();
        for (const ClientHandle& client : m_Net.m_Clients)
            EXPECT_TRUE(client.get() == m_Peer.get() || client->send(NoteCommand(1)));
        const size_t honest = m_Net.m_Clients.size() - 1;
        EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Got.size() == honest; }));
        EXPECT_TRUE(m_Net.connect(m_Analyser));
    }
    bool hasLogged(const test::LogLines& log) const
    {
        for (const std::wstring& line : log.texts())
            if (line.find(L"thrown by an override") != std::wstring::npos &&
                line.find(m_Name.getBuffer()) != std::wstring::npos)
                return true;
        return false;
    }

    std::map<CCommandSocket*, int> m_Got;
    NoteAnalyser m_Analyser;
    Loopback m_Net;
    ThrowerHandle m_Thrower;
    ClientHandle m_Peer;
    zet::String_T<wchar_t> m_Name = L"127.0.0.1:";
};

TEST_F(BugsThrowing, ReceiveOfOneStarvesNoOther)
{
    const test::LogLines log;
    m_Thrower->m_InReceive = true;
    ASSERT_TRUE(m_Peer->send(NoteCommand(1)));
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Thrower->m_Throws > 1; }));
    expectOthersServed();
    EXPECT_TRUE(hasLogged(log));
    // The command has not been lost.
    m_Thrower->m_InReceive = false;
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Got[m_Thrower.get()] == 1; }));
}

TEST_F(BugsThrowing, CloseOfOneStarvesNoOther)
{
    const test::LogLines log;
    m_Thrower->m_InClose = true;
    const int before = m_Net.m_Server->GetClientCount();
    m_Peer->close();
    ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Net.m_Server->GetClientCount() == before - 1; }));
    EXPECT_EQ(m_Thrower->m_Throws, 1);
    expectOthersServed();
    EXPECT_TRUE(hasLogged(log));
    m_Thrower->m_InClose = false;
}

TEST_F(BugsThrowing, CloseOfOneKeepsNoOtherOpen)
{
    const test::LogLines log;
    m_Thrower->m_InClose = true;
    m_Net.m_Server->close();
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
    EXPECT_TRUE(m_Net.m_Server->isInvalid());
    for (const ClientHandle& client : m_Net.m_Server->m_Accepted)
        EXPECT_TRUE(client->isInvalid());
    m_Thrower->m_InClose = false;
}

TEST_F(BugsThrowing, ATickOfOneStarvesNoOther)
{
    const test::LogLines log;
    zet::Unknown::Handle_T<TickThrower> thrower;
    m_Net.m_Server->m_Make = [&]() -> ClientHandle
    {
        thrower = new TickThrower(m_Analyser);
        return ClientHandle(thrower.get());
    };
    m_Peer = m_Net.connect(m_Analyser);
    ASSERT_TRUE(m_Peer);
    m_Net.m_Server->m_Make = nullptr;
    thrower->m_InTick = true;
    // The throwing connection of the other tests is an honest one here.
    expectOthersServed();
    EXPECT_TRUE(hasLogged(log));
    ASSERT_TRUE(m_Peer->send(NoteCommand(1)));
    thrower->m_InTick = false;
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Got[thrower.get()] == 1; }));
}

class AbandonThrower : public test::Server
{
public:
    using Server::Server;
    void Abandon(zet::TcpConnection* connection) override
    {
        if (m_Throws)
            throw std::runtime_error("thrown by an override");
        Server::Abandon(connection);
    }
    bool m_Throws = true;
};

TEST(Bugs, AbandonThatThrowsStarvesNoOther)
{
    const test::LogLines log;
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<AbandonThrower> server = new AbandonThrower(analyser);
    server->start(&system);
    ASSERT_TRUE(server->listen(0, 10));
    std::vector<ClientHandle> clients;
    for (int i = 0; i < 6; ++i)
    {
        clients.push_back(new test::Client(analyser));
        clients.back()->start(&system);
        ASSERT_TRUE(clients.back()->connect(L"127.0.0.1", server->getPort(), false));
    }
    ASSERT_TRUE(tickUntil(system, [&] { return server->GetClientCount() == 6; }));
    clients[3]->close();
    EXPECT_TRUE(tickUntil(system, [&] { return server->GetClientCount() == 5; }));
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(clients[static_cast<size_t>(i)]->send(NoteCommand(i)), i != 3);
    EXPECT_TRUE(tickUntil(system, [&] { return got == 5; }));
    server->close();
    EXPECT_EQ(server->GetClientCount(), 0);
    EXPECT_TRUE(server->isInvalid());
    for (const ClientHandle& client : clients)
        client->close();
    system.exit();
}

class AcceptThrower : public test::Server
{
public:
    using Server::Server;
    void onAccept() override
    {
        if (m_Throws-- > 0)
            throw std::runtime_error("thrown by an override");
        Server::onAccept();
    }
    int m_Throws = 1;
};

TEST(Bugs, AnAcceptThatThrowsEndsNoAccepting)
{
    const test::LogLines log;
    NoteAnalyser analyser;
    zet::System system;
    system.init();
    const zet::Unknown::Handle_T<AcceptThrower> server = new AcceptThrower(analyser);
    server->start(&system);
    ASSERT_TRUE(server->listen(0, 10));
    std::vector<ClientHandle> clients;
    for (int i = 0; i < 2; ++i)
    {
        clients.push_back(new test::Client(analyser));
        clients.back()->start(&system);
        ASSERT_TRUE(clients.back()->connect(L"127.0.0.1", server->getPort(), false));
    }
    // The first one is refused.
    EXPECT_TRUE(tickUntil(system, [&] { return clients[0]->isInvalid(); }));
    EXPECT_EQ(server->GetClientCount(), 1);
    EXPECT_FALSE(clients[1]->isInvalid());
    for (const ClientHandle& client : clients)
        client->close();
    server->close();
    system.exit();
}

} // namespace
