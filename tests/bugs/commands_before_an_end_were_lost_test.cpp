// Commands received whole before the peer's end of stream were lost if their handlers replied: the first send refused
// by the operating system counted as the end of the connection, whatever was still unread. It now ends output only, and
// the end is reported after the last command.
#include "framework/time.h"
#include "tests/support/net_pair.h"
#include "tests/support/raw_handle.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

namespace
{

using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::RawPeer;
using test::tickUntil;

// Enough that a part is sent during the tick.
constexpr int kAnswer = 60000;
constexpr int kCommands = 100;

void sendAllAndClose(const zet::Unknown::Handle_T<zet::TcpStream>& stream, const std::vector<unsigned char>& bytes)
{
    const unsigned int handle = stream->detach();
    ASSERT_TRUE(test::sendRaw(handle, bytes.data(), bytes.size()));
    test::closeRaw(handle);
}

std::vector<unsigned char> manyCommands()
{
    std::vector<unsigned char> bytes;
    for (int i = 0; i < kCommands; ++i)
    {
        const auto packet = packetOf(NoteCommand(i));
        bytes.insert(bytes.end(), packet.begin(), packet.end());
    }
    return bytes;
}

std::vector<int> allNumbers()
{
    std::vector<int> numbers;
    for (int i = 0; i < kCommands; ++i)
        numbers.push_back(i);
    return numbers;
}

TEST(Bugs, CommandsBeforeAnEndAreHandledThoughTheyAreAnswered)
{
    std::vector<int> got;
    NoteAnalyser analyser(
        [&](CCommandSocket* socket, const NoteCommand& note)
        {
            got.push_back(note.m_Number);
            EXPECT_EQ(socket->getConnectionState(), zet::TcpConnection::kEstablished);
            socket->send(NoteCommand(note.m_Number, kAnswer));
        });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    sendAllAndClose(peer.m_Stream, manyCommands());
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(got, allNumbers());
    // Output that could not be sent is not kept.
    EXPECT_EQ(net.accepted()->getOutputSize(), 0u);
}

TEST(Bugs, CommandsBeforeAnEndAreHandledWithTheNextTicks)
{
    zet::TestClock clock(1000000000);
    std::vector<int> got;
    NoteAnalyser analyser(
        [&](CCommandSocket* socket, const NoteCommand& note)
        {
            got.push_back(note.m_Number);
            socket->send(NoteCommand(note.m_Number, kAnswer));
            clock.advance(30);
        });
    Loopback net(analyser);
    RawPeer peer(net);
    ASSERT_TRUE(peer.m_IsUp);
    sendAllAndClose(peer.m_Stream, manyCommands());
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    EXPECT_EQ(got, allNumbers());
}

TEST(Bugs, AStreamShowsWhatCameBeforeAnEndThoughASendFails)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    const zet::Unknown::Handle_T<zet::TcpStream> stream = new zet::TcpStream;
    stream->start(&net.m_System);
    ASSERT_TRUE(stream->connect(L"127.0.0.1", net.m_Server->getPort(), false));
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->m_Accepted.size() == 1; }));
    // The test takes over the server's end of the connection and closes it itself.
    const unsigned int handle = net.accepted()->detach();
    const std::vector<unsigned char> bytes(100000, 'x');
    ASSERT_TRUE(test::sendRaw(handle, bytes.data(), bytes.size()));
    test::closeRaw(handle);
    // The first send is answered with a reset, the second one fails by it.
    const std::vector<unsigned char> answer(200000, 'y');
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(stream->send(answer.data(), static_cast<int>(answer.size())), static_cast<int>(answer.size()));
    EXPECT_EQ(stream->getConnectionState(), zet::TcpConnection::kEstablished);
    std::vector<unsigned char> got(bytes.size());
    size_t count = 0;
    EXPECT_TRUE(tickUntil(net.m_System,
                          [&]
                          {
                              count += static_cast<size_t>(
                                  stream->read(got.data() + count, static_cast<int>(got.size() - count)));
                              return count == got.size();
                          }));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return stream->getConnectionState() == zet::TcpConnection::kBroken; }));
    EXPECT_EQ(stream->send("z", 1), 0);
    stream->close();
    stream->stop();
}

TEST(Bugs, MessagesBeforeAnEndAreHandledThoughTheyAreAnswered)
{
    test::NetPair net;
    const test::NotingHandle session = net.connect();
    ASSERT_TRUE(session);
    std::vector<int> got;
    test::NetNotes::s_Handler = [&](unsigned long self, unsigned long, const NoteCommand& note)
    {
        got.push_back(note.m_Number);
        NoteCommand answer(note.m_Number, kAnswer);
        CNetSession::ofArgument(self)->sendNetCommand(&answer);
    };
    for (int number : allNumbers())
    {
        NoteCommand note(number);
        ASSERT_TRUE(session->sendNetCommand(&note));
    }
    session->close();
    const test::NotingHandle far = net.accepted();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return far->getState() == zet::NetSession::kDown; }));
    EXPECT_EQ(got, allNumbers());
    EXPECT_EQ(far->m_Notes, "oax");
}

} // namespace
