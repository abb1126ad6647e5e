// A peer that vanished, by a broken line or a power failure, was never detected over TCP: an accepted connection was
// not probed, and unacknowledged bytes waited for many minutes. The test breaks the line in its own network namespace.
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <net/if.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#ifdef __linux__

namespace
{

using test::ClientHandle;
using test::Loopback;
using test::NoteAnalyser;
using test::NoteCommand;
using test::tickUntil;

int optionOf(unsigned int handle, int level, int name)
{
    int value = -1;
    socklen_t size = sizeof value;
    ::getsockopt(static_cast<int>(handle), level, name, &value, &size);
    return value;
}

TEST(Bugs, AnAcceptedConnectionIsWatched)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    ASSERT_TRUE(net.connect(analyser));
    const unsigned int handle = net.accepted()->getHandle();
    const zet::NetLimits limits;
    EXPECT_EQ(optionOf(handle, SOL_SOCKET, SO_KEEPALIVE), 1);
    EXPECT_EQ(optionOf(handle, IPPROTO_TCP, TCP_KEEPIDLE), limits.m_ProbeAfter);
    EXPECT_EQ(optionOf(handle, IPPROTO_TCP, TCP_KEEPINTVL), limits.m_ProbeEvery);
    EXPECT_EQ(optionOf(handle, IPPROTO_TCP, TCP_KEEPCNT), limits.m_Probes);
    EXPECT_EQ(optionOf(handle, IPPROTO_TCP, TCP_USER_TIMEOUT), static_cast<int>(limits.m_UnacknowledgedTime));
}

TEST(Bugs, AHostMayLeaveConnectionsUnwatched)
{
    NoteAnalyser analyser;
    Loopback net(analyser);
    zet::NetLimits limits;
    limits.m_ProbeAfter = 0;
    limits.m_UnacknowledgedTime = 0;
    net.m_Server->setLimits(limits);
    ASSERT_TRUE(net.connect(analyser));
    EXPECT_EQ(optionOf(net.accepted()->getHandle(), SOL_SOCKET, SO_KEEPALIVE), 0);
    EXPECT_EQ(optionOf(net.accepted()->getHandle(), IPPROTO_TCP, TCP_USER_TIMEOUT), 0);
}

// The loopback of the calling thread's namespace.
bool setLine(bool isUp)
{
    const int handle = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    std::strcpy(request.ifr_name, "lo");
    const bool isRead = ::ioctl(handle, SIOCGIFFLAGS, &request) == 0;
    request.ifr_flags = static_cast<short>(isUp ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP);
    const bool isSet = isRead && ::ioctl(handle, SIOCSIFFLAGS, &request) == 0;
    ::close(handle);
    return isSet;
}

// Runs on its own thread, whose namespace ends with it.
void cutLine(bool sends, bool& isSkipped)
{
    isSkipped = ::unshare(CLONE_NEWNET) != 0 || !setLine(true);
    if (isSkipped)
        return;
    NoteAnalyser analyser;
    Loopback net(analyser);
    zet::NetLimits limits;
    limits.m_ProbeAfter = 1;
    limits.m_ProbeEvery = 1;
    limits.m_Probes = 1;
    limits.m_UnacknowledgedTime = 1000;
    net.m_Server->setLimits(limits);
    ASSERT_TRUE(net.connect(analyser));
    ASSERT_TRUE(setLine(false));
    if (sends)
    {
        EXPECT_TRUE(net.accepted()->send(NoteCommand(1)));
    }
    EXPECT_TRUE(tickUntil(net.m_System, [&] { return net.m_Server->GetClientCount() == 0; }));
}

TEST(Bugs, APeerThatVanishedIsNoticed)
{
    for (const bool sends : {false, true})
    {
        bool isSkipped = false;
        std::thread(cutLine, sends, std::ref(isSkipped)).join();
        if (isSkipped)
            GTEST_SKIP() << "network namespaces are not available here";
    }
}

} // namespace

#endif
