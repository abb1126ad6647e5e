#include "framework/memory_stream.h"

#include <algorithm>
#include <cstring>

namespace zet
{

int MemoryInput::peek(void* data, int size)
{
    const int count = std::clamp(size, 0, m_Size);
    // Source and target may overlap.
    if (count > 0)
        std::memmove(data, m_At, static_cast<size_t>(count));
    return count;
}

int MemoryInput::read(void* data, int size)
{
    return skip(peek(data, size));
}

int MemoryInput::skip(int size)
{
    const int count = std::clamp(size, 0, m_Size);
    m_At += count;
    m_Size -= count;
    return count;
}

Unknown::Handle_T<MemoryStream> MemoryStream::createInstance()
{
    return new MemoryStream;
}

void MemoryStream::clear()
{
    m_Bytes.clear();
    m_ReadAt = 0;
}

int MemoryStream::peek(void* data, int size)
{
    const int count = size < available() ? size : available();
    if (count <= 0)
        return 0;
    std::memcpy(data, m_Bytes.data() + m_ReadAt, static_cast<size_t>(count));
    return count;
}

int MemoryStream::read(void* data, int size)
{
    const int count = peek(data, size);
    m_ReadAt += static_cast<size_t>(count);
    return count;
}

const unsigned char* MemoryStream::view(int size)
{
    return size >= 0 && size <= available() ? m_Bytes.data() + m_ReadAt : nullptr;
}

int MemoryStream::skip(int size)
{
    const int count = size < available() ? size : available();
    if (count <= 0)
        return 0;
    m_ReadAt += static_cast<size_t>(count);
    return count;
}

int MemoryStream::write(const void* data, int size)
{
    if (size <= 0)
        return 0;
    if (m_ReadAt == m_Bytes.size())
    {
        clear();
    }
    else if (m_ReadAt >= m_Bytes.size() / 2 && m_Bytes.size() + static_cast<size_t>(size) > m_Bytes.capacity())
    {
        // Moves at most as many bytes as were read, so a store that is never empty stays small at low cost.
        m_Bytes.erase(m_Bytes.begin(), m_Bytes.begin() + static_cast<std::ptrdiff_t>(m_ReadAt));
        m_ReadAt = 0;
    }
    // getSize() is an int: bytes beyond its range are refused.
    if (m_Bytes.size() - m_ReadAt + static_cast<size_t>(size) > 0x7FFFFFFFu)
        return 0;
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    m_Bytes.insert(m_Bytes.end(), bytes, bytes + size);
    return size;
}

} // namespace zet
