#include "net/quic/stream.h"

#include <algorithm>
#include <cstring>

namespace zet
{

int UdpStream::available() const
{
    return UdpSecureConnection::available();
}

int UdpStream::peek(void* data, int size)
{
    const int count = std::min(size, available());
    if (count <= 0)
        return 0;
    std::memcpy(data, getInput(), static_cast<size_t>(count));
    return count;
}

int UdpStream::read(void* data, int size)
{
    return skip(peek(data, size));
}

const unsigned char* UdpStream::view(int size)
{
    return available() >= size ? getInput() : nullptr;
}

int UdpStream::skip(int size)
{
    const int count = std::min(size, available());
    if (count <= 0)
        return 0;
    consume(count);
    return count;
}

int UdpStream::write(const void* data, int size)
{
    return send(data, size);
}

} // namespace zet
