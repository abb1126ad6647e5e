#include "framework/buffer.h"

#include "framework/stream.h"

#include <new>

namespace zet
{

namespace
{

// Ten groups of seven bits hold 64.
constexpr int kMaxGroups = 10;

} // namespace

int Buffer::setBufferSize(int size)
{
    if (size >= 0)
    {
        try
        {
            m_Bytes.resize(static_cast<size_t>(size));
        }
        catch (const std::bad_alloc&)
        {
            // The block is unchanged; the returned size shows it.
        }
    }
    return getBufferSize();
}

bool Buffer::assign(const unsigned char* bytes, int size)
{
    if (size < 0)
        return false;
    try
    {
        m_Bytes.assign(bytes, bytes + size);
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

OutputStream& operator<<(OutputStream& stream, const Varint& number)
{
    unsigned char groups[kMaxGroups];
    int count = 0;
    unsigned long long rest = number.m_Value;
    do
    {
        const unsigned char more = rest > 0x7F ? 0x80 : 0;
        groups[count++] = static_cast<unsigned char>((rest & 0x7F) | more);
        rest >>= 7;
    } while (rest);
    if (stream.write(groups, count) != count)
        throw Exception(L"Varint::operator <<", __FILE__, __LINE__);
    return stream;
}

InputStream& operator>>(InputStream& stream, Varint& number)
{
    unsigned long long value = 0;
    for (int group = 0; group < kMaxGroups; ++group)
    {
        unsigned char byte = 0;
        if (stream.read(&byte, 1) != 1)
            throw Exception(L"Varint::operator >>", __FILE__, __LINE__);
        // Only one bit of the last group fits in 64 bits.
        if (group == kMaxGroups - 1 && byte > 1)
            break;
        value |= static_cast<unsigned long long>(byte & 0x7F) << (7 * group);
        if (!(byte & 0x80))
        {
            number.m_Value = value;
            return stream;
        }
    }
    throw Exception(L"Varint invalid size.", __FILE__, __LINE__);
}

OutputStream& operator<<(OutputStream& stream, const Buffer& buffer)
{
    const int size = buffer.getBufferSize();
    stream << Varint{static_cast<unsigned long long>(size)};
    if (stream.write(buffer.getBuffer(), size) != size)
        throw Exception(L"Buffer::operator <<", __FILE__, __LINE__);
    return stream;
}

InputStream& operator>>(InputStream& stream, Buffer& buffer)
{
    Varint size;
    stream >> size;
    // The announced size reserves nothing before the bytes have arrived.
    if (size.m_Value > static_cast<unsigned long long>(stream.available()))
        throw Exception(L"Buffer invalid size.", __FILE__, __LINE__);
    const int bytes = static_cast<int>(size.m_Value);
    if (buffer.setBufferSize(bytes) != bytes || stream.read(buffer.getBuffer(), bytes) != bytes)
        throw Exception(L"Buffer::operator >>", __FILE__, __LINE__);
    return stream;
}

} // namespace zet
