// Three failed allocations in a row stopped a System for good: a task threw, the guard around it formatted a log line,
// which threw out of the guard, and the flag of a running tick stayed set, so that later ticks did nothing. Here every
// allocation of a session fails in turn, one, two and three in a row; at worst a connection is lost.
#include "framework/log.h"
#include "tests/support/allocations.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace
{

using test::ClientHandle;
using test::FailingAllocations;
using test::NoteCommand;

constexpr int kInARow = 3;

// Takes every line, so that lines are formatted.
class Listener
{
public:
    Listener() : m_Number(zet::Log::addSink([this](zet::Log::Level, const zet::String_T<wchar_t>&) { ++m_Lines; })) {}
    ~Listener() { zet::Log::removeSink(m_Number); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    int m_Lines = 0;

private:
    int m_Number;
};

// One tick in which all allocations fail; true if no exception left it. Expectations allocate, so they follow later.
bool ticksWithoutMemory(zet::System& system)
{
    try
    {
        const FailingAllocations failing(0, 1000);
        system.tick();
        return true;
    }
    catch (...)
    {
        return false;
    }
}

class Throwing : public zet::System::Task
{
public:
    void onTick(unsigned int) override
    {
        ++m_Ticks;
        throw std::runtime_error("this text is longer than what a text keeps within itself");
    }

    int m_Ticks = 0;
};

// A System that throws again from onException().
class ThrowingSystem : public zet::System
{
public:
    void onException(unsigned long) override
    {
        ++m_Exceptions;
        throw std::bad_alloc();
    }

    int m_Exceptions = 0;
};

TEST(Bugs, NothingLeavesATickThatHasNoMemory)
{
    const Listener listener;
    ThrowingSystem system;
    system.init();
    Throwing first;
    Throwing second;
    ASSERT_TRUE(first.start(&system));
    ASSERT_TRUE(second.start(&system));
    EXPECT_TRUE(ticksWithoutMemory(system));
    EXPECT_FALSE(system.isTicking());
    EXPECT_EQ(first.m_Ticks, 1);
    EXPECT_EQ(second.m_Ticks, 1);
    EXPECT_EQ(system.m_Exceptions, 2);
    system.tick();
    EXPECT_EQ(second.m_Ticks, 2);
    // At least those of the second tick: if the library has its own operator new, the first tick had memory.
    EXPECT_GE(listener.m_Lines, 2);
    first.stop();
    second.stop();
}

class StoppingItself : public zet::System::Task
{
public:
    void onTick(unsigned int) override { stop(); }
};

TEST(Bugs, ATaskStopsWithinATickWithoutMemory)
{
    zet::System system;
    system.init();
    for (int i = 0; i < 3; ++i)
    {
        const zet::Unknown::Handle_T<StoppingItself> task(new StoppingItself);
        ASSERT_TRUE(task->start(&system));
    }
    EXPECT_TRUE(ticksWithoutMemory(system));
    EXPECT_EQ(system.getTaskCount(), 0);
}

// Ticks as often as a step of a session over the loopback needs. Sleeps in between, until the first event, for slow
// networks.
void tickOften(zet::System& system, bool isPatient)
{
    for (int i = 0; i < 12; ++i)
    {
        system.tick();
        if (isPatient)
            system.wait();
    }
}

// Connects, sends commands of several sizes that are answered, and closes. Exceptions in the host's code are not
// tested.
class Session
{
public:
    Session(test::Loopback& place, CCmdAnalyserSocket* analyser, bool isPatient)
        : m_Place(place), m_Analyser(analyser), m_IsPatient(isPatient)
    {
    }
    ~Session()
    {
        if (!m_Client)
            return;
        m_Client->close();
        m_Client->stop();
    }

    // Whether no exception left a tick.
    bool run()
    {
        step(
            [&]
            {
                m_Client = new test::Client(m_Analyser);
                m_Client->start(&m_Place.m_System);
                m_Client->connect(L"127.0.0.1", m_Place.m_Server->getPort(), false);
            });
        if (!m_Client)
            return !m_HasThrown;
        for (int number = 1; number <= 4; ++number)
            step([&] { m_Client->send(NoteCommand(number, number * number * 20000)); });
        step([&] { m_Client->close(); });
        return !m_HasThrown;
    }

private:
    template <class Call>
    void step(Call call)
    {
        try
        {
            call();
        }
        catch (const std::bad_alloc&)
        {
        }
        try
        {
            tickOften(m_Place.m_System, m_IsPatient);
        }
        catch (...)
        {
            m_HasThrown = true;
        }
    }

    test::Loopback& m_Place;
    CCmdAnalyserSocket* m_Analyser;
    const bool m_IsPatient;
    ClientHandle m_Client;
    bool m_HasThrown = false;
};

// A server, and the number of replies that its clients received.
class Scene
{
public:
    Scene() : m_Place(m_ServerAnalyser)
    {
        // A step's command arrives within the ticks of the step.
        zet::NetLimits limits;
        limits.m_TurnInput = 64 * 1024;
        m_Place.m_Server->setLimits(limits);
    }

    // Two clients, one after the other. False if an exception left a tick.
    bool runSession(bool isPatient)
    {
        const bool isGood =
            Session(m_Place, m_ClientAnalyser, isPatient).run() && Session(m_Place, m_ClientAnalyser, isPatient).run();
        m_Place.m_Server->m_Accepted.clear();
        return isGood;
    }
    // Whether another client gets its reply, and the server has no connection after it has closed.
    bool isServing()
    {
        const ClientHandle client = m_Place.connect(m_ClientAnalyser);
        if (!client)
            return false;
        const int before = m_Answers;
        const bool isAnswered =
            client->send(NoteCommand(1, 1000)) && test::tickUntil(m_Place.m_System, [&] { return m_Answers > before; });
        client->close();
        client->stop();
        return isAnswered &&
               test::tickUntil(m_Place.m_System, [this] { return m_Place.m_Server->GetClientCount() == 0; });
    }

    int m_Answers = 0;
    test::NoteAnalyser m_ServerAnalyser{[](CCommandSocket* socket, const NoteCommand& note)
                                        { socket->send(NoteCommand(note.m_Number + 100, 1000)); }};
    test::NoteAnalyser m_ClientAnalyser{[this](CCommandSocket*, const NoteCommand&) { ++m_Answers; }};
    test::Loopback m_Place;
};

TEST(Bugs, AFailedAllocationCostsAConnectionAtWorst)
{
    const Listener listener;
    long long allocations = 0;
    {
        Scene scene;
        const test::AllocationCount count;
        EXPECT_TRUE(scene.runSession(true));
        EXPECT_EQ(scene.m_Answers, 8);
        allocations = count.blocks();
        ASSERT_GT(allocations, 0);
    }
    for (int failing = 1; failing <= kInARow; ++failing)
    {
        for (long long succeeding = 0; succeeding <= allocations; ++succeeding)
        {
            SCOPED_TRACE(std::to_string(failing) + " fail after " + std::to_string(succeeding));
            Scene scene;
            bool isGood;
            {
                const FailingAllocations failures(succeeding, failing);
                isGood = scene.runSession(false);
            }
            ASSERT_TRUE(isGood);
            ASSERT_FALSE(scene.m_Place.m_System.isTicking());
            ASSERT_TRUE(scene.isServing());
            ASSERT_EQ(scene.m_Place.m_System.getTaskCount(), 1);
        }
    }
}

} // namespace
