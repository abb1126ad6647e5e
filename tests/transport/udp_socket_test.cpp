#include "transport/udp_client_socket.h"

#include "tests/support/log_lines.h"
#include "tests/support/udp_test.h"

namespace
{

using test::NoteCommand;
using test::NoteSocket;
using test::NoteSocketHandle;

class UdpClient : public test::UdpTest
{
protected:
    // Raw bytes of the connection, sent between commands.
    static std::vector<unsigned char> messageOf(const CCmdHead& command)
    {
        CCmdPackager packager;
        EXPECT_TRUE(command.Write(&packager));
        const int size = packager.Pack(nullptr, 0);
        std::vector<unsigned char> bytes(static_cast<size_t>(size) + 2);
        bytes[0] = static_cast<unsigned char>(size);
        bytes[1] = static_cast<unsigned char>(size >> 8);
        EXPECT_EQ(packager.Pack(bytes.data() + 2, size), size);
        return bytes;
    }
    static bool put(NoteSocket& socket, const unsigned char* data, size_t size)
    {
        return socket.write(data, static_cast<int>(size)) == static_cast<int>(size);
    }
    // A packager whose datagram frame has the given size.
    static void fill(CCmdPackager& packager, int frame)
    {
        packager.SetCmdID(0x0123);
        // Two bytes of id and three of size, as from 4,096 bytes on.
        const std::vector<unsigned char> bytes(static_cast<size_t>(frame) - 5, 7);
        ASSERT_TRUE(packager.Write(bytes.data(), static_cast<int>(bytes.size())));
        ASSERT_EQ(packager.Pack(nullptr, 0), frame);
    }
};

TEST_F(UdpClient, ACommandArrivesAndIsAnswered)
{
    m_Net.m_Server->m_Handler = [](NoteSocket& socket, const NoteCommand& note)
    { EXPECT_TRUE(socket.send(NoteCommand(note.m_Number + 1))); };
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    ASSERT_TRUE(socket->send(NoteCommand(41, 100)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Numbers.size() == 1; }));
    EXPECT_EQ(socket->m_Numbers[0], 42);
}

TEST_F(UdpClient, TheHandlerSeesTheSocketAndZero)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket* seen = nullptr;
    m_Net.accepted().m_Handler = [&](NoteSocket& self, const NoteCommand&) { seen = &self; };
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return seen != nullptr; }));
    EXPECT_EQ(seen, &m_Net.accepted());
    EXPECT_EQ(m_Net.accepted().m_LastArg2, 0U);
}

TEST_F(UdpClient, AFrameOf32767BytesArrives)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    CCmdPackager packager;
    fill(packager, 32767);
    const size_t before = socket->getOutputSize();
    ASSERT_TRUE(socket->send(packager));
    EXPECT_EQ(socket->getOutputSize() - before, 32769U);
    NoteSocket& far = m_Net.accepted();
    ASSERT_TRUE(m_Net.until([&] { return far.m_iBodyCapacity == 32767 && far.m_iHeadRead == 0; }));
    EXPECT_EQ(far.getConnectionState(), NoteSocket::kEstablished);
    EXPECT_EQ(far.available(), 0);
}

TEST_F(UdpClient, ALongerFrameSendsNothingAndReturnsTrue)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    ASSERT_TRUE(m_Net.until([&] { return socket->getOutputSize() == 0; }));
    // 65,537 bytes would be 1 in 16 bits, 98,304 would be negative.
    for (const int size : {32768, 40000, 65535, 65536, 65537, 98304, 200000})
    {
        CCmdPackager packager;
        fill(packager, size);
        EXPECT_TRUE(socket->send(packager)) << size;
        EXPECT_EQ(socket->getOutputSize(), 0U) << size;
    }
}

TEST_F(UdpClient, ACommandThatDoesNotWriteItselfIsNotSent)
{
    class Unwritable : public CCmdHead
    {
    public:
        Unwritable() : CCmdHead(1) {}
        bool Write(CCmdPackager*) const override { return false; }
    };
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    EXPECT_FALSE(socket->send(Unwritable()));
}

TEST_F(UdpClient, ALengthThatArrivesOneByteATickGivesOneCommand)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    const auto bytes = messageOf(NoteCommand(5, 3));
    ASSERT_TRUE(put(*socket, bytes.data(), 1));
    ASSERT_TRUE(m_Net.until([&] { return far.m_iHeadRead == 1; }));
    ASSERT_TRUE(put(*socket, bytes.data() + 1, 1));
    ASSERT_TRUE(m_Net.until([&] { return far.m_iHeadRead == 2; }));
    EXPECT_EQ(far.m_iHead, static_cast<int>(bytes.size()) - 2);
    EXPECT_EQ(far.m_iBodyRead, 0);
    ASSERT_TRUE(put(*socket, bytes.data() + 2, bytes.size() - 2));
    ASSERT_TRUE(m_Net.until([&] { return far.m_Numbers.size() == 1; }));
    EXPECT_EQ(far.m_Numbers[0], 5);
    EXPECT_EQ(far.m_iHeadRead, 0);
    EXPECT_EQ(far.m_iHead, 0);
    EXPECT_EQ(far.m_iBodyRead, 0);
}

TEST_F(UdpClient, ACommandThatArrivesOneByteATickIsOneCommand)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    const auto bytes = messageOf(NoteCommand(6, 20));
    for (const unsigned char byte : bytes)
    {
        ASSERT_TRUE(far.m_Numbers.empty());
        ASSERT_TRUE(put(*socket, &byte, 1));
        m_Net.step();
        m_Net.step();
    }
    ASSERT_TRUE(m_Net.until([&] { return far.m_Numbers.size() == 1; }));
    EXPECT_EQ(far.m_Numbers[0], 6);
}

TEST_F(UdpClient, TwoCommandsInOneTickAreBothDispatchedInOrder)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(socket->send(NoteCommand(2)));
    int ticks = 0;
    ASSERT_TRUE(m_Net.until(
        [&]
        {
            ticks += far.m_Numbers.size() == 1;
            return far.m_Numbers.size() == 2;
        }));
    EXPECT_EQ(ticks, 0);
    EXPECT_EQ(far.m_Numbers, (std::vector<int>{1, 2}));
}

TEST_F(UdpClient, ManyCommandsOfAllSizesArriveInOrderBothWays)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    std::vector<int> expected;
    for (int i = 0; i < 300; ++i)
    {
        ASSERT_TRUE(socket->send(NoteCommand(i, i * 97 % 10000)));
        ASSERT_TRUE(far.send(NoteCommand(i, i * 31 % 10000)));
        expected.push_back(i);
    }
    ASSERT_TRUE(m_Net.until([&] { return far.m_Numbers.size() == 300 && socket->m_Numbers.size() == 300; }));
    EXPECT_EQ(far.m_Numbers, expected);
    EXPECT_EQ(socket->m_Numbers, expected);
}

TEST_F(UdpClient, ALengthBelowOneBreaksTheConnection)
{
    for (const unsigned char high : {0x80, 0xFF, 0x00})
    {
        const NoteSocketHandle socket = m_Net.connect();
        ASSERT_TRUE(socket);
        NoteSocket& far = m_Net.accepted();
        const unsigned char head[] = {0, high, 1, 2, 3};
        ASSERT_TRUE(put(*socket, head, sizeof head));
        ASSERT_TRUE(m_Net.until([&] { return far.getConnectionState() == NoteSocket::kDown; }));
        ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
        EXPECT_EQ(far.m_iHeadRead, 2);
        EXPECT_EQ(far.m_Closes, 1);
        EXPECT_EQ(far.m_StateAtClose, NoteSocket::kBroken);
    }
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
}

TEST_F(UdpClient, ALengthBelowOneEndsAlsoAConnectionWhoseOutputWaits)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    const unsigned char head[] = {0xFF, 0xFF};
    ASSERT_TRUE(put(*socket, head, sizeof head));
    for (int i = 0; i < 20; ++i)
        ASSERT_TRUE(far.send(NoteCommand(i, 30000)));
    // More than the peer's window allows at once.
    ASSERT_GT(far.getOutputSize(), static_cast<size_t>(zet::UdpServer::Settings().m_InputLimit));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(far.m_Closes, 1);
    EXPECT_EQ(far.m_StateAtClose, NoteSocket::kBroken);
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
    EXPECT_EQ(m_Net.m_Server->getConnectionCount(), 0);
}

TEST_F(UdpClient, AnEndInTheTickOfASendIsStillReported)
{
    const NoteSocketHandle first = m_Net.connect();
    const NoteSocketHandle second = m_Net.connect();
    ASSERT_TRUE(first && second);
    settle();
    NoteSocket& speaker = *m_Net.m_Server->m_Accepted[0];
    NoteSocket& leaver = *m_Net.m_Server->m_Accepted[1];
    bool wasTold = true;
    speaker.m_Handler = [&](NoteSocket&, const NoteCommand&)
    {
        wasTold = leaver.getConnectionState() != NoteSocket::kEstablished;
        EXPECT_TRUE(leaver.send(NoteCommand(2)));
    };
    ASSERT_TRUE(first->send(NoteCommand(1)));
    second->close();
    m_Net.step();
    // Both have arrived; the one with output has the first turn.
    ASSERT_TRUE(speaker.send(NoteCommand(3)));
    ASSERT_TRUE(m_Net.until([&] { return speaker.m_Numbers.size() == 1; }));
    EXPECT_FALSE(wasTold);
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->GetClientCount() == 1; }, 10));
    EXPECT_EQ(leaver.m_Closes, 1);
    EXPECT_EQ(leaver.m_StateAtClose, NoteSocket::kClosedByPeer);
}

TEST_F(UdpClient, AFrameThatCannotBeParsedCostsItsLogLinesAlone)
{
    const test::LogLines log;
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    const unsigned char bad[] = {3, 0, 0xFF, 0xFF, 0};
    ASSERT_TRUE(put(*socket, bad, sizeof bad));
    ASSERT_TRUE(socket->send(NoteCommand(9)));
    ASSERT_TRUE(m_Net.until([&] { return far.m_Numbers.size() == 1; }));
    EXPECT_TRUE(log.has(zet::Log::kError, L"CCmdAnalyser cannot Analyse OverFlow CMD(0xffff)"));
    EXPECT_EQ(far.getConnectionState(), NoteSocket::kEstablished);
}

TEST_F(UdpClient, AHandlerMayCloseItsSocket)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    far.m_Handler = [](NoteSocket& self, const NoteCommand&) { self.close(); };
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(socket->send(NoteCommand(2)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
    EXPECT_EQ(far.m_Numbers, std::vector<int>{1});
    EXPECT_EQ(far.m_Closes, 0);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
}

TEST_F(UdpClient, ASocketThatItsHandlerClosesIsAbandonedWhetherOrNotOutputWaits)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Net.accepted().m_Handler = [](NoteSocket& self, const NoteCommand&)
    {
        EXPECT_TRUE(self.send(NoteCommand(7)));
        self.close();
    };
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
    EXPECT_EQ(socket->m_Numbers, std::vector<int>{7});
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
}

TEST_F(UdpClient, AHandlerMayLetGoOfTheLastHandle)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Net.accepted().m_Handler = [this](NoteSocket& self, const NoteCommand&)
    {
        m_Net.m_Server->abandon(&self);
        m_Net.m_Server->m_Accepted.clear();
    };
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
}

TEST_F(UdpClient, AHandlerMayCloseTheServer)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Net.accepted().m_Handler = [this](NoteSocket&, const NoteCommand&) { m_Net.m_Server->close(); };
    ASSERT_TRUE(socket->send(NoteCommand(1)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Closes == 1; }));
    EXPECT_EQ(m_Net.m_Server->getPort(), 0);
    EXPECT_EQ(m_Net.accepted().m_Closes, 1);
}

TEST_F(UdpClient, WhatWasSentBeforeCloseStillArrives)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    NoteSocket& far = m_Net.accepted();
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(socket->send(NoteCommand(i, 10000)));
    socket->close();
    EXPECT_EQ(socket->getConnectionState(), NoteSocket::kDown);
    ASSERT_TRUE(m_Net.until([&] { return far.m_Closes == 1; }));
    EXPECT_EQ(far.m_Numbers.size(), 100U);
    EXPECT_EQ(far.m_StateAtClose, NoteSocket::kClosedByPeer);
    EXPECT_EQ(socket->m_Closes, 0);
}

TEST_F(UdpClient, ASocketThatClosedInTheMiddleOfACommandBeginsANewOneWithItsNextConnection)
{
    const NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    const auto bytes = messageOf(NoteCommand(5, 30));
    ASSERT_TRUE(put(m_Net.accepted(), bytes.data(), bytes.size() - 1));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_iBodyRead > 0; }));
    socket->close();
    EXPECT_EQ(socket->m_iHeadRead, 2);
    EXPECT_EQ(socket->m_iBodyRead, static_cast<int>(bytes.size()) - 3);
    ASSERT_TRUE(socket->connect(m_Net.m_Port, L"127.0.0.1", static_cast<int>(m_Net.m_Server->getPort()), zet::Uuid()));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() == 2; }));
    ASSERT_TRUE(m_Net.accepted().send(NoteCommand(6)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Numbers.size() == 1; }));
    EXPECT_EQ(socket->m_Numbers[0], 6);
}

TEST_F(UdpClient, ASocketThatIsAcceptedAgainBeginsANewCommand)
{
    NoteSocketHandle socket = m_Net.connect();
    ASSERT_TRUE(socket);
    const NoteSocketHandle far = m_Net.m_Server->m_Accepted.back();
    const auto bytes = messageOf(NoteCommand(5, 30));
    ASSERT_TRUE(put(*socket, bytes.data(), bytes.size() - 1));
    ASSERT_TRUE(m_Net.until([&] { return far->m_iBodyRead > 0; }));
    socket->close();
    ASSERT_TRUE(m_Net.until([&] { return far->m_Closes == 1; }));
    EXPECT_EQ(far->m_iBodyRead, static_cast<int>(bytes.size()) - 3);
    m_Net.m_Server->m_Spare.push_back(far);
    socket = m_Net.connect();
    ASSERT_TRUE(socket);
    ASSERT_EQ(m_Net.m_Server->m_Accepted.back(), far);
    ASSERT_TRUE(socket->send(NoteCommand(6)));
    ASSERT_TRUE(m_Net.until([&] { return far->m_Numbers.size() == 1; }));
    EXPECT_EQ(far->m_Numbers[0], 6);
}

TEST_F(UdpClient, APeerThatNeverReadsCostsItsOwnConnection)
{
    class Deaf : public zet::UdpStream
    {
    public:
        void onTick(unsigned int tick) override { zet::UdpStream::onTick(tick); }
    };
    const NoteSocketHandle socket = m_Net.connect();
    const zet::Unknown::Handle_T<Deaf> deaf = new Deaf;
    ASSERT_TRUE(deaf->connect(m_Net.m_Port, L"127.0.0.1", m_Net.m_Server->getPort(), zet::Uuid()));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted.size() == 2; }));
    NoteSocket& speaker = m_Net.accepted();
    int sent = 0;
    for (; speaker.getConnectionState() == NoteSocket::kEstablished && sent < 10000; ++sent)
    {
        ASSERT_TRUE(speaker.send(NoteCommand(1, 30000)));
        if (sent % 10 == 0)
            m_Net.step();
        ASSERT_LE(speaker.getOutputSize(), NoteSocket::kDefaultOutputLimit + 40000);
    }
    EXPECT_EQ(speaker.getConnectionState(), NoteSocket::kDown);
    EXPECT_EQ(speaker.m_Closes, 1);
    EXPECT_EQ(speaker.m_StateAtClose, NoteSocket::kBroken);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 1);
    // The peer has received as much as its window allows.
    EXPECT_LE(deaf->available(), zet::UdpServer::Settings().m_InputLimit);
    ASSERT_TRUE(socket->send(NoteCommand(3)));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->m_Accepted[0]->m_Numbers.size() == 1; }));
}

TEST_F(UdpClient, TheStampsAreFixed)
{
    const std::wstring stamp = L"Mon Dec  9 15:18:49 2019";
    EXPECT_EQ(stamp, UdpClientSocket::createInstance()->getClassTimestamp());
    EXPECT_EQ(stamp, UdpServerSocket::createInstance()->getClassTimestamp());
}

TEST_F(UdpClient, PortZeroGivesTheBoundPortAndAnEmptyAddressTheHostsName)
{
    const auto server = UdpServerSocket::createInstance();
    EXPECT_EQ(server->GetPort(), 0);
    ASSERT_TRUE(server->listen(zet::String_T<wchar_t>(), 0));
    EXPECT_NE(server->GetPort(), 0);
    EXPECT_EQ(server->GetPort(), server->getPort());
    EXPECT_TRUE(server->GetIP() == zet::Socket::getHostName());
    EXPECT_FALSE(server->listen(L"10.0.0.1", 0));
    EXPECT_TRUE(server->GetIP() == zet::Socket::getHostName());
    EXPECT_TRUE(m_Net.m_Server->GetIP() == zet::String_T<wchar_t>(L"127.0.0.1"));
}

TEST_F(UdpClient, TheServerHoldsWhomItAcceptedUntilTheyEndOrAreAbandoned)
{
    const NoteSocketHandle first = m_Net.connect();
    const NoteSocketHandle second = m_Net.connect();
    const NoteSocketHandle third = m_Net.connect();
    ASSERT_TRUE(first && second && third);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 3);
    const NoteSocketHandle held = m_Net.m_Server->m_Accepted[0];
    m_Net.m_Server->m_Accepted.clear();
    m_Net.m_Server->abandon(held);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 2);
    EXPECT_EQ(held->getConnectionState(), NoteSocket::kEstablished);
    second->close();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->GetClientCount() == 1; }));
    m_Net.m_Server->abandon(held);
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 1);
    m_Net.m_Server->close();
    EXPECT_EQ(m_Net.m_Server->GetClientCount(), 0);
    EXPECT_EQ(held->m_Closes, 1);
}

} // namespace
