// Datagrams that the operating system takes or gives as one buffer, and systems that do neither.
#include "framework/inner/fast_paths.h"
#include "tests/support/passing_door.h"
#include "tests/support/raw_handle.h"
#include "tests/support/system_calls.h"
#include "tests/support/udp_road.h"
#include "tests/support/udp_test.h"

#include <netinet/in.h>
#include <netinet/udp.h>

#include <list>

namespace
{

using test::Door;
using test::Endpoint;
using test::NoteCommand;
using test::NoteSocketHandle;

// What a receive gives instead of what came.
struct Given
{
    int m_Size;
    int m_Segment;
};

class SegmentDoor : public test::PassingDoor
{
public:
    int sendSegmented(Handle handle, const Datagram* datagrams, int count, Fault& fault) override
    {
        if (m_Refusal == Fault::kNone)
            return PassingDoor::sendSegmented(handle, datagrams, count, fault);
        noted("sendSegmented");
        fault = {m_Refusal, 0};
        return 0;
    }
    bool canSegment(Handle handle) override { return m_CanSegment && PassingDoor::canSegment(handle); }
    void setOption(Handle handle, Option option, int value) override
    {
        if (option != kCoalesce || m_CanCoalesce)
            PassingDoor::setOption(handle, option, value);
    }
    int receiveBatch(Handle handle, Datagram* datagrams, int count, Fault& fault) override
    {
        const int got = PassingDoor::receiveBatch(handle, datagrams, count, fault);
        m_Buffers += got;
        if (m_Given && got > 0)
        {
            datagrams[0].m_Size = m_Given->m_Size;
            datagrams[0].m_Segment = m_Given->m_Segment;
            for (int i = 0; i < m_Given->m_Size; ++i)
                datagrams[0].m_Data[i] = static_cast<unsigned char>(i & 0x3F);
            m_Given = nullptr;
        }
        return got;
    }

    bool m_CanSegment = true;
    bool m_CanCoalesce = true;
    Fault::Reason m_Refusal = Fault::kNone;
    const Given* m_Given = nullptr;
    // Buffers that the system has given, each with one datagram or several.
    int m_Buffers = 0;
};

class UdpSegments : public test::UdpTest
{
protected:
    explicit UdpSegments(const std::shared_ptr<SegmentDoor>& door = std::make_shared<SegmentDoor>())
        : UdpTest({}, door), m_Door(door)
    {
    }
    void SetUp() override
    {
        UdpTest::SetUp();
        if (!zet::inner::kHasFastPaths)
            GTEST_SKIP() << "without fast paths each datagram is sent and received by itself";
        if (!IsSkipped() && !Door::getReal()->canSegment(m_Net.m_Server->getHandle()))
            GTEST_SKIP() << "the operating system cuts no buffers into datagrams";
    }
    long long getDatagramCount() const
    {
        return static_cast<long long>(m_Net.m_Server->getTraffic().m_DatagramsIn +
                                      m_Net.m_Port->getTraffic().m_DatagramsIn);
    }
    // The ports ask the door again what it can do.
    void reopen()
    {
        for (const auto& port : {m_Net.m_Server, m_Net.m_Port})
        {
            port->close();
            EXPECT_TRUE(port->listen(L"", 0));
        }
    }
    // A thousand commands each way, which arrive in order.
    void exchange()
    {
        const NoteSocketHandle socket = m_Net.connect();
        ASSERT_TRUE(socket);
        settle();
        m_BuffersBefore = m_Door->m_Buffers;
        m_DatagramsBefore = getDatagramCount();
        std::vector<int> expected;
        for (int i = 0; i < 1000; ++i)
        {
            expected.push_back(i);
            ASSERT_TRUE(socket->send(NoteCommand(i, 700)) && m_Net.accepted().send(NoteCommand(i, 700)));
        }
        ASSERT_TRUE(
            m_Net.until([&] { return socket->m_Numbers.size() == 1000 && m_Net.accepted().m_Numbers.size() == 1000; }));
        EXPECT_EQ(socket->m_Numbers, expected);
        EXPECT_EQ(m_Net.accepted().m_Numbers, expected);
        RecordProperty("Buffers", m_Door->m_Buffers - m_BuffersBefore);
        RecordProperty("Datagrams", static_cast<int>(getDatagramCount() - m_DatagramsBefore));
        RecordProperty("SegmentedSends", static_cast<int>(m_Door->count("sendSegmented")));
        RecordProperty("OtherSends", static_cast<int>(m_Door->count("sendBatch")));
        RecordProperty("Receives", static_cast<int>(m_Door->count("receiveBatch")));
    }

    const std::shared_ptr<SegmentDoor> m_Door;
    int m_BuffersBefore = 0;
    long long m_DatagramsBefore = 0;
};

TEST_F(UdpSegments, AThousandCommandsAreFewBuffers)
{
    ASSERT_NO_FATAL_FAILURE(exchange());
    EXPECT_EQ(m_Door->count("sendBatch"), 0);
    EXPECT_LT(m_Door->m_Buffers - m_BuffersBefore, (getDatagramCount() - m_DatagramsBefore) / 8);
}

TEST_F(UdpSegments, ASystemThatCoalescesNothingGivesDatagrams)
{
    m_Door->m_CanCoalesce = false;
    reopen();
    ASSERT_NO_FATAL_FAILURE(exchange());
    EXPECT_EQ(m_Door->m_Buffers - m_BuffersBefore, getDatagramCount() - m_DatagramsBefore);
}

TEST_F(UdpSegments, ASystemThatCutsNothingIsAskedOncePerPort)
{
    m_Door->m_Refusal = Door::Fault::kNotSegmented;
    ASSERT_NO_FATAL_FAILURE(exchange());
    EXPECT_EQ(m_Door->count("sendSegmented"), 2);
    EXPECT_GT(m_Door->count("sendBatch"), 2);
}

TEST_F(UdpSegments, ARefusedBufferLeavesAsDatagrams)
{
    m_Door->m_Refusal = Door::Fault::kOther;
    ASSERT_NO_FATAL_FAILURE(exchange());
    EXPECT_GT(m_Door->count("sendSegmented"), 2);
    EXPECT_GE(m_Door->count("sendBatch"), m_Door->count("sendSegmented"));
}

TEST_F(UdpSegments, AnOldSystemIsNotAsked)
{
    m_Door->m_CanSegment = false;
    reopen();
    const long before = m_Door->count("sendSegmented");
    ASSERT_NO_FATAL_FAILURE(exchange());
    EXPECT_EQ(m_Door->count("sendSegmented"), before);
}

TEST_F(UdpSegments, AFirstPacketThatWaitsForTheNextTickStaysInItsBuffer)
{
    zet::NetLimits limits;
    limits.m_HandshakeSteps = 1;
    m_Net.m_Server->setLimits(limits);
    constexpr int kCount = 6;
    for (int i = 0; i < kCount; ++i)
        ASSERT_TRUE(m_Net.begin());
    // Each handshake takes two turns of the client and one of the server; a packet that is lost would take a second.
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() == kCount; }, 100));
    EXPECT_LT(m_Door->m_Buffers, getDatagramCount());
}

TEST_F(UdpSegments, SizesOfASystemThatErrsStayWithinTheBuffer)
{
    const struct
    {
        Given m_Given;
        std::vector<size_t> m_Sizes;
    } cases[] = {
        {{5000, 2000}, {2000, 2000, 1000}},
        {{4000, 2000}, {2000, 2000}},
        // Longer than user data may be.
        {{5000, 4000}, {1000}},
        {{3000, 0}, {}},
        {{2048, 0}, {2048}},
        {{1000, 65535}, {1000}},
        {{1000, -5}, {1000}},
        {{4, 1}, {1, 1, 1, 1}},
        {{-1, 100}, {}},
    };
    test::BareUdp sender;
    for (const auto& each : cases)
    {
        m_Net.m_Server->m_UserData.clear();
        m_Door->m_Given = &each.m_Given;
        ASSERT_TRUE(sender.send(m_Net.m_Server->getPort(), "x"));
        ASSERT_TRUE(m_Net.until([&] { return !m_Door->m_Given; }, 2000));
        m_Net.step();
        std::vector<size_t> sizes;
        size_t at = 0;
        for (const auto& data : m_Net.m_Server->m_UserData)
        {
            sizes.push_back(data.m_Bytes.size());
            if (each.m_Sizes.size() == 3)
            {
                EXPECT_EQ(data.m_Bytes[0], at & 0x3F);
            }
            at += data.m_Bytes.size();
        }
        EXPECT_EQ(sizes, each.m_Sizes) << each.m_Given.m_Size << " by " << each.m_Given.m_Segment;
    }
}

TEST_F(UdpSegments, ABufferOfManyDatagramsIsBoundedInATick)
{
    const Given given{65535, 1};
    m_Door->m_Given = &given;
    test::BareUdp sender;
    ASSERT_TRUE(sender.send(m_Net.m_Server->getPort(), "x"));
    ASSERT_TRUE(m_Net.until([&] { return !m_Door->m_Given; }, 2000));
    const size_t first = m_Net.m_Server->m_UserData.size();
    EXPECT_LE(first, static_cast<size_t>(zet::UdpServer::kDatagramsPerTick));
    m_Net.step();
    EXPECT_LE(m_Net.m_Server->m_UserData.size(), first + zet::UdpServer::kDatagramsPerTick);
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_UserData.size() == 65535; }, 65535));
}

TEST_F(UdpSegments, ADetachedHandleGivesDatagramsOneByOne)
{
#ifdef UDP_GRO
    const auto isCoalescing = [](unsigned int handle)
    {
        int value = -1;
        socklen_t size = sizeof value;
        EXPECT_EQ(getsockopt(static_cast<int>(handle), IPPROTO_UDP, UDP_GRO, &value, &size), 0);
        return value != 0;
    };
    EXPECT_TRUE(isCoalescing(m_Net.m_Server->getHandle()));
    const unsigned int handle = m_Net.m_Server->detach();
    EXPECT_FALSE(isCoalescing(handle));
    ASSERT_TRUE(m_Net.m_Server->attach(handle));
    EXPECT_TRUE(isCoalescing(m_Net.m_Server->getHandle()));
#endif
}

// The real door, without a port of the library.
class SegmentedSend : public testing::Test
{
protected:
    void SetUp() override
    {
        Door::Fault fault;
        m_Handle.set(m_Handle.door().open(Door::kDatagrams, Door::kIPv4, fault));
        ASSERT_FALSE(fault);
        if (!m_Handle.door().canSegment(m_Handle.get()))
            GTEST_SKIP() << "the operating system cuts no buffers into datagrams";
    }
    void add(const test::BareUdp& to, size_t size)
    {
        m_Bytes.emplace_back(size, static_cast<char>('a' + m_Bytes.size()));
        Door::Datagram datagram;
        datagram.m_Peer = Endpoint::ofV4(htonl(INADDR_LOOPBACK), to.getPort());
        datagram.m_Data = reinterpret_cast<unsigned char*>(m_Bytes.back().data());
        datagram.m_Size = static_cast<int>(size);
        m_Datagrams.push_back(datagram);
    }
    int send(Door::Fault& fault)
    {
        return m_Handle.door().sendSegmented(m_Handle.get(), m_Datagrams.data(), static_cast<int>(m_Datagrams.size()),
                                             fault);
    }
    static std::vector<std::string> takeAll(test::BareUdp& from)
    {
        std::vector<std::string> all;
        std::string bytes;
        unsigned short port = 0;
        while (from.receive(bytes, port))
            all.push_back(bytes);
        return all;
    }

    zet::inner::DoorHandle m_Handle{Door::getReal()};
    std::list<std::string> m_Bytes;
    std::vector<Door::Datagram> m_Datagrams;
};

TEST_F(SegmentedSend, ArrivesAsTheDatagramsItWas)
{
    test::BareUdp one;
    test::BareUdp other;
    for (const size_t size : {500u, 500u, 500u, 200u, 200u, 200u, 700u, 1u})
        add(one, size);
    for (const size_t size : {300u, 300u})
        add(other, size);
    add(one, 300);
    const std::vector<std::string> all(m_Bytes.begin(), m_Bytes.end());
    Door::Fault fault;
#ifdef COUNTS_SYSTEM_CALLS
    const test::SystemCalls before;
#endif
    EXPECT_EQ(send(fault), static_cast<int>(m_Datagrams.size()));
#ifdef COUNTS_SYSTEM_CALLS
    EXPECT_EQ(test::SystemCalls().m_Sends - before.m_Sends, 1);
#endif
    EXPECT_FALSE(fault);
    EXPECT_EQ(takeAll(other), (std::vector<std::string>{all[8], all[9]}));
    std::vector<std::string> rest(all.begin(), all.begin() + 8);
    rest.push_back(all[10]);
    EXPECT_EQ(takeAll(one), rest);
}

TEST_F(SegmentedSend, OfMoreThanADatagramCanHoldIsTwoBuffers)
{
    test::BareUdp one;
    for (int i = 0; i < Door::kMostDatagrams; ++i)
        add(one, 2048);
    Door::Fault fault;
    EXPECT_EQ(send(fault), Door::kMostDatagrams);
    EXPECT_EQ(takeAll(one), std::vector<std::string>(m_Bytes.begin(), m_Bytes.end()));
}

TEST_F(SegmentedSend, OfADatagramThatFitsNoWayOutSaysWhy)
{
    test::BareUdp one;
    // More than the loopback's own 65,536 bytes with their heads.
    add(one, 65530);
    Door::Fault fault;
    EXPECT_EQ(send(fault), 0);
    EXPECT_EQ(fault.m_Reason, Door::Fault::kOther);
}

} // namespace
