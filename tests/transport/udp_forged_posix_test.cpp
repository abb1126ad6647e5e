// Datagrams with forged sources, or without a valid protocol.
#include "tests/support/allocations.h"
#include "tests/support/udp_road.h"
#include "tests/support/udp_test.h"

#include <random>

namespace
{

using test::BareUdp;
using test::NoteCommand;
using test::NoteSocketHandle;

class UdpForged : public test::UdpTest
{
protected:
    std::string noise(size_t size)
    {
        std::string bytes(size, 0);
        for (char& byte : bytes)
            byte = static_cast<char>(m_Random());
        return bytes;
    }
    // The first packet of a connection, as far as can be seen without its keys.
    std::string initial(const std::string& token, size_t size = 1200)
    {
        std::string bytes("\xC3\0\0\0\1\x10", 6);
        bytes += noise(16) + '\x08' + noise(8);
        bytes += static_cast<char>(0x40 | token.size() >> 8);
        bytes += static_cast<char>(token.size());
        bytes += token;
        const size_t rest = size - bytes.size() - 2;
        bytes += static_cast<char>(0x40 | rest >> 8);
        bytes += static_cast<char>(rest);
        return bytes + noise(rest);
    }

    std::mt19937 m_Random{7};
};

TEST_F(UdpForged, TenThousandForgedAttemptsKeepNothingAndDrawLessThanTheySend)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    settle();
    std::optional<long long> before;
    size_t sent = 0, drawn = 0, answers = 0;
    const auto traffic = m_Net.m_Server->getTraffic();
    for (int round = 0; round < 100; ++round)
    {
        // The first round allocates what is kept permanently.
        if (round == 1)
            before = test::bytesInUse();
        std::vector<std::unique_ptr<BareUdp>> sources;
        for (int i = 0; i < 100; ++i)
        {
            sources.push_back(std::make_unique<BareUdp>(0x7F000002 + m_Random() % 0xFFFFF0));
            ASSERT_TRUE(sources.back()->isOpen());
            // Every fourth contains a forged token.
            const std::string packet = initial(i % 4 == 0 ? '\xB6' + noise(70) : std::string());
            sent += packet.size();
            ASSERT_TRUE(sources.back()->send(m_Net.m_Server->getPort(), packet));
            if (i % 25 == 24)
                m_Net.step();
        }
        m_Net.step();
        for (const auto& source : sources)
        {
            std::string bytes;
            unsigned short port = 0;
            size_t got = 0;
            while (source->receive(bytes, port))
            {
                got += bytes.size();
                ++answers;
            }
            ASSERT_LT(got, 1200U);
            drawn += got;
        }
    }
    const auto after = m_Net.m_Server->getTraffic();
    EXPECT_EQ(sent, 12000000U);
    EXPECT_EQ(after.m_BytesIn - traffic.m_BytesIn, sent);
    EXPECT_EQ(after.m_BytesOut - traffic.m_BytesOut, drawn);
    EXPECT_EQ(answers, 7500U);
    EXPECT_LT(drawn * 5, sent);
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 1);
    const auto used = test::bytesInUse();
    RecordProperty("BytesDrawn", static_cast<int>(drawn));
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
    if (!before)
        GTEST_SKIP() << test::kNobodyTellsBytes;
    EXPECT_LT(*used - *before, 64 * 1024);
}

TEST_F(UdpForged, ATokenOfAnotherAddressOpensNothing)
{
    // Gets a token, and uses it from another address, later, and with another id.
    BareUdp honest;
    ASSERT_TRUE(honest.send(m_Net.m_Server->getPort(), initial("")));
    m_Net.step();
    std::string retry;
    unsigned short port = 0;
    ASSERT_TRUE(honest.receive(retry, port));
    // Head of 6 bytes, ids of 8 and 16 bytes, a token, a tag of 16.
    ASSERT_GT(retry.size(), 47U);
    const std::string id = retry.substr(15, 16);
    const std::string token = retry.substr(31, retry.size() - 47);
    const auto with = [&](const std::string& target)
    {
        std::string packet = initial(token);
        packet.replace(6, 16, target);
        return packet;
    };
    const auto out = m_Net.m_Server->getTraffic().m_DatagramsOut;
    BareUdp thief;
    ASSERT_TRUE(thief.send(m_Net.m_Server->getPort(), with(id)));
    ASSERT_TRUE(honest.send(m_Net.m_Server->getPort(), with(noise(16))));
    m_Net.step();
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
    m_Net.m_Clock.advance(11000);
    ASSERT_TRUE(honest.send(m_Net.m_Server->getPort(), with(id)));
    m_Net.step();
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
    EXPECT_EQ(m_Net.m_Server->getTraffic().m_DatagramsOut, out);
}

TEST_F(UdpForged, APeerThatShowsItsAddressAndFallsSilentIsForgotten)
{
    BareUdp visitor;
    ASSERT_TRUE(visitor.send(m_Net.m_Server->getPort(), initial("")));
    m_Net.step();
    std::string retry;
    unsigned short port = 0;
    ASSERT_TRUE(visitor.receive(retry, port));
    std::string packet = initial(retry.substr(31, retry.size() - 47));
    packet.replace(6, 16, retry.substr(15, 16));
    // Noise does not decrypt: it is not answered, and no state is kept longer than the connect timeout.
    ASSERT_TRUE(visitor.send(m_Net.m_Server->getPort(), packet));
    m_Net.step();
    EXPECT_LE(m_Net.m_Server->getConnectionCount(), 1);
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == 0; },
                            static_cast<int>(zet::UdpServer::Settings().m_ConnectTimeout) + 10));
}

TEST_F(UdpForged, AnUnknownVersionIsAnsweredWithTheSupportedOne)
{
    BareUdp source;
    std::string packet = initial("");
    packet[1] = '\x1A';
    ASSERT_TRUE(source.send(m_Net.m_Server->getPort(), packet));
    // A short one is not answered.
    ASSERT_TRUE(source.send(m_Net.m_Server->getPort(), packet.substr(0, 1199)));
    m_Net.step();
    std::string answer;
    unsigned short port = 0;
    ASSERT_TRUE(source.receive(answer, port));
    EXPECT_EQ(answer.substr(1, 4), std::string(4, 0));
    EXPECT_EQ(answer.substr(answer.size() - 4), std::string("\0\0\0\1", 4));
    EXPECT_LT(answer.size(), 100U);
    EXPECT_FALSE(source.receive(answer, port));
    EXPECT_EQ(m_Net.m_Server->m_UserData.size(), 1U);
}

TEST_F(UdpForged, NoiseOfAnyKindDisturbsNoConnection)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    BareUdp source;
    std::string seen;
    for (int i = 0; i < 3000; ++i)
    {
        std::string packet = noise(m_Random() % 1500);
        if (i % 3 == 0)
            packet = initial(noise(m_Random() % 80), 1200).substr(0, 1 + m_Random() % 1200);
        if (i % 5 == 0 && packet.size() > 20)
            packet.replace(0, 5, std::string("\xE0\0\0\0\1", 5));
        ASSERT_TRUE(source.send(m_Net.m_Server->getPort(), packet));
        if (i % 20 == 0)
            m_Net.step();
    }
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().m_Numbers.size() == 1; }));
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 1);
}

TEST_F(UdpForged, AnEmptyDatagramIsUserDataAndOneTooLongIsDropped)
{
    BareUdp source;
    ASSERT_TRUE(source.send(m_Net.m_Server->getPort(), ""));
    ASSERT_TRUE(source.send(m_Net.m_Server->getPort(), std::string(2049, 'a')));
    ASSERT_TRUE(source.send(m_Net.m_Server->getPort(), std::string(2048, 'a')));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_UserData.size() == 2; }, 100));
    EXPECT_EQ(m_Net.m_Server->m_UserData[0].m_Bytes.size(), 0U);
    EXPECT_EQ(m_Net.m_Server->m_UserData[1].m_Bytes.size(), 2048U);
}

} // namespace
