// Commands that arrive together with something other than data: the peer's end, a reset, urgent data.
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace
{

using test::NoteAnalyser;
using test::NoteCommand;
using test::packetOf;
using test::tickUntil;

// A socket of the operating system, connected to a server.
class Plain
{
public:
    explicit Plain(unsigned short port) : m_Handle(::socket(AF_INET, SOCK_STREAM, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        m_IsUp = ::connect(m_Handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }
    ~Plain() { close(); }
    Plain(const Plain&) = delete;
    Plain& operator=(const Plain&) = delete;

    bool send(const std::vector<unsigned char>& bytes, int flags = 0) const
    {
        return ::send(m_Handle, bytes.data(), bytes.size(), flags) == static_cast<ssize_t>(bytes.size());
    }
    void end() const { ::shutdown(m_Handle, SHUT_WR); }
    void reset()
    {
        const linger atOnce{1, 0};
        ::setsockopt(m_Handle, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
        close();
    }
    void close()
    {
        if (m_Handle >= 0)
            ::close(m_Handle);
        m_Handle = -1;
    }

    int m_Handle;
    bool m_IsUp = false;
};

// A server that replies, and records the state of its connection at each command.
class LastBytes : public testing::Test
{
protected:
    LastBytes()
        : m_Analyser(
              [this](CCommandSocket* socket, const NoteCommand& note)
              {
                  m_Numbers.push_back(note.m_Number);
                  m_States.push_back(socket->getConnectionState());
                  m_Answers += socket->send(note) ? 1 : 0;
              }),
          m_Net(m_Analyser), m_Peer(m_Net.m_Server->getPort())
    {
    }
    void SetUp() override
    {
        ASSERT_TRUE(m_Peer.m_IsUp);
        ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Net.m_Server->m_Accepted.size() == 1; }));
        ASSERT_TRUE(m_Peer.send(packetOf(NoteCommand(1))));
        ASSERT_TRUE(m_Peer.send(packetOf(NoteCommand(2))));
    }
    void expectTwoOnAStandingConnection()
    {
        ASSERT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Net.m_Server->GetClientCount() == 0; }));
        EXPECT_EQ(m_Numbers, (std::vector<int>{1, 2}));
        EXPECT_EQ(m_States, (std::vector<int>(2, zet::TcpConnection::kEstablished)));
        EXPECT_EQ(m_Answers, 2);
    }

    std::vector<int> m_Numbers;
    std::vector<int> m_States;
    int m_Answers = 0;
    NoteAnalyser m_Analyser;
    test::Loopback m_Net;
    Plain m_Peer;
};

TEST_F(LastBytes, AnEndShowsWhenTheCommandsBeforeItAreHandled)
{
    m_Peer.end();
    expectTwoOnAStandingConnection();
}

TEST_F(LastBytes, AResetShowsWhenTheCommandsBeforeItAreHandled)
{
    m_Peer.reset();
    expectTwoOnAStandingConnection();
}

TEST_F(LastBytes, BytesAfterUrgentDataAreRead)
{
    ASSERT_TRUE(m_Peer.send({'!'}, MSG_OOB));
    ASSERT_TRUE(m_Peer.send(packetOf(NoteCommand(3))));
    EXPECT_TRUE(tickUntil(m_Net.m_System, [&] { return m_Numbers == std::vector<int>{1, 2, 3}; }));
}

} // namespace
