#include "net/door/real_poller.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <system_error>

namespace zet::inner
{

namespace
{

// Events of one system call.
constexpr int kBatch = 256;
// Events of one look; more of them wait for the next one.
constexpr int kEventsPerLook = 16384;

// Edges: the system reports what has changed, and a socket that was left half read is its owner's business.
uint32_t eventsOf(unsigned char ready)
{
    uint32_t events = EPOLLET | EPOLLRDHUP;
    if (ready & kReadyInput)
        events |= EPOLLIN | EPOLLPRI;
    if (ready & kReadyOutput)
        events |= EPOLLOUT;
    return events;
}

unsigned char readyOf(uint32_t events)
{
    // What is broken shows when it is used.
    if (events & (EPOLLERR | EPOLLHUP))
        return kReadyInput | kReadyOutput | kReadyTail;
    unsigned char ready = 0;
    if (events & EPOLLIN)
        ready |= kReadyInput;
    if (events & EPOLLOUT)
        ready |= kReadyOutput;
    // A read ends before urgent data as it does where nothing is left.
    if (events & (EPOLLRDHUP | EPOLLPRI))
        ready |= kReadyInput | kReadyTail;
    return ready;
}

class Descriptor
{
public:
    explicit Descriptor(int value) : m_Value(value)
    {
        if (value < 0)
            throw std::system_error(errno, std::generic_category());
    }
    ~Descriptor() { ::close(m_Value); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    operator int() const { return m_Value; }

private:
    const int m_Value;
};

class EpollPoller final : public Poller
{
public:
    EpollPoller();

    bool add(Handle handle, Watch& watch, unsigned char ready) override;
    void want(Watch& watch, unsigned char ready) override;
    void reportInputAgain(Watch& watch) override;
    void remove(Watch& watch) override;
    bool wait(unsigned int milliseconds) override;
    void wake() override;

private:
    bool control(int operation, int handle, Watch* watch, uint32_t events) const
    {
        epoll_event event{};
        event.events = events;
        event.data.ptr = watch;
        return ::epoll_ctl(m_Poll, operation, handle, &event) == 0;
    }
    void report(Watch& watch, unsigned char ready);
    void endWake()
    {
        uint64_t count;
        while (::read(m_Alarm, &count, sizeof count) < 0 && errno == EINTR)
            continue;
        // Clear the flag after the read: cleared first, a wake() in between would be swallowed.
        m_IsWoken.exchange(false);
    }

    const Descriptor m_Poll{::epoll_create1(EPOLL_CLOEXEC)};
    const Descriptor m_Alarm{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::atomic<bool> m_IsWoken{false};
};

EpollPoller::EpollPoller()
{
    if (!control(EPOLL_CTL_ADD, m_Alarm, nullptr, EPOLLIN))
        throw std::system_error(errno, std::generic_category());
}

bool EpollPoller::add(Handle handle, Watch& watch, unsigned char ready)
{
    watch.m_Place = static_cast<int>(handle);
    watch.m_Wanted = ready;
    return control(EPOLL_CTL_ADD, watch.m_Place, &watch, eventsOf(ready));
}

void EpollPoller::want(Watch& watch, unsigned char ready)
{
    // Space for output is wanted seldom. Of input the next edge comes by itself.
    if (!(ready & kReadyOutput) && (watch.m_Wanted & ready) == ready)
        return;
    watch.m_Wanted |= ready;
    control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
}

void EpollPoller::reportInputAgain(Watch& watch)
{
    // Whatever is ready is an edge to a watch that was changed.
    control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
}

void EpollPoller::remove(Watch& watch)
{
    // Closing alone would leave the watch in place where a child process has the socket, too.
    control(EPOLL_CTL_DEL, watch.m_Place, &watch, 0);
}

void EpollPoller::report(Watch& watch, unsigned char ready)
{
    // Space that nothing waits for would end a sleep with each datagram that leaves.
    if (ready & watch.m_Wanted & kReadyOutput)
    {
        watch.m_Wanted &= static_cast<unsigned char>(~kReadyOutput);
        control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
    }
    watch.onReady(ready);
}

bool EpollPoller::wait(unsigned int milliseconds)
{
    constexpr unsigned int kLongest = std::numeric_limits<int>::max();
    int time = static_cast<int>(std::min(milliseconds, kLongest));
    epoll_event events[kBatch];
    for (int reported = 0; reported < kEventsPerLook; reported += kBatch, time = 0)
    {
        const int count = ::epoll_wait(m_Poll, events, kBatch, time);
        for (int i = 0; i < count; ++i)
            if (auto* const watch = static_cast<Watch*>(events[i].data.ptr))
                report(*watch, readyOf(events[i].events));
            else
                endWake();
        if (count < kBatch)
            return count >= 0 || reported > 0;
    }
    return true;
}

void EpollPoller::wake()
{
    if (m_IsWoken.exchange(true))
        return;
    const uint64_t one = 1;
    while (::write(m_Alarm, &one, sizeof one) < 0 && errno == EINTR)
        continue;
}

} // namespace

std::unique_ptr<Poller> makeRealPoller()
{
    return std::make_unique<EpollPoller>();
}

} // namespace zet::inner
