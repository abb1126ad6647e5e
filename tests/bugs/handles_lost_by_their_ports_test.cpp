// Sockets stayed open without an owner: the socket of a UDP port that neither its new System nor its old one could
// watch, and the socket of a TCP port if memory ran out between opening the socket and making its owner. Also, a UDP
// port that ran out of memory in attach() closed a handle that the caller still owned.
#include "net/quic/connection.h"
#include "net/tcp/server.h"
#include "tests/support/allocations.h"
#include "tests/support/passing_door.h"

#include <gtest/gtest.h>

#include <new>

namespace
{

using test::PassingDoor;
using zet::inner::Poller;
using zet::inner::Watch;

// Its poller refuses each further socket if the test says so.
class BlindDoor : public PassingDoor
{
public:
    std::unique_ptr<Poller> makePoller() override
    {
        return std::make_unique<BlindPoller>(*this, PassingDoor::makePoller());
    }

    bool m_IsBlind = false;

private:
    class BlindPoller : public Poller
    {
    public:
        BlindPoller(const BlindDoor& door, std::unique_ptr<Poller> poller) : m_Door(door), m_Poller(std::move(poller))
        {
        }
        bool add(Handle handle, Watch& watch, unsigned char ready) override
        {
            return !m_Door.m_IsBlind && m_Poller->add(handle, watch, ready);
        }
        void want(Watch& watch, unsigned char ready) override { m_Poller->want(watch, ready); }
        void reportInputAgain(Watch& watch) override { m_Poller->reportInputAgain(watch); }
        void remove(Watch& watch) override { m_Poller->remove(watch); }
        bool wait(std::chrono::microseconds time) override { return m_Poller->wait(time); }
        void wake() override { m_Poller->wake(); }

    private:
        const BlindDoor& m_Door;
        const std::unique_ptr<Poller> m_Poller;
    };
};

struct Systems
{
    Systems()
    {
        for (zet::System* each : {&m_First, &m_Second})
        {
            each->init();
            EXPECT_TRUE(zet::inner::setDoor(*each, m_Door));
        }
    }
    ~Systems()
    {
        m_First.exit();
        m_Second.exit();
    }
    long open() const { return m_Door->count("open") - m_Door->count("close"); }

    const std::shared_ptr<BlindDoor> m_Door = std::make_shared<BlindDoor>();
    zet::System m_First;
    zet::System m_Second;
};

TEST(Bugs, AUdpPortThatNobodyCanWatchIsClosed)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    Systems systems;
    const zet::Unknown::Handle_T<zet::UdpServer> port = new zet::UdpServer;
    port->start(&systems.m_First);
    ASSERT_TRUE(port->listen(0));
    EXPECT_EQ(systems.open(), 1);
    port->stop();
    systems.m_Door->m_IsBlind = true;
    port->start(&systems.m_Second);
    EXPECT_TRUE(port->isInvalid());
    EXPECT_EQ(port->getPort(), 0);
    EXPECT_EQ(systems.open(), 0);
}

// Calls the operation with each of its allocations failing in turn, until none fails.
template <class Operation>
void failEach(Operation operation)
{
    for (int succeeding = 0; succeeding < 1000; ++succeeding)
    {
        test::FailingAllocations failing(succeeding, 1);
        try
        {
            operation();
        }
        catch (const std::bad_alloc&)
        {
        }
        if (!failing.isOver())
            return;
    }
    ADD_FAILURE() << "never without a failure";
}

TEST(Bugs, APortThatRunsOutOfMemoryKeepsNoHandle)
{
    Systems systems;
    const zet::Unknown::Handle_T<zet::TcpServer> tcp = new zet::TcpServer;
    const zet::Unknown::Handle_T<zet::UdpServer> udp = new zet::UdpServer;
    tcp->start(&systems.m_First);
    udp->start(&systems.m_First);
    // Make each call once first: the door allocates when it counts a call for the first time.
    ASSERT_TRUE(tcp->listen(0, 1));
    tcp->close();
    failEach([&] { tcp->listen(0, 1); });
    tcp->close();
    EXPECT_EQ(systems.open(), 0);
    if (!zet::UdpServer::isAvailable())
        return;
    ASSERT_TRUE(udp->listen(0));
    udp->close();
    failEach([&] { udp->listen(0); });
    udp->close();
    EXPECT_EQ(systems.open(), 0);
}

TEST(Bugs, AHandleThatWasNotTakenOverStaysTheCallers)
{
    if (!zet::UdpServer::isAvailable())
        GTEST_SKIP() << "built without connections over UDP";
    Systems systems;
    const zet::Unknown::Handle_T<zet::UdpServer> port = new zet::UdpServer;
    port->start(&systems.m_First);
    ASSERT_TRUE(port->listen(0));
    const unsigned int handle = port->detach();
    ASSERT_NE(handle, zet::Socket::kNoHandle);
    ASSERT_TRUE(port->attach(handle));
    ASSERT_EQ(port->detach(), handle);
    failEach([&] { port->attach(handle); });
    EXPECT_EQ(systems.open(), 1);
    ASSERT_EQ(port->detach(), handle);
    systems.m_Door->m_IsBlind = true;
    EXPECT_FALSE(port->attach(handle));
    EXPECT_EQ(systems.open(), 1);
    systems.m_Door->close(handle);
}

} // namespace
