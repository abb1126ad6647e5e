// Packets as bytes for tests, and a source that delivers them in small steps.
#pragma once

#include "framework/stream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace test
{

using Bytes = std::vector<unsigned char>;

inline Bytes bytesOf(const std::string& text)
{
    return Bytes(text.begin(), text.end());
}

inline void put(zet::Output& output, const Bytes& bytes)
{
    ASSERT_EQ(output.write(bytes.data(), static_cast<int>(bytes.size())), static_cast<int>(bytes.size()));
}

inline Bytes packetOf(const Bytes& content)
{
    Bytes packet = {static_cast<unsigned char>(content.size()), static_cast<unsigned char>(content.size() >> 8),
                    static_cast<unsigned char>(content.size() >> 16), static_cast<unsigned char>(content.size() >> 24)};
    packet.insert(packet.end(), content.begin(), content.end());
    return packet;
}

// Shows nothing in place and delivers at most a given number of bytes at a time.
class DripInput : public zet::Input
{
public:
    explicit DripInput(int step) : m_Step(step) {}
    int available() const override { return std::min(m_Step, static_cast<int>(m_Bytes.size() - m_At)); }
    int peek(void* data, int size) override
    {
        const int count = std::min(size, available());
        if (count > 0)
            std::memcpy(data, m_Bytes.data() + m_At, static_cast<size_t>(count));
        return count;
    }
    int read(void* data, int size) override
    {
        const int count = peek(data, size);
        m_At += static_cast<size_t>(std::max(count, 0));
        return count;
    }

    Bytes m_Bytes;
    size_t m_At = 0;
    int m_Step;
};

} // namespace test
