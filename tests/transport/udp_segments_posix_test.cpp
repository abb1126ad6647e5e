// Datagrams that the operating system takes as one buffer, and systems that do not take them so.
#include "tests/support/passing_door.h"
#include "tests/support/system_calls.h"
#include "tests/support/udp_road.h"
#include "tests/support/udp_test.h"

#include <netinet/in.h>

#include <list>

namespace
{

using test::Door;
using test::Endpoint;
using test::NoteCommand;
using test::NoteSocketHandle;

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

    bool m_CanSegment = true;
    Fault::Reason m_Refusal = Fault::kNone;
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
        if (!IsSkipped() && !Door::getReal()->canSegment(m_Net.m_Server->getHandle()))
            GTEST_SKIP() << "the operating system cuts no buffers into datagrams";
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
        RecordProperty("SegmentedSends", static_cast<int>(m_Door->count("sendSegmented")));
        RecordProperty("OtherSends", static_cast<int>(m_Door->count("sendBatch")));
    }

    const std::shared_ptr<SegmentDoor> m_Door;
};

TEST_F(UdpSegments, AThousandCommandsLeaveAsBuffers)
{
    ASSERT_NO_FATAL_FAILURE(exchange());
    EXPECT_EQ(m_Door->count("sendBatch"), 0);
    EXPECT_GT(m_Door->count("sendSegmented"), 0);
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

// The real door, without a port of the library.
class SegmentedSend : public testing::Test
{
protected:
    void SetUp() override
    {
        Door::Fault fault;
        m_Handle.set(m_Handle.door().open(Door::kDatagrams, fault));
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
