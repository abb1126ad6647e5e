// A UDP connection as a readable and writable stream.
#pragma once

#include "framework/stream.h"
#include "net/quic/connection.h"

namespace zet
{

// Reading and writing never block. The bytes are those of receive(): each byte is read once, by read(), skip() or
// receive(). The functions of IO behave as framework/stream.h says.
class COMMONGROUND_API UdpStream : public UdpSecureConnection, public IO
{
public:
    int available() const override;
    int peek(void* data, int size) override;
    int read(void* data, int size) override;
    const unsigned char* view(int size) override;
    int skip(int size) override;
    // The same as send().
    int write(const void* data, int size) override;
};

} // namespace zet
