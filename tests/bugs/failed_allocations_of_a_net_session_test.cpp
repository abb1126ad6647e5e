// Every allocation of a net session fails in turn, one, two and three in a row; at worst the session is lost. A session
// without memory for the event of its end reported a wrong one in the next tick, and one without memory for the event
// of its start was open without reporting it.
#include "framework/log.h"
#include "tests/support/allocations.h"
#include "tests/support/net_pair.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using test::FailingAllocations;
using test::NotingHandle;

// Two modules, and the events of the connecting sessions.
class Scene
{
public:
    Scene()
    {
        m_Pair.m_Server->m_Accepted.reserve(10);
        test::NetNotes::s_Handler = [this](unsigned long, unsigned long, const test::NoteCommand&) { ++m_Commands; };
    }

    // Connects, sends commands, and is closed by the other end. False if an exception left a tick.
    bool runSession(bool isPatient)
    {
        m_IsPatient = isPatient;
        NotingHandle session;
        step(
            [&]
            {
                session = m_Pair.make();
                session->connect(m_Pair.address(), zet::Uuid());
            });
        for (int number = 1; number <= 3 && session; ++number)
            step(
                [&]
                {
                    test::NoteCommand command(number, number * 3000);
                    session->sendNetCommand(&command);
                });
        step([&] { m_Pair.m_Server->m_Accepted.clear(); });
        if (session)
        {
            m_Notes = session->m_Notes;
            step([&] { session->close(); });
        }
        return m_IsGood;
    }
    // Whether another session starts, delivers a command, and ends correctly.
    bool isServing()
    {
        const NotingHandle session = m_Pair.connect();
        if (!session)
            return false;
        const int before = m_Commands;
        test::NoteCommand command(1, 1000);
        const bool isBrought =
            session->sendNetCommand(&command) && test::tickUntil(m_Pair.m_System, [&] { return m_Commands > before; });
        m_Pair.m_Server->m_Accepted.clear();
        return isBrought && test::tickUntil(m_Pair.m_System, [&] { return session->m_Notes == "ocx"; });
    }

    int m_Commands = 0;
    std::string m_Notes;
    test::NetPair m_Pair;

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
            for (int i = 0; i < 10; ++i)
            {
                m_Pair.m_System.tick();
                if (m_IsPatient)
                    m_Pair.m_System.wait();
            }
        }
        catch (...)
        {
            m_IsGood = false;
        }
    }

    // Sleeps between ticks until an event, for slow networks.
    bool m_IsPatient = false;
    bool m_IsGood = true;
};

TEST(Bugs, AFailedAllocationCostsANetSessionAtWorst)
{
    // So that lines are formatted.
    const int sink = zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>&) {});
    long long allocations = 0;
    {
        Scene scene;
        const test::AllocationCount count;
        EXPECT_TRUE(scene.runSession(true));
        EXPECT_EQ(scene.m_Notes, "ocx");
        EXPECT_EQ(scene.m_Commands, 3);
        allocations = count.blocks();
    }
    for (int failing = 1; failing <= 3; ++failing)
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
            EXPECT_TRUE(isGood);
            EXPECT_FALSE(scene.m_Pair.m_System.isTicking());
            // A session that reported its start reports exactly one end, and only such a session sends.
            const std::string& notes = scene.m_Notes;
            if (notes.find('o') == std::string::npos)
            {
                EXPECT_EQ(scene.m_Commands, 0) << notes;
            }
            else
            {
                EXPECT_TRUE(notes == "ocx" || notes == "oax" || notes == "oex") << notes;
            }
            EXPECT_TRUE(scene.isServing());
            EXPECT_EQ(scene.m_Pair.m_System.getTaskCount(), 2);
        }
    }
    zet::Log::removeSink(sink);
}

} // namespace
