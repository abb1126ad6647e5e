// Readiness of sockets, by the operating system's own means.
#pragma once

#include <asio/ip/tcp.hpp>

#include <memory>

namespace zet::inner
{

// What a socket has become ready for.
enum Ready : unsigned char
{
    kReadyInput = 1,
    kReadyOutput = 2,
    // Something may lie behind the bytes that are there of which no news come: the end, a fault, urgent data. Not every
    // system tells, or needs to.
    kReadyTail = 4
};

// A socket's place in a Poller, for as long as it is watched.
class Watch
{
public:
    // Only sets flags: no socket is closed and none is added while news are told.
    virtual void onReady(unsigned char ready) = 0;

protected:
    ~Watch() = default;

private:
    friend class Poller;

    unsigned char m_Wanted = 0;
    // The handle, or an index where the Poller keeps the list itself.
    int m_Place = 0;
};

// Tells each watch what its socket has become ready for. It surely tells again only after want(), which comes once the
// socket was read until nothing was left, or written until nothing more was taken; with edges it may tell without. One
// thread owns it; wake() is for any.
class Poller
{
public:
    using Handle = asio::ip::tcp::socket::native_handle_type;

    // Throws std::system_error where the operating system has none to give.
    Poller();
    ~Poller();
    Poller(const Poller&) = delete;
    Poller& operator=(const Poller&) = delete;

    // Tells at once what the socket is ready for already. False where the system does not watch it. Watch and socket
    // stay until remove().
    bool add(Handle handle, Watch& watch, unsigned char ready);
    // For watches that were added, these three.
    void want(Watch& watch, unsigned char ready);
    // Tells of the input that there is, and of its tail, though it may have been told before.
    void tellInputAgain(Watch& watch);
    void remove(Watch& watch);

    // Tells the news there are, or, where there are none, those that come within so many milliseconds. False where it
    // was kept from looking.
    bool wait(unsigned int milliseconds);
    // Ends the present or the next wait().
    void wake();

private:
    struct State;
    std::unique_ptr<State> m_State;
};

} // namespace zet::inner
