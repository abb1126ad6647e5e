// An owned block of bytes with a size.
#pragma once

#include "framework/export.h"

#include <vector>

namespace zet
{

class InputStream;
class OutputStream;

// A block of bytes: a plain value; a copy copies the bytes.
class COMMONGROUND_API Buffer
{
public:
    Buffer() = default;
    // A block of size zero bytes; a negative size counts as 0.
    explicit Buffer(int size) { setBufferSize(size); }

    // The size in bytes.
    int getBufferSize() const { return static_cast<int>(m_Bytes.size()); }
    // Resizes and keeps what fits; new bytes are zero. Returns the resulting size: the old one if size is negative or
    // there is no memory.
    int setBufferSize(int size);
    // Replaces all bytes by size others, which are not in this buffer. False, and nothing changed, if size is negative
    // or there is no memory.
    bool assign(const unsigned char* bytes, int size);
    // The first byte; may be null if the size is 0. Valid until the size changes.
    unsigned char* getBuffer() { return m_Bytes.data(); }
    const unsigned char* getBuffer() const { return m_Bytes.data(); }

    friend bool operator==(const Buffer& a, const Buffer& b) { return a.m_Bytes == b.m_Bytes; }

private:
    std::vector<unsigned char> m_Bytes;
};

// An unsigned number in groups of seven bits, lowest first: the short form of the streams.
struct Varint
{
    unsigned long long m_Value = 0;
};

// The stream forms: of a Buffer a Varint size and the bytes, of a Varint its groups. A short read or write throws
// Exception.
COMMONGROUND_API OutputStream& operator<<(OutputStream& stream, const Buffer& buffer);
COMMONGROUND_API InputStream& operator>>(InputStream& stream, Buffer& buffer);
COMMONGROUND_API OutputStream& operator<<(OutputStream& stream, const Varint& number);
COMMONGROUND_API InputStream& operator>>(InputStream& stream, Varint& number);

} // namespace zet
