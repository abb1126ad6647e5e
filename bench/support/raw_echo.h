// The floor of the socket benchmark: a loopback connection driven by bare epoll, with the same packets.
#pragma once

#include <cstddef>
#include <vector>

namespace bench
{

// A connected pair of sockets over the loopback.
struct RawPair
{
    RawPair();
    ~RawPair();
    RawPair(const RawPair&) = delete;
    RawPair& operator=(const RawPair&) = delete;

    int m_Near = -1;
    int m_Far = -1;
};

// One end with its epoll: whole packets in, bytes out.
class RawEnd
{
public:
    explicit RawEnd(int socket);
    ~RawEnd();
    RawEnd(const RawEnd&) = delete;
    RawEnd& operator=(const RawEnd&) = delete;

    // Waits until something can be read and reads it. False at the end of the connection.
    bool fill();
    // The next whole packet with its length word, or null; valid until the next fill().
    const unsigned char* next(size_t& size);
    // Appends bytes to the pending ones.
    void put(const void* data, size_t size);
    // Sends the pending bytes, blocking.
    bool flush();
    size_t waiting() const { return m_Out.size(); }

private:
    int m_Socket;
    int m_Epoll;
    std::vector<unsigned char> m_In;
    size_t m_Begin = 0;
    size_t m_End = 0;
    std::vector<unsigned char> m_Out;
};

} // namespace bench
