// Names with several addresses: which one is tried when, and which connection stays.
#include "framework/time.h"
#include "net/door/names.h"
#include "net/tcp/inner/race.h"
#include "tests/support/accepting_port.h"
#include "tests/support/ipv6.h"
#include "tests/support/loopback.h"
#include "tests/support/passing_door.h"

#include <algorithm>

namespace
{

using test::Door;
using test::Endpoint;
using test::tickUntil;
using zet::inner::TcpRace;
using Port = test::AcceptingPort;
using StreamHandle = zet::Unknown::Handle_T<zet::TcpStream>;

// A network in which only 127.0.0.1 and ::1 answer; other addresses are silent, or refuse if the test says so.
class RaceDoor : public test::PassingDoor
{
public:
    Fault connect(Handle handle, const Endpoint& peer) override
    {
        const std::string text = print(peer);
        m_Tried.push_back(text);
        if (text == "127.0.0.1" || text == "::1")
            return PassingDoor::connect(handle, peer);
        if (m_IsRefusing)
            return {Fault::kOther, 1};
        // A listening socket is never ready for output.
        Endpoint own;
        parse(peer.isV4() ? "127.0.0.1" : "::1", 0, own);
        EXPECT_FALSE(getReal()->bind(handle, own));
        EXPECT_FALSE(getReal()->listen(handle, 1));
        return {};
    }

    std::vector<std::string> m_Tried;
    bool m_IsRefusing = false;
};

class Race : public testing::Test
{
protected:
    void SetUp() override
    {
        SKIP_WITHOUT_IPV6();
        m_System.init();
        ASSERT_TRUE(zet::inner::setDoor(m_System, m_Door));
        m_Port->start(&m_System);
        ASSERT_TRUE(m_Port->setBindAddress(L"127.0.0.1"));
        ASSERT_TRUE(m_Port->listen(0, 10));
        m_Stream->start(&m_System);
    }
    void TearDown() override
    {
        if (test::hasIPv6())
            m_System.exit();
    }

    void connect(const std::vector<const char*>& addresses)
    {
        ASSERT_TRUE(m_Stream->connect(L"host.test", m_Port->getPort(), false));
        m_Door->answer(addresses);
    }
    void tick(unsigned int milliseconds)
    {
        m_Clock.advance(milliseconds);
        m_System.tick();
    }
    size_t tried() const { return m_Door->m_Tried.size(); }
    bool isUp() { return m_Stream->getConnectionState() == zet::TcpConnection::kEstablished; }
    // Handles that are open, without the listening one.
    long open() const { return m_Door->count("open") - m_Door->count("close") - 1; }

    zet::TestClock m_Clock{0};
    const std::shared_ptr<RaceDoor> m_Door = std::make_shared<RaceDoor>();
    zet::System m_System;
    const zet::Unknown::Handle_T<Port> m_Port = new Port;
    const StreamHandle m_Stream = new zet::TcpStream;
};

TEST_F(Race, TheNextAddressIsTriedAfter250Milliseconds)
{
    connect({"2001:db8::1", "192.0.2.1", "127.0.0.1"});
    tick(0);
    EXPECT_EQ(tried(), 1u);
    tick(TcpRace::kNextAfter - 1);
    EXPECT_EQ(tried(), 1u);
    tick(1);
    EXPECT_EQ(m_Door->m_Tried, (std::vector<std::string>{"2001:db8::1", "192.0.2.1"}));
    EXPECT_EQ(m_Stream->getConnectionState(), zet::TcpConnection::kConnecting);
    tick(TcpRace::kNextAfter - 1);
    EXPECT_EQ(tried(), 2u);
    EXPECT_EQ(m_Stream->send("early", 5), 5);
    tick(1);
    EXPECT_EQ(tried(), 3u);
    ASSERT_TRUE(tickUntil(m_System, [&] { return isUp() && m_Port->m_Accepted.size() == 1; }));
    // The others are closed, and so is the socket that waited for the name.
    EXPECT_EQ(open(), 1);
    EXPECT_EQ(m_Stream->getPeerAddress(), zet::Socket::inet_addr("127.0.0.1"));
    EXPECT_EQ(m_Stream->getPeerPort(), m_Port->getPort());
    m_Port->m_Accepted[0]->start(&m_System);
    EXPECT_TRUE(tickUntil(m_System, [&] { return m_Port->m_Accepted[0]->available() == 5; }));
    tick(10 * TcpRace::kNextAfter);
    EXPECT_EQ(tried(), 3u);
}

TEST_F(Race, AFailedAttemptIsFollowedAtOnce)
{
    m_Door->m_IsRefusing = true;
    connect({"2001:db8::1", "192.0.2.1", "127.0.0.1"});
    ASSERT_TRUE(tickUntil(m_System, [&] { return isUp() && m_Port->m_Accepted.size() == 1; }));
    EXPECT_EQ(tried(), 3u);
    EXPECT_EQ(open(), 1);
}

TEST_F(Race, WhereTheLoopbackOfIPv6RefusesThatOfIPv4Answers)
{
    connect({"::1", "127.0.0.1"});
    ASSERT_TRUE(tickUntil(m_System, [&] { return isUp() && m_Port->m_Accepted.size() == 1; }));
    EXPECT_EQ(m_Door->m_Tried, (std::vector<std::string>{"::1", "127.0.0.1"}));
    EXPECT_EQ(m_Stream->getPeerAddress(), zet::Socket::inet_addr("127.0.0.1"));
}

TEST_F(Race, ALaterAddressOfIPv6MayAnswer)
{
    m_Port->close();
    ASSERT_TRUE(m_Port->setBindAddress(L"::1"));
    ASSERT_TRUE(m_Port->listen(0, 10));
    connect({"192.0.2.1", "::1", "192.0.2.2"});
    tick(0);
    tick(TcpRace::kNextAfter);
    ASSERT_TRUE(tickUntil(m_System, [&] { return isUp(); }));
    EXPECT_EQ(tried(), 2u);
    EXPECT_TRUE(m_Stream->getPeerName().find(L'[', 0) == 0);
}

TEST_F(Race, WithoutAnAnswerOfAnyAddressItFails)
{
    m_Door->m_IsRefusing = true;
    connect({"2001:db8::1", "192.0.2.1"});
    ASSERT_TRUE(
        tickUntil(m_System, [&] { return m_Stream->getConnectionState() == zet::TcpConnection::kConnectFailed; }));
    m_Stream->close();
    EXPECT_EQ(open(), 0);
}

TEST_F(Race, AConnectionThatIsClosedMeanwhileClosesEachAttempt)
{
    connect({"2001:db8::1", "192.0.2.1", "127.0.0.1"});
    tick(0);
    tick(TcpRace::kNextAfter);
    EXPECT_EQ(tried(), 2u);
    EXPECT_EQ(open(), 3);
    m_Stream->close();
    EXPECT_EQ(open(), 0);
    tick(TcpRace::kNextAfter);
    EXPECT_EQ(tried(), 2u);
}

TEST_F(Race, ANameWithManyAddressesIsTriedInItsFirstOnes)
{
    m_Door->m_IsRefusing = true;
    connect(std::vector<const char*>(TcpRace::kMostAddresses + 5, "192.0.2.1"));
    ASSERT_TRUE(
        tickUntil(m_System, [&] { return m_Stream->getConnectionState() == zet::TcpConnection::kConnectFailed; }));
    EXPECT_EQ(tried(), TcpRace::kMostAddresses);
}

TEST_F(Race, ASingleAddressOfIPv6IsTriedAlike)
{
    m_Port->close();
    ASSERT_TRUE(m_Port->setBindAddress(L"::1"));
    ASSERT_TRUE(m_Port->listen(0, 10));
    connect({"::1"});
    ASSERT_TRUE(tickUntil(m_System, [&] { return isUp(); }));
    EXPECT_EQ(tried(), 1u);
}

TEST(Names, TheFamiliesAlternateAndIPv6ComesFirst)
{
    const auto orderOf = [](const std::vector<const char*>& texts)
    {
        std::vector<Endpoint> found(texts.size());
        for (size_t i = 0; i < found.size(); ++i)
            Door::parse(texts[i], 0, found[i]);
        std::string order;
        for (const Endpoint& each : zet::inner::alternateFamilies(found))
            order += Door::print(each) + " ";
        return order;
    };
    EXPECT_EQ(orderOf({"10.0.0.1", "10.0.0.2", "10.0.0.3", "fd00::1", "fd00::2"}),
              "fd00::1 10.0.0.1 fd00::2 10.0.0.2 10.0.0.3 ");
    EXPECT_EQ(orderOf({"fd00::1", "fd00::2", "10.0.0.1"}), "fd00::1 10.0.0.1 fd00::2 ");
    EXPECT_EQ(orderOf({"10.0.0.1"}), "10.0.0.1 ");
    EXPECT_EQ(orderOf({}), "");
}

} // namespace
