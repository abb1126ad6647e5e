// Sockets that another process also holds open, such as a child process started meanwhile.
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace
{

using test::ClientHandle;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

// A second handle on the same socket.
class Duplicate
{
public:
    explicit Duplicate(unsigned int handle) : m_Handle(::dup(static_cast<int>(handle))) {}
    ~Duplicate() { ::close(m_Handle); }
    Duplicate(const Duplicate&) = delete;
    Duplicate& operator=(const Duplicate&) = delete;

    const int m_Handle;
};

TEST(SharedHandle, InputOfAClosedConnectionCallsNoHandler)
{
    int got = 0;
    NoteAnalyser analyser([&](CCommandSocket*, const NoteCommand&) { ++got; });
    test::Loopback net(analyser);
    const ClientHandle near = net.connect(analyser);
    ASSERT_TRUE(near);
    ClientHandle far = net.m_Server->m_Accepted.front();
    const Duplicate duplicate(far->getHandle());
    ASSERT_GE(duplicate.m_Handle, 0);
    // The object is destroyed, but its socket stays open and still receives from the peer.
    net.m_Server->m_Accepted.clear();
    far->close();
    far = ClientHandle();
    ASSERT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
    for (int i = 0; i < 3; ++i)
    {
        EXPECT_TRUE(near->send(NoteCommand(i)));
        net.m_System.tick();
        net.m_System.tick();
    }
    EXPECT_EQ(got, 0);
    EXPECT_EQ(near->getConnectionState(), zet::TcpConnection::kEstablished);
    // Others are served as before.
    const ClientHandle other = net.connect(analyser);
    ASSERT_TRUE(other);
    ASSERT_TRUE(other->send(NoteCommand(9)));
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return got == 1; }));
}

TEST(SharedHandle, AClosedPortReportsNoPendingConnections)
{
    NoteAnalyser analyser;
    test::Loopback net(analyser);
    const unsigned short port = net.m_Server->getPort();
    const Duplicate duplicate(net.m_Server->getHandle());
    ASSERT_GE(duplicate.m_Handle, 0);
    net.m_Server->close();
    const ClientHandle late = new test::Client(analyser);
    late->start(&net.m_System);
    // The backlog of the port takes the connection; it is never accepted.
    EXPECT_TRUE(late->connect(L"127.0.0.1", port, false));
    net.m_Clients.push_back(late);
    for (int i = 0; i < 3; ++i)
    {
        net.m_System.tick();
        net.m_System.tick();
    }
    EXPECT_TRUE(net.m_Server->m_Accepted.empty());
}

} // namespace
