// A UDP connection with a readable and a writable side.
#pragma once

#include "framework/stream.h"
#include "net/quic/connection.h"

namespace zet
{

// Reading and writing never wait. What is read comes from the same place as that which receive() gives.
class COMMONGROUND_API UdpStream : public UdpSecureConnection, public IO
{
public:
    int available() const override;
    int peek(void* data, int size) override;
    int read(void* data, int size) override;
    const unsigned char* view(int size) override;
    int skip(int size) override;
    // As send().
    int write(const void* data, int size) override;
};

} // namespace zet
