#include "tests/impaired/link.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <netinet/in.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <queue>
#include <random>
#include <stdexcept>
#include <vector>

namespace impaired
{

namespace
{

using Clock = std::chrono::steady_clock;
using Packet = std::vector<unsigned char>;

constexpr size_t kLargestPacket = 2048;
// The maximum number of packets on one road in one direction; further ones are dropped, as in a router.
constexpr size_t kQueue = 1000;

[[noreturn]] void fail(const std::string& what)
{
    throw std::runtime_error(what + ": " + std::strerror(errno));
}

// Closed at the end of its scope.
struct Handle
{
    explicit Handle(int handle) : m_Handle(handle) {}
    ~Handle()
    {
        if (m_Handle >= 0)
            close(m_Handle);
    }
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    int m_Handle;
};

void setAddress(int asker, unsigned long request, const char* device, const std::string& address)
{
    ifreq wish{};
    std::strncpy(wish.ifr_name, device, IFNAMSIZ - 1);
    sockaddr_in value{};
    value.sin_family = AF_INET;
    inet_pton(AF_INET, address.c_str(), &value.sin_addr);
    std::memcpy(&wish.ifr_addr, &value, sizeof value);
    if (ioctl(asker, request, &wish) != 0)
        fail("no address for " + std::string(device));
}

// A TUN device in the current namespace, up and with an address. Deleted when its handle is closed.
int openDevice(int number, const std::string& address)
{
    const int tun = open("/dev/net/tun", O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (tun < 0)
        fail("/dev/net/tun");
    const std::string device = "impaired" + std::to_string(number);
    ifreq wish{};
    std::strncpy(wish.ifr_name, device.c_str(), IFNAMSIZ - 1);
    wish.ifr_flags = IFF_TUN | IFF_NO_PI;
    if (ioctl(tun, TUNSETIFF, &wish) != 0)
    {
        close(tun);
        fail("no TUN device");
    }
    const Handle asker(socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    setAddress(asker.m_Handle, SIOCSIFADDR, device.c_str(), address);
    setAddress(asker.m_Handle, SIOCSIFNETMASK, device.c_str(), "255.255.255.0");
    wish.ifr_flags = IFF_UP | IFF_RUNNING;
    if (ioctl(asker.m_Handle, SIOCSIFFLAGS, &wish) != 0)
    {
        close(tun);
        fail("the TUN device does not come up");
    }
    return tun;
}

// One direction.
class Lane
{
public:
    Lane(const Profile& profile, unsigned long seed) : m_Profile(profile), m_Random(seed) {}

    void take(Packet packet, Counts& counts)
    {
        // Every packet uses the same number of random values, whatever happens to it.
        const bool isLost = roll() < m_Profile.m_LossPercent;
        const bool isDoubled = roll() < m_Profile.m_DuplicatePercent;
        const bool isHeldBack = roll() < m_Profile.m_ReorderPercent;
        const double jitter = (roll() / 50 - 1) * m_Profile.m_Jitter;
        const double secondJitter = (roll() / 50 - 1) * m_Profile.m_Jitter;
        if (isLost || m_Waiting.size() >= kQueue)
        {
            ++counts.m_Lost;
            return;
        }
        const double delay = m_Profile.m_Delay + (isHeldBack ? m_Profile.m_HeldBack : 0);
        counts.m_HeldBack += isHeldBack;
        if (isDoubled)
        {
            ++counts.m_Doubled;
            put(packet, delay + secondJitter);
        }
        put(std::move(packet), delay + jitter);
    }

    // Delivers the packets that are due.
    void give(int end, Counts& counts)
    {
        for (const Clock::time_point now = Clock::now(); !m_Waiting.empty() && m_Waiting.top().m_Due <= now;)
        {
            const Packet& packet = m_Waiting.top().m_Packet;
            if (write(end, packet.data(), packet.size()) == static_cast<ssize_t>(packet.size()))
                ++counts.m_Passed;
            m_Waiting.pop();
        }
    }
    bool isEmpty() const { return m_Waiting.empty(); }
    Clock::time_point nextDue() const { return m_Waiting.top().m_Due; }

private:
    struct Waiting
    {
        Clock::time_point m_Due;
        long m_Number;
        Packet m_Packet;
        // The packet due first is on top; of equals the one that arrived first.
        bool operator<(const Waiting& other) const
        {
            return m_Due != other.m_Due ? m_Due > other.m_Due : m_Number > other.m_Number;
        }
    };

    // From 0 up to 100.
    double roll() { return std::uniform_real_distribution<double>(0, 100)(m_Random); }
    void put(Packet packet, double delay)
    {
        const auto wait = std::chrono::duration<double, std::milli>(delay > 0 ? delay : 0);
        m_Waiting.push(
            {Clock::now() + std::chrono::duration_cast<Clock::duration>(wait), m_Number++, std::move(packet)});
    }

    const Profile& m_Profile;
    std::mt19937_64 m_Random;
    std::priority_queue<Waiting> m_Waiting;
    long m_Number = 0;
};

} // namespace

std::string addressOf(int number, int end)
{
    return "10.77." + std::to_string(number) + '.' + std::to_string(end);
}

void enterNamespace(const std::string& name)
{
    const Handle place(open(("/run/netns/" + name).c_str(), O_RDONLY | O_CLOEXEC));
    if (place.m_Handle < 0 || setns(place.m_Handle, CLONE_NEWNET) != 0)
        fail("network namespace " + name);
}

Link::Link(const std::string& first, const std::string& second, int number, const Profile& profile, unsigned long seed)
    : m_Profile(profile), m_Seed(seed)
{
    enterNamespace(first);
    m_Ends[0] = openDevice(number, addressOf(number, 1));
    try
    {
        enterNamespace(second);
        m_Ends[1] = openDevice(number, addressOf(number, 2));
    }
    catch (...)
    {
        close(m_Ends[0]);
        throw;
    }
}

Link::~Link()
{
    close(m_Ends[0]);
    close(m_Ends[1]);
}

Counts Link::run(int stop)
{
    Counts counts;
    // Lane i leads to end i.
    Lane lanes[2] = {Lane(m_Profile, m_Seed), Lane(m_Profile, m_Seed + 1)};
    pollfd waits[3] = {{m_Ends[0], POLLIN, 0}, {m_Ends[1], POLLIN, 0}, {stop, POLLIN, 0}};
    for (;;)
    {
        timespec rest{3600, 0};
        for (const Lane& lane : lanes)
            if (!lane.isEmpty())
            {
                const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(lane.nextDue() - Clock::now());
                const long long wait = left.count() > 0 ? left.count() : 0;
                if (wait < rest.tv_sec * 1000000000LL + rest.tv_nsec)
                    rest = {static_cast<time_t>(wait / 1000000000), static_cast<long>(wait % 1000000000)};
            }
        if (ppoll(waits, 3, &rest, nullptr) < 0 && errno != EINTR)
            fail("poll");
        if (waits[2].revents)
            return counts;
        for (int from = 0; from < 2; ++from)
        {
            Packet packet(kLargestPacket);
            for (ssize_t got; (got = read(m_Ends[from], packet.data(), packet.size())) > 0;)
            {
                // IPv4 only; the system's own IPv6 packets would disturb the counts.
                if (packet[0] >> 4 == 4)
                    lanes[1 - from].take(Packet(packet.begin(), packet.begin() + got), counts);
            }
        }
        for (int to = 0; to < 2; ++to)
            lanes[to].give(m_Ends[to], counts);
    }
}

} // namespace impaired
