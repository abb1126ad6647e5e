#include "transport/net/inner/poller.h"

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

// News of one system call.
constexpr int kBatch = 256;
// News of one look; more of them wait for the next one.
constexpr int kNewsPerLook = 16384;

// Edges: the system tells what has changed, and a socket that was left half read is its owner's business.
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
    // A read ends in front of urgent data as it does where nothing is left.
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

} // namespace

struct Poller::State
{
    bool control(int operation, int handle, Watch* watch, uint32_t events) const
    {
        epoll_event event{};
        event.events = events;
        event.data.ptr = watch;
        return ::epoll_ctl(m_Poll, operation, handle, &event) == 0;
    }
    void tell(Watch& watch, unsigned char ready);
    void hear()
    {
        uint64_t count;
        while (::read(m_Alarm, &count, sizeof count) < 0 && errno == EINTR)
            continue;
        // Not before: the read would take away what a call in between has written, and leave its flag for ever. This
        // way such a call is one of those that the present sleep ends for.
        m_IsWoken.exchange(false);
    }

    const Descriptor m_Poll{::epoll_create1(EPOLL_CLOEXEC)};
    const Descriptor m_Alarm{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    std::atomic<bool> m_IsWoken{false};
};

Poller::Poller() : m_State(std::make_unique<State>())
{
    if (!m_State->control(EPOLL_CTL_ADD, m_State->m_Alarm, nullptr, EPOLLIN))
        throw std::system_error(errno, std::generic_category());
}

Poller::~Poller() = default;

bool Poller::add(Handle handle, Watch& watch, unsigned char ready)
{
    watch.m_Place = handle;
    watch.m_Wanted = ready;
    return m_State->control(EPOLL_CTL_ADD, handle, &watch, eventsOf(ready));
}

void Poller::want(Watch& watch, unsigned char ready)
{
    // Room for output is wanted seldom. Of input the next edge comes by itself.
    if (!(ready & kReadyOutput) && (watch.m_Wanted & ready) == ready)
        return;
    watch.m_Wanted |= ready;
    m_State->control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
}

void Poller::tellInputAgain(Watch& watch)
{
    // Whatever is ready is an edge to a watch that was changed.
    m_State->control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
}

void Poller::remove(Watch& watch)
{
    // Closing alone would leave the watch in place where a child process has the socket, too.
    m_State->control(EPOLL_CTL_DEL, watch.m_Place, &watch, 0);
}

void Poller::State::tell(Watch& watch, unsigned char ready)
{
    // Room that nobody waits for would end a sleep with each datagram that leaves.
    if (ready & watch.m_Wanted & kReadyOutput)
    {
        watch.m_Wanted &= static_cast<unsigned char>(~kReadyOutput);
        control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
    }
    watch.onReady(ready);
}

bool Poller::wait(unsigned int milliseconds)
{
    constexpr unsigned int kLongest = std::numeric_limits<int>::max();
    int time = static_cast<int>(std::min(milliseconds, kLongest));
    epoll_event news[kBatch];
    for (int told = 0; told < kNewsPerLook; told += kBatch, time = 0)
    {
        const int count = ::epoll_wait(m_State->m_Poll, news, kBatch, time);
        for (int i = 0; i < count; ++i)
            if (auto* const watch = static_cast<Watch*>(news[i].data.ptr))
                m_State->tell(*watch, readyOf(news[i].events));
            else
                m_State->hear();
        if (count < kBatch)
            return count >= 0 || told > 0;
    }
    return true;
}

void Poller::wake()
{
    if (m_State->m_IsWoken.exchange(true))
        return;
    const uint64_t one = 1;
    while (::write(m_State->m_Alarm, &one, sizeof one) < 0 && errno == EINTR)
        continue;
}

} // namespace zet::inner
