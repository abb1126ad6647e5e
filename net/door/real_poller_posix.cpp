#include "net/door/real_poller.h"

#include "framework/inner/fast_paths.h"
#include "net/inner/fetch.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <system_error>

namespace zet::inner
{

namespace
{

// Events of one system call.
constexpr int kBatch = 256;
// Events that one look() reports at most; the rest waits for the next one.
constexpr int kEventsPerLook = 16384;

// Edge-triggered: the system reports changes only. The owner of a socket that was not read to the end must read on
// without an event.
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
    // The next call on a broken socket returns its fault.
    if (events & (EPOLLERR | EPOLLHUP))
        return kReadyInput | kReadyOutput | kReadyTail;
    unsigned char ready = 0;
    if (events & EPOLLIN)
        ready |= kReadyInput;
    if (events & EPOLLOUT)
        ready |= kReadyOutput;
    // A read stops before urgent data as if nothing were left.
    if (events & (EPOLLRDHUP | EPOLLPRI))
        ready |= kReadyInput | kReadyTail;
    return ready;
}

// Not std::system_error, by whose symbols a program would take longer to load.
[[noreturn]] void failBySystem()
{
    throw std::runtime_error(std::generic_category().message(errno).c_str());
}

class Descriptor
{
public:
    explicit Descriptor(int value) : m_Value(value)
    {
        if (value < 0)
            failBySystem();
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
    bool wait(std::chrono::microseconds time) override;
    void wake() override;

private:
    using Time = std::chrono::time_point<std::chrono::steady_clock, std::chrono::microseconds>;
    static constexpr Time kNoTime{};

    bool control(int operation, int handle, void* watch, uint32_t events) const
    {
        epoll_event event{};
        event.events = events;
        event.data.ptr = watch;
        return ::epoll_ctl(m_Poll, operation, handle, &event) == 0;
    }
    void report(Watch& watch, unsigned char ready);
    void loadAhead(std::span<const epoll_event> events) const;
    // Reports pending events, or waits for the first ones for this time, without an end if it is negative. False if the
    // system reported none because its call failed. Any event except that of the timer sets hasEvents.
    bool look(int milliseconds, bool& hasEvents);
    // Ensures that the timer ends a sleep after this time at the latest. Returns the end of this time, or kNoTime if
    // the timer cannot be set.
    Time arm(std::chrono::microseconds time);
    static Time getNow() { return std::chrono::time_point_cast<Time::duration>(std::chrono::steady_clock::now()); }
    void endWake()
    {
        uint64_t count;
        while (::read(m_Alarm, &count, sizeof count) < 0 && errno == EINTR)
            continue;
        // Clear the flag after the read. In the other order a wake() between the two would set the flag, the read would
        // take its count, and every later wake() would do nothing.
        m_IsWoken.exchange(false);
    }

    const Descriptor m_Poll{::epoll_create1(EPOLL_CLOEXEC)};
    const Descriptor m_Alarm{::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
    // Edge-triggered, so it is never read. Its event refers to this object; that of the alarm is null.
    const Descriptor m_Timer{::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)};
    std::atomic<bool> m_IsWoken{false};
    // The time at which the timer ends, by getNow(); kNoTime if it is not armed.
    Time m_TimerEnd = kNoTime;
    // Whether an event ended the last sleep.
    bool m_IsBusy = false;
};

EpollPoller::EpollPoller()
{
    if (!control(EPOLL_CTL_ADD, m_Alarm, nullptr, EPOLLIN) || !control(EPOLL_CTL_ADD, m_Timer, this, EPOLLIN | EPOLLET))
        failBySystem();
}

bool EpollPoller::add(Handle handle, Watch& watch, unsigned char ready)
{
    watch.m_Place = static_cast<int>(handle);
    watch.m_Wanted = ready;
    return control(EPOLL_CTL_ADD, watch.m_Place, &watch, eventsOf(ready));
}

void EpollPoller::want(Watch& watch, unsigned char ready)
{
    // The next edge of input needs no call. Output is armed each time, since report() disarms it.
    if (!(ready & kReadyOutput) && (watch.m_Wanted & ready) == ready)
        return;
    watch.m_Wanted |= ready;
    control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
}

void EpollPoller::reportInputAgain(Watch& watch)
{
    // After a change of its watch, the system reports again what a socket is ready for.
    control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
}

void EpollPoller::remove(Watch& watch)
{
    // To close the socket is not enough: the system keeps the watch while a child process has the socket open too.
    control(EPOLL_CTL_DEL, watch.m_Place, &watch, 0);
}

void EpollPoller::report(Watch& watch, unsigned char ready)
{
    // Disarm output. Otherwise each datagram that leaves would end a sleep.
    if (ready & watch.m_Wanted & kReadyOutput)
    {
        watch.m_Wanted &= static_cast<unsigned char>(~kReadyOutput);
        control(EPOLL_CTL_MOD, watch.m_Place, &watch, eventsOf(watch.m_Wanted));
    }
    watch.onReady(ready);
}

void EpollPoller::loadAhead(std::span<const epoll_event> events) const
{
    for (const epoll_event& event : events)
        fetch<3>(event.data.ptr);
    for (const epoll_event& event : events)
        if (event.data.ptr && event.data.ptr != this)
            static_cast<const Watch*>(event.data.ptr)->loadAhead();
}

bool EpollPoller::look(int milliseconds, bool& hasEvents)
{
    epoll_event events[kBatch];
    for (int reported = 0; reported < kEventsPerLook; reported += kBatch, milliseconds = 0)
    {
        const int count = ::epoll_wait(m_Poll, events, kBatch, milliseconds);
        if (count > 1)
            loadAhead({events, static_cast<size_t>(count)});
        for (int i = 0; i < count; ++i)
        {
            void* const watch = events[i].data.ptr;
            hasEvents = hasEvents || watch != this;
            if (watch == this)
                m_TimerEnd = kNoTime;
            else if (watch)
                report(*static_cast<Watch*>(watch), readyOf(events[i].events));
            else
                endWake();
        }
        if (count < kBatch)
            return count >= 0 || reported > 0;
    }
    return true;
}

EpollPoller::Time EpollPoller::arm(std::chrono::microseconds time)
{
    const Time end = getNow() + time;
    // Usually an earlier sleep has armed it for an earlier time.
    if (m_TimerEnd != kNoTime && m_TimerEnd <= end)
        return end;
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    itimerspec setting{};
    setting.it_value.tv_sec = static_cast<time_t>(seconds.count());
    setting.it_value.tv_nsec = static_cast<long>(std::chrono::nanoseconds(time - seconds).count());
    if (::timerfd_settime(m_Timer, 0, &setting, nullptr) != 0)
        return kNoTime;
    m_TimerEnd = end;
    return end;
}

bool EpollPoller::wait(std::chrono::microseconds time)
{
    constexpr std::chrono::microseconds kNone{0};
    bool hasEvents = false;
    if (time == kNone)
        return look(0, hasEvents);
    // For a time limit the system sets and removes a timer, which costs more than the rest of a sleep that ends at
    // once. So a busy poller uses a timer of its own, which stays armed. An idle one makes one call per sleep.
    const Time end = kHasFastPaths && (m_IsBusy || m_TimerEnd != kNoTime) ? arm(time) : kNoTime;
    bool isGood = look(end != kNoTime ? -1 : toMilliseconds(time), hasEvents);
    const auto left = end != kNoTime && isGood && !hasEvents ? end - getNow() : kNone;
    if (left > kNone)
        isGood = look(toMilliseconds(left), hasEvents);
    m_IsBusy = hasEvents;
    return isGood;
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
