// A System slept until its next tick although a timer of a connection over UDP was due earlier, and the connections had
// a clock of milliseconds: round trips of 60 us were measured as 0 or 1 ms, or as the 10 ms of a tick, and pacing,
// acknowledgements and retransmissions waited for the tick. Data that a host sent between a tick and the sleep was sent
// after the sleep: a round trip of 4 KiB took more than 10 ms.
#include "framework/inner/nanoseconds.h"
#include "tests/support/passing_door.h"
#include "tests/support/udp_test.h"

#include <chrono>

namespace
{

using test::PassingDoor;
using zet::inner::Poller;
using zet::inner::Watch;
using namespace std::chrono_literals;

// Its poller notes the time of each sleep and does not sleep.
class NotingDoor : public PassingDoor
{
public:
    std::unique_ptr<Poller> makePoller() override
    {
        return std::make_unique<NotingPoller>(*this, PassingDoor::makePoller());
    }
    int sendBatch(Handle handle, const Datagram* datagrams, int count, Fault& fault) override
    {
        return m_IsBlocked ? refuse(fault) : PassingDoor::sendBatch(handle, datagrams, count, fault);
    }
    int sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault) override
    {
        return m_IsBlocked ? refuse(fault) : PassingDoor::sendSegmented(handle, datagrams, count, fault);
    }

    std::vector<std::chrono::microseconds> m_Sleeps;
    bool m_IsBlocked = false;

private:
    static int refuse(Fault& fault)
    {
        fault = {Fault::kNotNow, 1};
        return 0;
    }

    class NotingPoller : public Poller
    {
    public:
        NotingPoller(NotingDoor& door, std::unique_ptr<Poller> poller) : m_Door(door), m_Poller(std::move(poller)) {}
        bool add(Handle handle, Watch& watch, unsigned char ready) override
        {
            return m_Poller->add(handle, watch, ready);
        }
        void want(Watch& watch, unsigned char ready) override { m_Poller->want(watch, ready); }
        void reportInputAgain(Watch& watch) override { m_Poller->reportInputAgain(watch); }
        void remove(Watch& watch) override { m_Poller->remove(watch); }
        bool wait(std::chrono::microseconds time) override
        {
            if (time > 0us)
                m_Door.m_Sleeps.push_back(time);
            return m_Poller->wait(0us);
        }
        void wake() override { m_Poller->wake(); }

    private:
        NotingDoor& m_Door;
        const std::unique_ptr<Poller> m_Poller;
    };
};

constexpr unsigned int kInterval = 10 * 60 * 1000;

class QuicSleep : public test::UdpTest
{
protected:
    QuicSleep() : QuicSleep(std::make_shared<NotingDoor>()) {}

    void SetUp() override
    {
        UdpTest::SetUp();
        if (IsSkipped())
            return;
        ASSERT_TRUE(m_Net.connect());
        settle();
        m_Net.m_System.setTickInterval(kInterval);
        m_Net.m_System.tick();
    }
    // The time of the System's next sleep; 0 if it does not sleep.
    std::chrono::microseconds sleep()
    {
        m_Door->m_Sleeps.clear();
        m_Net.m_System.wait();
        return m_Door->m_Sleeps.empty() ? 0us : m_Door->m_Sleeps.front();
    }
    unsigned long long sent() const
    {
        return m_Net.m_Port->getTraffic().m_DatagramsOut + m_Net.m_Server->getTraffic().m_DatagramsOut;
    }

    const std::shared_ptr<NotingDoor> m_Door;

private:
    explicit QuicSleep(const std::shared_ptr<NotingDoor>& door) : UdpTest({}, door), m_Door(door) {}
};

TEST_F(QuicSleep, EndsWithTheEarliestTimer)
{
    const auto time = sleep();
    ASSERT_GT(time, 1ms);
    ASSERT_LT(time, std::chrono::milliseconds(kInterval));
    const auto before = sent();
    const auto whole = std::chrono::ceil<std::chrono::milliseconds>(time).count();
    m_Net.m_Clock.advance(static_cast<unsigned int>(whole - 1));
    m_Net.m_System.tick();
    EXPECT_EQ(sent(), before);
    EXPECT_LE(sleep(), 1ms);
    m_Net.m_Clock.advance(1);
    m_Net.m_System.tick();
    EXPECT_GT(sent(), before);
}

TEST_F(QuicSleep, DoesNotEndForAServerThatIsNotTicked)
{
    m_Net.m_Port->sleep(2 * kInterval);
    m_Net.m_Server->sleep(2 * kInterval);
    // Longer than any timer of the connection.
    m_Net.m_Clock.advance(kInterval);
    m_Net.m_System.tick();
    EXPECT_EQ(sleep(), std::chrono::milliseconds(kInterval));
}

TEST_F(QuicSleep, DoesNotEndForTimersOfAPortThatTakesNoOutput)
{
    m_Door->m_IsBlocked = true;
    ASSERT_TRUE(m_Net.m_Sockets.back()->send(test::NoteCommand(1)));
    m_Net.m_System.tick();
    // The first retransmission is due; the timers of the other port are not.
    m_Net.m_Clock.advance(5000);
    EXPECT_GT(sleep(), 0us);
}

TEST_F(QuicSleep, DoesNotBeginBeforeASendOutsideATickHasLeft)
{
    const auto before = sent();
    ASSERT_TRUE(m_Net.m_Sockets.back()->send(test::NoteCommand(1)));
    EXPECT_EQ(sleep(), 0us);
    m_Net.m_System.tick();
    EXPECT_GT(sent(), before);
    EXPECT_GT(sleep(), 0us);
}

TEST_F(QuicSleep, IsNotCutShortByPacingThatHoldsNothingBack)
{
    m_Net.m_System.setTickInterval(10);
    ASSERT_TRUE(m_Net.m_Sockets.back()->send(test::NoteCommand(1)));
    m_Net.m_System.tick();
    EXPECT_GE(sleep(), 1ms);
}

TEST(QuicClock, IsThatOfTicksInNanoseconds)
{
    {
        zet::TestClock clock(0, 0xFFFFFFFF);
        const unsigned long long before = zet::inner::getNanoseconds();
        EXPECT_EQ(before, 0xFFFFFFFFULL * 1000000);
        clock.advance(1);
        EXPECT_EQ(zet::getTimeTick(), 0U);
        EXPECT_EQ(zet::inner::getNanoseconds() - before, 1000000U);
    }
    const unsigned int first = zet::getTimeTick();
    const auto tick = static_cast<unsigned int>(zet::inner::getNanoseconds() / 1000000);
    const unsigned int last = zet::getTimeTick();
    EXPECT_LE(tick - first, last - first);
}

} // namespace
