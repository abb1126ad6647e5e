#include "framework/stream.h"

#include "framework/buffer.h"

#include <limits>

namespace zet
{

const unsigned char* Input::view(int)
{
    return nullptr;
}

int Input::skip(int size)
{
    unsigned char taken[512];
    int total = 0;
    while (total < size)
    {
        const int left = size - total;
        const int count = read(taken, left < static_cast<int>(sizeof taken) ? left : static_cast<int>(sizeof taken));
        if (count <= 0)
            break;
        total += count;
    }
    return total;
}

bool InputStream::read16(unsigned short& value)
{
    unsigned char bytes[2];
    if (read(bytes, sizeof bytes) != sizeof bytes)
        return false;
    value = static_cast<unsigned short>(bytes[0] | bytes[1] << 8);
    return true;
}

bool InputStream::read32(unsigned int& value)
{
    unsigned char bytes[4];
    if (read(bytes, sizeof bytes) != sizeof bytes)
        return false;
    value = 0;
    for (int i = 3; i >= 0; --i)
        value = value << 8 | bytes[i];
    return true;
}

bool OutputStream::write16(unsigned short value)
{
    const unsigned char bytes[2] = {static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8)};
    return write(bytes, sizeof bytes) == sizeof bytes;
}

bool OutputStream::write32(unsigned int value)
{
    unsigned char bytes[4];
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(value >> 8 * i);
    return write(bytes, sizeof bytes) == sizeof bytes;
}

OutputStream& operator<<(OutputStream& stream, const Uuid& id)
{
    if (stream.write(&id, sizeof id) != sizeof id)
        throw Exception(L"Uuid::operator <<", __FILE__, __LINE__);
    return stream;
}

InputStream& operator>>(InputStream& stream, Uuid& id)
{
    Uuid value;
    if (stream.read(&value, sizeof value) != sizeof value)
        throw Exception(L"Uuid::operator >>", __FILE__, __LINE__);
    id = value;
    return stream;
}

OutputStream& operator<<(OutputStream& stream, const std::vector<Uuid>& ids)
{
    if (ids.size() > static_cast<size_t>(std::numeric_limits<int>::max()))
        throw Exception(L"std::vector too long.", __FILE__, __LINE__);
    stream << Varint{ids.size()};
    for (const Uuid& id : ids)
        stream << id;
    return stream;
}

InputStream& operator>>(InputStream& stream, std::vector<Uuid>& ids)
{
    Varint count;
    stream >> count;
    if (count.m_Value > static_cast<unsigned long long>(std::numeric_limits<int>::max()))
        throw Exception(L"std::vector invalid size.", __FILE__, __LINE__);
    ids.clear();
    // The list grows with the identifiers received, not with the announced count.
    for (unsigned long long i = 0; i < count.m_Value; ++i)
    {
        Uuid id;
        stream >> id;
        ids.push_back(id);
    }
    return stream;
}

} // namespace zet
