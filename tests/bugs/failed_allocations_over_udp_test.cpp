// Every allocation of a session over UDP fails in turn, one, two and three in a row; at worst a connection is lost. A
// connection that the port could not add to its list for lack of memory was marked as listed and never written again.
#include "framework/log.h"
#include "tests/support/allocations.h"
#include "tests/support/udp_test.h"

#include <string>

namespace
{

using test::FailingAllocations;
using test::NoteCommand;
using test::NoteSocket;
using test::NoteSocketHandle;

// Two ports, and the number of replies that the connecting one received.
class Scene
{
public:
    Scene()
    {
        m_Net.m_Server->m_Accepted.reserve(10);
        m_Net.m_Server->m_VisitorIds.reserve(10);
        m_Net.m_Server->m_Handler = [](NoteSocket& socket, const NoteCommand& note)
        { socket.send(NoteCommand(note.m_Number + 100, 1000)); };
    }

    // Connects, sends commands that are answered, and closes. False if an exception left a tick.
    bool runSession()
    {
        m_IsGood = true;
        NoteSocketHandle socket;
        step(
            [&]
            {
                socket = new NoteSocket;
                socket->m_Handler = [this](NoteSocket&, const NoteCommand&) { ++m_Answers; };
                socket->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid());
            });
        for (int number = 1; number <= 3 && socket; ++number)
            step([&] { socket->send(NoteCommand(number, number * 3000)); });
        if (socket)
            step([&] { socket->close(); });
        m_Net.m_Server->m_Accepted.clear();
        m_Net.m_Server->m_VisitorIds.clear();
        return m_IsGood;
    }

    int m_Answers = 0;
    test::UdpNet m_Net;

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
                m_Net.step(5);
        }
        catch (...)
        {
            m_IsGood = false;
        }
    }

    bool m_IsGood = true;
};

TEST(Bugs, AFailedAllocationCostsAConnectionOverUdpAtWorst)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    // So that lines are formatted.
    const int sink = zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>&) {});
    long long allocations = 0;
    {
        Scene scene;
        const test::AllocationCount count;
        EXPECT_TRUE(scene.runSession());
        EXPECT_EQ(scene.m_Answers, 3);
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
                isGood = scene.runSession();
            }
            EXPECT_TRUE(isGood);
            EXPECT_FALSE(scene.m_Net.m_System.isTicking());
            const int before = scene.m_Answers;
            EXPECT_TRUE(scene.runSession());
            EXPECT_EQ(scene.m_Answers - before, 3);
        }
    }
    zet::Log::removeSink(sink);
}

} // namespace
