// Several Systems on one port: who serves which connection, and what happens where the system does not share ports.
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"
#include "tests/support/passing_door.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace
{

using test::Client;
using test::ClientHandle;
using test::NoteAnalyser;
using test::NoteCommand;
using test::Server;
using test::tickUntil;
using ServerHandle = zet::Unknown::Handle_T<Server>;

#ifdef __linux__

// A System of this thread with a server on a port that it shares. It answers each command with its own number.
struct Half
{
    explicit Half(int number, unsigned short port)
        : m_Analyser([number](CCommandSocket* socket, const NoteCommand&)
                     { EXPECT_TRUE(socket->send(NoteCommand(number))); })
    {
        m_System.init();
        m_Server->start(&m_System);
        m_Server->setSharedPort(true);
        EXPECT_TRUE(m_Server->listen(port, 100));
    }
    ~Half()
    {
        m_Server->close();
        m_System.exit();
    }

    NoteAnalyser m_Analyser;
    zet::System m_System;
    const ServerHandle m_Server = new Server(m_Analyser);
};

TEST(SharedPort, BothSystemsGetConnectionsAndServeTheirOwn)
{
    Half first(1, 0);
    Half second(2, first.m_Server->getPort());
    ASSERT_EQ(second.m_Server->getPort(), first.m_Server->getPort());
    // All go to one of them once in 2^63 times.
    constexpr size_t kPeers = 64;
    std::vector<int> answers;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand& note) { answers.push_back(note.m_Number); });
    zet::System system;
    system.init();
    std::vector<ClientHandle> peers;
    for (size_t i = 0; i < kPeers; ++i)
    {
        peers.push_back(new Client(analyser));
        ASSERT_TRUE(peers.back()->start(&system));
        ASSERT_TRUE(peers.back()->connect(L"127.0.0.1", first.m_Server->getPort(), false));
        ASSERT_TRUE(peers.back()->send(NoteCommand(0)));
    }
    ASSERT_TRUE(tickUntil(system,
                          [&]
                          {
                              first.m_System.tick();
                              second.m_System.tick();
                              return answers.size() == kPeers;
                          }));
    const auto ofFirst = static_cast<size_t>(std::count(answers.begin(), answers.end(), 1));
    const auto ofSecond = static_cast<size_t>(std::count(answers.begin(), answers.end(), 2));
    EXPECT_EQ(first.m_Server->m_Accepted.size(), ofFirst);
    EXPECT_EQ(second.m_Server->m_Accepted.size(), ofSecond);
    EXPECT_EQ(ofFirst + ofSecond, kPeers);
    EXPECT_GT(ofFirst, 0u);
    EXPECT_GT(ofSecond, 0u);
    for (const ClientHandle& peer : peers)
        peer->close();
    system.exit();
}

TEST(SharedPort, AfterOneServerHasClosedTheOtherGetsAll)
{
    Half first(1, 0);
    Half second(2, first.m_Server->getPort());
    const unsigned short port = first.m_Server->getPort();
    first.m_Server->close();
    NoteAnalyser analyser;
    zet::System system;
    system.init();
    std::vector<ClientHandle> peers;
    for (int i = 0; i < 16; ++i)
    {
        peers.push_back(new Client(analyser));
        ASSERT_TRUE(peers.back()->start(&system));
        ASSERT_TRUE(peers.back()->connect(L"127.0.0.1", port, false));
    }
    EXPECT_TRUE(tickUntil(second.m_System, [&] { return second.m_Server->m_Accepted.size() == peers.size(); }));
    system.exit();
}

TEST(SharedPort, EachServerOfAPortHasToShareIt)
{
    Half first(1, 0);
    NoteAnalyser analyser;
    const ServerHandle other = new Server(analyser);
    EXPECT_FALSE(other->listen(first.m_Server->getPort(), 5));
    EXPECT_TRUE(other->isInvalid());
    const ServerHandle alone = new Server(analyser);
    ASSERT_TRUE(alone->listen(0, 5));
    const ServerHandle late = new Server(analyser);
    late->setSharedPort(true);
    EXPECT_FALSE(late->listen(alone->getPort(), 5));
    EXPECT_EQ(late->getPort(), 0);
}

// Also for the thread sanitizer.
TEST(SharedPort, SystemsOnTwoThreadsShareNothingElse)
{
    constexpr int kPeers = 16;
    constexpr int kRounds = 50;
    zet::System systems[2];
    NoteAnalyser analyser([](CCommandSocket* socket, const NoteCommand& note)
                          { EXPECT_TRUE(socket->send(NoteCommand(note.m_Number + 1))); });
    const ServerHandle servers[2] = {new Server(analyser), new Server(analyser)};
    for (int i = 0; i < 2; ++i)
    {
        ASSERT_TRUE(servers[i]->start(&systems[i]));
        servers[i]->setSharedPort(true);
        ASSERT_TRUE(servers[i]->listen(servers[0]->getPort(), 100));
    }
    std::thread threads[2];
    for (int i = 0; i < 2; ++i)
        threads[i] = std::thread([&system = systems[i]] { system.run(); });
    zet::System system;
    system.init();
    int finished = 0;
    NoteAnalyser client(
        [&](CCommandSocket* socket, const NoteCommand& note)
        {
            if (note.m_Number < kRounds)
                EXPECT_TRUE(socket->send(note));
            else
                ++finished;
        });
    std::vector<ClientHandle> peers;
    for (int i = 0; i < kPeers; ++i)
    {
        peers.push_back(new Client(client));
        ASSERT_TRUE(peers.back()->start(&system));
        ASSERT_TRUE(peers.back()->connect(L"127.0.0.1", servers[0]->getPort(), false));
        ASSERT_TRUE(peers.back()->send(NoteCommand(0)));
    }
    EXPECT_TRUE(tickUntil(system, [&] { return finished == kPeers; }));
    for (int i = 0; i < 2; ++i)
    {
        systems[i].shutdown();
        threads[i].join();
    }
    EXPECT_EQ(servers[0]->m_Accepted.size() + servers[1]->m_Accepted.size(), static_cast<size_t>(kPeers));
    for (const ClientHandle& peer : peers)
        peer->close();
    system.exit();
    for (const ServerHandle& server : servers)
        server->close();
}

#endif

TEST(SharedPort, ASystemThatDoesNotShareItIsReported)
{
    NoteAnalyser analyser;
    zet::System system;
    system.init();
    ASSERT_TRUE(zet::inner::setDoor(system, std::make_shared<test::PassingDoor>()));
    const ServerHandle server = new Server(analyser);
    server->start(&system);
    server->setSharedPort(true);
    const test::LogLines log;
    EXPECT_FALSE(server->listen(0, 5));
    EXPECT_TRUE(server->isInvalid());
    EXPECT_TRUE(
        log.has(zet::Log::kWarning, L"Port 0 cannot be shared: this system does not divide connections among servers"));
    server->setSharedPort(false);
    EXPECT_TRUE(server->listen(0, 5));
    server->close();
    system.exit();
}

} // namespace
