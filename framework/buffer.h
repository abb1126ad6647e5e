// An owned block of bytes with a size.
#pragma once

#include "framework/platform/export.h"

#include <vector>

namespace zet
{

class InputStream;
class OutputStream;

class COMMONGROUND_API Buffer
{
public:
    Buffer() = default;
    // A block of so many bytes, all zero; a negative size counts as 0.
    explicit Buffer(int size) { setBufferSize(size); }

    int getBufferSize() const { return static_cast<int>(m_Bytes.size()); }
    // Resizes, keeping what fits; new bytes are zero. Returns the size that it got: the old one if size is negative
    // or memory is short.
    int setBufferSize(int size);
    unsigned char* getBuffer() { return m_Bytes.data(); }
    const unsigned char* getBuffer() const { return m_Bytes.data(); }

    friend bool operator==(const Buffer& a, const Buffer& b) { return a.m_Bytes == b.m_Bytes; }

private:
    std::vector<unsigned char> m_Bytes;
};

// An unsigned number in groups of seven bits, the lowest first; the streams' own short form.
struct Varint
{
    unsigned long long m_Value = 0;
};

// The streams' own forms: a Varint size and the bytes; the groups of the number. A short read or write throws
// Exception.
COMMONGROUND_API OutputStream& operator<<(OutputStream& stream, const Buffer& buffer);
COMMONGROUND_API InputStream& operator>>(InputStream& stream, Buffer& buffer);
COMMONGROUND_API OutputStream& operator<<(OutputStream& stream, const Varint& number);
COMMONGROUND_API InputStream& operator>>(InputStream& stream, Varint& number);

} // namespace zet
