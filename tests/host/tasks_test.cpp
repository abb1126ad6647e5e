// Tasks as coroutines. A compiler without coroutines skips these tests.
#include "host/tasks.h"

#ifdef __cpp_impl_coroutine

#include "tests/host/conversation.h"

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>

namespace
{

using namespace std::chrono_literals;
using host::Task;
using host::Unanswered;
using test::ClientHandle;
using test::echoOf;
using test::textOf;
using zet::Log;

// Counts the existing objects, for the local variables of coroutines.
class Probe
{
public:
    explicit Probe(int& living) : m_Living(living) { ++m_Living; }
    Probe(const Probe& other) : Probe(other.m_Living) {}
    Probe& operator=(const Probe&) = delete;
    ~Probe() { --m_Living; }

private:
    int& m_Living;
};

class HostTasks : public testing::Test
{
protected:
    HostTasks() { EXPECT_TRUE(m_Client); }

    Task askOnce(unsigned long number, std::chrono::milliseconds timeOut)
    {
        const Probe probe(m_Living);
        const auto reply = co_await host::ask<CCmdServerEchoReply>(*m_Client, echoOf(number), timeOut);
        m_Notes.push_back(textOf(reply));
    }

    using Texts = std::vector<std::wstring>;

    test::Conversation m_Talk;
    std::unique_ptr<host::Tasks> m_Tasks = std::make_unique<host::Tasks>(*m_Talk.m_Questions);
    ClientHandle m_Client = m_Talk.connect();
    Texts m_Notes;
    int m_Living = 0;
};

TEST_F(HostTasks, TaskRunsUntilItWaitsAndGoesOnWithTheAnswer)
{
    m_Tasks->start(askOnce(1, 5s));
    EXPECT_EQ(m_Living, 1);
    EXPECT_EQ(m_Tasks->getCount(), 1);
    ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
    m_Talk.answer(m_Talk.accepted());
    ASSERT_TRUE(m_Talk.tickUntil([&] { return !m_Notes.empty(); }));
    EXPECT_EQ(m_Notes, Texts{L"1"});
    EXPECT_EQ(m_Living, 0);
    EXPECT_EQ(m_Tasks->getCount(), 0);
    EXPECT_TRUE(m_Talk.m_Lines.texts().empty());
}

TEST_F(HostTasks, TaskAsksAgainAndSleeps)
{
    m_Tasks->start(
        [this]() -> Task
        {
            for (unsigned long number = 1; number <= 3; ++number)
            {
                const auto reply =
                    co_await host::ask<CCmdServerRegisterFail, CCmdServerEchoReply>(*m_Client, echoOf(number), 5s);
                m_Notes.push_back(std::to_wstring(std::get<CCmdServerEchoReply>(reply).m_Data));
                co_await host::sleep(200ms);
                m_Notes.emplace_back(L"slept");
            }
        });
    for (size_t i = 1; i <= 3; ++i)
    {
        ASSERT_TRUE(m_Talk.wasAsked(m_Talk.accepted(), 1));
        m_Talk.answer(m_Talk.accepted());
        ASSERT_TRUE(m_Talk.tickUntil([&] { return m_Notes.size() == 2 * i - 1; }));
        m_Talk.advance(190);
        EXPECT_EQ(m_Notes.size(), 2 * i - 1);
        m_Talk.advance(10);
        EXPECT_EQ(m_Notes.size(), 2 * i);
    }
    EXPECT_EQ(m_Notes, (Texts{L"1", L"slept", L"2", L"slept", L"3", L"slept"}));
    EXPECT_EQ(m_Tasks->getCount(), 0);
}

TEST_F(HostTasks, TimeOutAndEndAreReplies)
{
    m_Tasks->start(askOnce(1, 100ms));
    m_Talk.advance(100);
    EXPECT_EQ(m_Notes, Texts{L"timed out"});
    m_Tasks->start(askOnce(2, 5s));
    m_Client->close();
    m_Talk.advance(10);
    EXPECT_EQ(m_Notes, (Texts{L"timed out", L"the connection ended"}));
    EXPECT_EQ(m_Living, 0);
}

TEST_F(HostTasks, TasksEndWithTheirOwner)
{
    for (unsigned long number = 0; number < 5; ++number)
        m_Tasks->start(askOnce(number, 5s));
    EXPECT_EQ(m_Living, 5);
    m_Tasks.reset();
    EXPECT_EQ(m_Living, 0);
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), 0);
    m_Talk.advance(6000);
    EXPECT_TRUE(m_Notes.empty());
}

TEST_F(HostTasks, TaskMayDestroyItsOwnerAndEndsWhereItWaitsNext)
{
    m_Tasks->start(askOnce(1, 5s));
    m_Tasks->start(
        [this]() -> Task
        {
            const Probe probe(m_Living);
            co_await host::sleep(10ms);
            m_Tasks.reset();
            m_Notes.emplace_back(L"goes on");
            co_await host::sleep(10ms);
            m_Notes.emplace_back(L"never");
        });
    EXPECT_EQ(m_Living, 2);
    m_Talk.advance(100);
    EXPECT_EQ(m_Notes, Texts{L"goes on"});
    EXPECT_EQ(m_Living, 0);
}

TEST_F(HostTasks, TaskThatIsCancelledBeforeItsFirstWaitIsDestroyedThere)
{
    m_Tasks->start(
        [this]() -> Task
        {
            const Probe probe(m_Living);
            m_Tasks->cancel();
            co_await host::ask<CCmdServerEchoReply>(*m_Client, echoOf(1), 5s);
            m_Notes.emplace_back(L"never");
        });
    EXPECT_EQ(m_Living, 0);
    m_Talk.advance(100);
    EXPECT_TRUE(m_Notes.empty());
    EXPECT_TRUE(m_Talk.m_Asked.empty()) << "nothing was sent";
}

TEST_F(HostTasks, TaskMayEndAfterItsOwner)
{
    m_Tasks->start(
        [this]() -> Task
        {
            const Probe probe(m_Living);
            co_await host::sleep(10ms);
            m_Tasks.reset();
        });
    m_Talk.advance(10);
    EXPECT_EQ(m_Living, 0);
    EXPECT_FALSE(m_Tasks);
}

TEST_F(HostTasks, ThrowingTaskIsLoggedAndEndsAlone)
{
    m_Tasks->start(
        [this]() -> Task
        {
            const Probe probe(m_Living);
            co_await host::sleep(10ms);
            throw std::runtime_error("lost");
        });
    m_Tasks->start(
        [this]() -> Task
        {
            const Probe probe(m_Living);
            if (m_Living > 0)
                throw 1;
            co_await host::sleep(10ms);
        });
    m_Tasks->start(askOnce(1, 10ms));
    m_Talk.advance(10);
    EXPECT_EQ(m_Notes, Texts{L"timed out"});
    EXPECT_EQ(m_Talk.m_Lines.texts(), (Texts{L"Unknown exception in a task", L"Exception in a task: lost"}));
    EXPECT_EQ(m_Living, 0);
    EXPECT_EQ(m_Tasks->getCount(), 0);
}

TEST_F(HostTasks, CapturesLiveAsLongAsTheCoroutine)
{
    {
        const Probe captured(m_Living);
        m_Tasks->start(
            [captured, this]() -> Task
            {
                co_await host::sleep(10ms);
                m_Notes.push_back(std::to_wstring(m_Living));
            });
    }
    EXPECT_EQ(m_Living, 1);
    m_Talk.advance(10);
    EXPECT_EQ(m_Notes, Texts{L"1"});
    EXPECT_EQ(m_Living, 0);
}

TEST_F(HostTasks, TaskThatIsNotStartedDoesNothing)
{
    {
        const Task task = askOnce(1, 5s);
    }
    m_Talk.advance(10);
    EXPECT_TRUE(m_Talk.m_Asked.empty());
    EXPECT_EQ(m_Living, 0);
}

TEST_F(HostTasks, TaskThatNeverWaitsLongLetsTheTickEnd)
{
    int turns = 0;
    m_Tasks->start(
        [&]() -> Task
        {
            for (;; ++turns)
                co_await host::sleep(0ms);
        });
    m_Talk.m_Loopback.m_System.tick();
    m_Talk.m_Loopback.m_System.tick();
    EXPECT_EQ(turns, 2);
    // A task whose questions fail at once lets the tick end too.
    m_Client->close();
    int replies = 0;
    m_Tasks->start(
        [&]() -> Task
        {
            for (;; ++replies)
                co_await host::ask<CCmdServerEchoReply>(*m_Client, echoOf(1), 5s);
        });
    m_Talk.m_Loopback.m_System.tick();
    m_Talk.m_Loopback.m_System.tick();
    EXPECT_EQ(replies, 2);
}

TEST_F(HostTasks, TaskOfASocketsOwnTasksEndsWithTheSocket)
{
    class Owner : public test::Client
    {
    public:
        Owner(CCmdAnalyserSocket* analyser, host::Questions& questions) : Client(analyser), m_Tasks(questions) {}

        host::Tasks m_Tasks;
    };
    zet::Unknown::Handle_T<Owner> owner(new Owner(m_Talk.m_ClientAnalyser.get(), *m_Talk.m_Questions));
    owner->start(&m_Talk.m_Loopback.m_System);
    ASSERT_TRUE(owner->connect(L"127.0.0.1", m_Talk.m_Loopback.m_Server->getPort(), false));
    ASSERT_TRUE(m_Talk.tickUntil([&] { return owner->getConnectionState() == zet::TcpConnection::kEstablished; }));
    owner->m_Tasks.start(
        [this, socket = owner.get()]() -> Task
        {
            const Probe probe(m_Living);
            const auto reply = co_await host::ask<CCmdServerEchoReply>(*socket, echoOf(1), 5s);
            m_Notes.push_back(textOf(reply));
            co_await host::sleep(1s);
            m_Notes.emplace_back(L"never");
        });
    owner->stop();
    // Questions do not hold the object, and a Tasks cancels what waits.
    owner.clear();
    EXPECT_EQ(m_Living, 0) << "the object is gone, and its task";
    m_Talk.advance(2000);
    EXPECT_EQ(m_Notes, Texts());
    EXPECT_EQ(m_Talk.m_Questions->getOpenCount(), 0);
}

} // namespace

#endif
