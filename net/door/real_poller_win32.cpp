#include "net/door/real_poller.h"

#include "net/door/addresses.h"

#include <atomic>
#include <system_error>
#include <vector>

namespace zet::inner
{

namespace
{

// A UDP socket that is connected to itself. The system waits for sockets only, so wake() sends a byte to this one.
SOCKET makeAlarm()
{
    // A program that this process starts must not inherit it.
    const SOCKET alarm =
        ::WSASocketW(AF_INET, SOCK_DGRAM, IPPROTO_UDP, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
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
    // The next call on an ended or broken connection returns its end or fault. POLLHUP alone does not mean that there
    // is space for output.
    if (events & POLLHUP)
        ready |= kReadyInput;
    if (events & (POLLERR | POLLNVAL))
        ready |= kReadyInput | kReadyOutput;
    return ready;
}

// The system keeps no list of watched sockets, and each call reports all that are ready. So each call asks for the
// wanted flags only, and a reported flag is no longer wanted.
class ListPoller final : public Poller
{
public:
    ListPoller() { m_Entries.push_back({makeAlarm(), nullptr}); }
    ~ListPoller() override { ::closesocket(m_Entries.front().m_Socket); }

    bool add(Handle handle, Watch& watch, unsigned char ready) override;
    void want(Watch& watch, unsigned char ready) override { watch.m_Wanted |= ready; }
    void reportInputAgain(Watch& watch) override { want(watch, kReadyInput); }
    void remove(Watch& watch) override;
    bool wait(std::chrono::microseconds time) override;
    void wake() override;

private:
    struct Entry
    {
        SOCKET m_Socket;
        Watch* m_Watch;
    };

    void endWake()
    {
        char byte;
        while (::recv(m_Entries.front().m_Socket, &byte, 1, 0) > 0)
            continue;
        // Clear the flag after the read. In the other order a wake() between the two would set the flag, the read would
        // take its byte, and every later wake() would do nothing.
        m_IsWoken.exchange(false);
    }

    // The first entry is the alarm, whose watch is null.
    std::vector<Entry> m_Entries;
    // The sockets of one call of WSAPoll(), and their watches.
    std::vector<WSAPOLLFD> m_Asked;
    std::vector<Watch*> m_AskedFor;
    std::atomic<bool> m_IsWoken{false};
};

bool ListPoller::add(Handle handle, Watch& watch, unsigned char ready)
{
    watch.m_Wanted = ready;
    watch.m_Place = static_cast<int>(m_Entries.size());
    m_Entries.push_back({static_cast<SOCKET>(handle), &watch});
    return true;
}

void ListPoller::remove(Watch& watch)
{
    Entry& place = m_Entries[static_cast<size_t>(watch.m_Place)];
    place = m_Entries.back();
    place.m_Watch->m_Place = watch.m_Place;
    m_Entries.pop_back();
}

bool ListPoller::wait(std::chrono::microseconds time)
{
    m_Asked.clear();
    m_AskedFor.clear();
    for (const Entry& entry : m_Entries)
        if (const int wanted = entry.m_Watch ? entry.m_Watch->m_Wanted : int{kReadyInput})
        {
            m_Asked.push_back({entry.m_Socket, eventsOf(wanted), 0});
            m_AskedFor.push_back(entry.m_Watch);
        }
    const int count = ::WSAPoll(m_Asked.data(), static_cast<ULONG>(m_Asked.size()), toMilliseconds(time));
    if (count <= 0)
        return count == 0;
    for (size_t i = 0; i < m_Asked.size(); ++i)
    {
        const unsigned char ready = readyOf(m_Asked[i].revents);
        if (ready == 0)
            continue;
        Watch* const watch = m_AskedFor[i];
        if (!watch)
        {
            endWake();
            continue;
        }
        watch->m_Wanted &= static_cast<unsigned char>(~ready);
        watch->onReady(ready);
    }
    return true;
}

void ListPoller::wake()
{
    // Two threads that send and read at once can make a send fail although the socket has space. The flag of a byte
    // that was not sent must not stay set: every later wake() would do nothing.
    const char byte = 0;
    while (!m_IsWoken.exchange(true))
    {
        if (::send(m_Entries.front().m_Socket, &byte, 1, 0) == 1)
            return;
        const bool isBusy = ::WSAGetLastError() == WSAEWOULDBLOCK;
        m_IsWoken = false;
        if (!isBusy)
            return;
    }
}

} // namespace

std::unique_ptr<Poller> makeRealPoller()
{
    return std::make_unique<ListPoller>();
}

} // namespace zet::inner
