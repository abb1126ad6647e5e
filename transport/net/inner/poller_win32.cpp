#include "transport/net/inner/poller.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <system_error>
#include <vector>

namespace zet::inner
{

namespace
{

// A socket that hears itself, for want of anything else that a sleep on sockets would end for.
SOCKET makeAlarm()
{
    const SOCKET alarm = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    sockaddr_in self{};
    self.sin_family = AF_INET;
    self.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int size = sizeof self;
    u_long on = 1;
    if (alarm != INVALID_SOCKET && ::bind(alarm, reinterpret_cast<const sockaddr*>(&self), sizeof self) == 0 &&
        ::getsockname(alarm, reinterpret_cast<sockaddr*>(&self), &size) == 0 &&
        ::connect(alarm, reinterpret_cast<const sockaddr*>(&self), size) == 0 &&
        ::ioctlsocket(alarm, FIONBIO, &on) == 0)
        return alarm;
    const int fault = ::WSAGetLastError();
    if (alarm != INVALID_SOCKET)
        ::closesocket(alarm);
    throw std::system_error(fault, std::system_category());
}

short eventsOf(int ready)
{
    short events = 0;
    if (ready & kReadyInput)
        events |= POLLRDNORM;
    if (ready & kReadyOutput)
        events |= POLLWRNORM;
    return events;
}

unsigned char readyOf(short events)
{
    unsigned char ready = 0;
    if (events & POLLRDNORM)
        ready |= kReadyInput;
    if (events & POLLWRNORM)
        ready |= kReadyOutput;
    // What has ended or is broken shows when it is used. Behind an end alone there may be no room for output yet.
    if (events & POLLHUP)
        ready |= kReadyInput;
    if (events & (POLLERR | POLLNVAL))
        ready |= kReadyInput | kReadyOutput;
    return ready;
}

} // namespace

// The system keeps no list of what is watched, and tells what is ready each time that it is asked. So it is asked only
// for what is wanted, and what was told is wanted no more.
struct Poller::State
{
    struct Entry
    {
        SOCKET m_Socket;
        Watch* m_Watch;
    };

    State() { m_Entries.push_back({makeAlarm(), nullptr}); }
    ~State() { ::closesocket(m_Entries.front().m_Socket); }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    void hear()
    {
        char byte;
        while (::recv(m_Entries.front().m_Socket, &byte, 1, 0) > 0)
            continue;
        // Not before: the call would take away what a call in between has sent, and leave its flag for ever. This way
        // such a call is one of those that the present sleep ends for.
        m_IsWoken.exchange(false);
    }

    // The first one is the alarm.
    std::vector<Entry> m_Entries;
    // Of one question, and the entries that it is about.
    std::vector<WSAPOLLFD> m_Asked;
    std::vector<Watch*> m_AskedFor;
    std::atomic<bool> m_IsWoken{false};
};

Poller::Poller() : m_State(std::make_unique<State>()) {}

Poller::~Poller() = default;

bool Poller::add(Handle handle, Watch& watch, unsigned char ready)
{
    watch.m_Wanted = ready;
    watch.m_Place = static_cast<int>(m_State->m_Entries.size());
    m_State->m_Entries.push_back({handle, &watch});
    return true;
}

void Poller::want(Watch& watch, unsigned char ready)
{
    watch.m_Wanted |= ready;
}

void Poller::tellInputAgain(Watch& watch)
{
    want(watch, kReadyInput);
}

void Poller::remove(Watch& watch)
{
    State::Entry& place = m_State->m_Entries[static_cast<size_t>(watch.m_Place)];
    place = m_State->m_Entries.back();
    place.m_Watch->m_Place = watch.m_Place;
    m_State->m_Entries.pop_back();
}

bool Poller::wait(unsigned int milliseconds)
{
    auto& asked = m_State->m_Asked;
    auto& askedFor = m_State->m_AskedFor;
    asked.clear();
    askedFor.clear();
    for (const State::Entry& entry : m_State->m_Entries)
        if (const int wanted = entry.m_Watch ? entry.m_Watch->m_Wanted : int{kReadyInput})
        {
            asked.push_back({entry.m_Socket, eventsOf(wanted), 0});
            askedFor.push_back(entry.m_Watch);
        }
    constexpr unsigned int kLongest = std::numeric_limits<int>::max();
    const int count =
        ::WSAPoll(asked.data(), static_cast<ULONG>(asked.size()), static_cast<int>(std::min(milliseconds, kLongest)));
    if (count <= 0)
        return count == 0;
    for (size_t i = 0; i < asked.size(); ++i)
    {
        const unsigned char ready = readyOf(asked[i].revents);
        if (ready == 0)
            continue;
        Watch* const watch = askedFor[i];
        if (!watch)
        {
            m_State->hear();
            continue;
        }
        watch->m_Wanted &= static_cast<unsigned char>(~ready);
        watch->onReady(ready);
    }
    return true;
}

void Poller::wake()
{
    if (m_State->m_IsWoken.exchange(true))
        return;
    const char byte = 0;
    ::send(m_State->m_Entries.front().m_Socket, &byte, 1, 0);
}

} // namespace zet::inner
