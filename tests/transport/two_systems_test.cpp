// Two Systems on two threads that talk to each other; also for the thread sanitizer.
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

namespace
{

using test::ClientHandle;
using test::NoteAnalyser;
using test::NoteCommand;

TEST(TwoSystems, ACommandGoesToAndFroAThousandTimes)
{
    constexpr int kRounds = 1000;
    std::promise<unsigned short> port;
    zet::System serverSystem;
    std::thread serverThread(
        [&]
        {
            NoteAnalyser analyser([](CCommandSocket* socket, const NoteCommand& note)
                                  { EXPECT_TRUE(socket->send(NoteCommand(note.m_Number + 1, note.m_Number % 3000))); });
            serverSystem.init();
            const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser);
            ASSERT_TRUE(server->start(&serverSystem));
            ASSERT_TRUE(server->listen(0, 5));
            port.set_value(server->getPort());
            serverSystem.run();
            server->close();
        });

    int last = 0;
    const unsigned short where = port.get_future().get();
    std::thread clientThread(
        [&]
        {
            zet::System system;
            NoteAnalyser analyser(
                [&](CCommandSocket* socket, const NoteCommand& note)
                {
                    last = note.m_Number;
                    if (last < kRounds)
                        EXPECT_TRUE(socket->send(note));
                    else
                        system.shutdown();
                });
            system.init();
            const ClientHandle client = new test::Client(analyser);
            ASSERT_TRUE(client->start(&system));
            ASSERT_TRUE(client->connect(L"127.0.0.1", where, false));
            ASSERT_TRUE(client->send(NoteCommand(0)));
            system.run();
            client->close();
        });
    clientThread.join();
    serverSystem.shutdown();
    serverThread.join();
    EXPECT_EQ(last, kRounds);
}

TEST(TwoSystems, ATaskOfOneIsWakenedByTheOther)
{
    // A System with sockets sleeps in its reactor.
    class Waiting : public zet::System::Task
    {
    public:
        void onTick(unsigned int) override
        {
            if (++m_Ticks > 1)
                getSystem()->shutdown();
            else
                sleep(0x7FFFFFFF);
            if (m_Ticks == 1)
                m_HasTicked.set_value();
        }
        std::promise<void> m_HasTicked;
        int m_Ticks = 0;
    };
    zet::System system;
    system.setTickInterval(10 * 60 * 1000);
    const zet::Unknown::Handle_T<Waiting> task = new Waiting;
    NoteAnalyser analyser;
    const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser);
    ASSERT_TRUE(server->start(&system));
    ASSERT_TRUE(server->listen(0, 5));
    ASSERT_TRUE(task->start(&system));
    std::thread thread([&] { system.run(); });
    task->m_HasTicked.get_future().get();
    task->waken();
    thread.join();
    EXPECT_EQ(task->m_Ticks, 2);
}

TEST(TwoSystems, ASystemMadeHereMayRunElsewhere)
{
    zet::System system;
    int got = 0;
    NoteAnalyser analyser(
        [&](CCommandSocket* socket, const NoteCommand&)
        {
            ++got;
            EXPECT_EQ(socket->getRunThreadId(), system.getRunThreadId());
            EXPECT_TRUE(socket->send(NoteCommand(2)));
        });
    NoteAnalyser answers([&](CCommandSocket*, const NoteCommand&) { system.shutdown(); });
    const zet::Unknown::Handle_T<test::Server> server = new test::Server(analyser);
    ASSERT_TRUE(server->start(&system));
    ASSERT_TRUE(server->listen(0, 5));
    const ClientHandle client = new test::Client(answers);
    ASSERT_TRUE(client->start(&system));
    ASSERT_TRUE(client->connect(L"127.0.0.1", server->getPort(), false));
    ASSERT_TRUE(client->send(NoteCommand(1)));
    std::thread thread([&] { system.run(); });
    thread.join();
    EXPECT_EQ(got, 1);
    EXPECT_FALSE(client->send(NoteCommand(3)));
}

} // namespace
