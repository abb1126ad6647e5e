// Many connections to one port, held by another process that does what it is asked, so that only the server's time is
// measured.
#pragma once

#include <sys/types.h>

namespace bench
{

class Crowd
{
public:
    Crowd();
    // Ends the process, and with it the connections.
    ~Crowd();
    Crowd(const Crowd&) = delete;
    Crowd& operator=(const Crowd&) = delete;

    // Each returns when it is done.
    // Opens that many connections; returns how many of them there are, whether they are accepted or not.
    int connect(unsigned short port, int count);
    // Sends an echo's packet on every step-th connection, beginning with the first-th.
    void send(int first, int step);
    // Reads all that has arrived, on all connections.
    void drain();
    void closeAll();

    // The packet of a CCmdServerEcho.
    static constexpr int kPacket = 35;
    static const unsigned char* packet();

private:
    struct Order
    {
        char m_What;
        int m_First;
        int m_Second;
    };
    int ask(const Order& order);
    [[noreturn]] static void obey(int orders);

    int m_Orders = -1;
    pid_t m_Process = -1;
};

// As many open files as the system allows this process.
void raiseFileLimit();

// A server by hand: accepted connections in one epoll.
class RawServer
{
public:
    RawServer();
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    unsigned short port() const { return m_Port; }
    // Accepts until there are that many.
    void accept(int count);
    void closeAll();
    // Sends a packet on each connection.
    void sendToAll(const void* packet, int size);
    // Waits, reads, cuts and decodes until that many echoes came; returns their sum.
    unsigned long handle(int count);

private:
    int m_Listener;
    int m_Epoll;
    unsigned short m_Port = 0;
    int* m_Handles;
    int m_Count = 0;
};

} // namespace bench
