#include "net/quic/inner/frames.h"

#include <algorithm>

namespace zet::inner
{

namespace
{

constexpr unsigned char kPing = 0x01;
constexpr unsigned char kNewConnectionId = 0x18;
constexpr size_t kResetTokenSize = 16;
constexpr size_t kPathDataSize = 8;

// Reads frames as ngtcp2 does, and stops at an invalid one.
class Walk
{
public:
    Walk(const unsigned char* at, size_t size) : m_At(at), m_Left(size) {}

    bool isAtEnd() const { return m_Left == 0; }
    const unsigned char* at() const { return m_At; }
    bool skip(uint64_t size)
    {
        if (size > m_Left)
            return false;
        m_At += size;
        m_Left -= static_cast<size_t>(size);
        return true;
    }
    bool takeByte(unsigned char& byte)
    {
        byte = m_Left > 0 ? *m_At : 0;
        return skip(1);
    }
    bool takeNumber(uint64_t& number)
    {
        const size_t size = m_Left > 0 ? size_t{1} << (*m_At >> 6) : 1;
        if (size > m_Left)
            return false;
        number = *m_At & 0x3F;
        for (size_t i = 1; i < size; ++i)
            number = number << 8 | m_At[i];
        return skip(size);
    }
    bool skipNumbers(uint64_t count)
    {
        uint64_t ignored = 0;
        while (count > 0 && takeNumber(ignored))
            --count;
        return count == 0;
    }
    bool skipBlock()
    {
        uint64_t size = 0;
        return takeNumber(size) && skip(size);
    }
    bool skipRest() { return skip(m_Left); }

    bool skipAck(bool hasCounts)
    {
        uint64_t ranges = 0;
        // The remaining bytes bound the loop.
        return skipNumbers(2) && takeNumber(ranges) && ranges <= m_Left && skipNumbers(1 + 2 * ranges) &&
               (!hasCounts || skipNumbers(3));
    }
    bool skipStream(unsigned char type)
    {
        return skipNumbers(type & 0x04 ? 2 : 1) && (type & 0x02 ? skipBlock() : skipRest());
    }
    // Skips a frame after its type; not for NEW_CONNECTION_ID.
    bool skipFrame(unsigned char type)
    {
        switch (type)
        {
        case 0x00:
        case kPing:
        case 0x1E:
            return true;
        case 0x02:
        case 0x03:
            return skipAck(type == 0x03);
        case 0x04:
            return skipNumbers(3);
        case 0x05:
        case 0x11:
        case 0x15:
            return skipNumbers(2);
        case 0x06:
            return skipNumbers(1) && skipBlock();
        case 0x07:
        case 0x31:
            return skipBlock();
        case 0x10:
        case 0x12:
        case 0x13:
        case 0x14:
        case 0x16:
        case 0x17:
        case 0x19:
            return skipNumbers(1);
        case 0x1A:
        case 0x1B:
            return skip(kPathDataSize);
        case 0x1C:
            return skipNumbers(2) && skipBlock();
        case 0x1D:
            return skipNumbers(1) && skipBlock();
        case 0x30:
            return skipRest();
        default:
            // ngtcp2 treats all other types with this bit as STREAM.
            return (type & 0x08) && skipStream(type);
        }
    }

private:
    const unsigned char* m_At;
    size_t m_Left;
};

} // namespace

void QuicFrames::clean(unsigned char* payload, size_t size)
{
    Walk walk(payload, size);
    while (!walk.isAtEnd())
    {
        unsigned char* const frame = payload + (walk.at() - payload);
        unsigned char type = 0;
        walk.takeByte(type);
        if (type != kNewConnectionId)
        {
            if (!walk.skipFrame(type))
                return;
            continue;
        }
        uint64_t number = 0;
        unsigned char idSize = 0;
        if (!walk.takeNumber(number) || !walk.skipNumbers(1) || !walk.takeByte(idSize) ||
            !walk.skip(idSize + kResetTokenSize))
            return;
        if (isNew(number))
            continue;
        std::fill(frame, payload + (walk.at() - payload), static_cast<unsigned char>(0));
        *frame = kPing;
    }
}

bool QuicFrames::isNew(uint64_t number)
{
    const auto begin = m_Numbers.begin();
    const auto end = begin + static_cast<ptrdiff_t>(m_Count);
    const auto place = std::lower_bound(begin, end, number);
    if (number < m_First || (place != end && *place == number))
        return false;
    if (m_Count == kMostNumbers)
    {
        // The lowest number is dropped, and all below it count as known; so a number that is lower still cannot be
        // kept.
        if (place == begin)
            return false;
        m_First = m_Numbers[0] + 1;
        std::move(begin + 1, place, begin);
        *(place - 1) = number;
    }
    else
    {
        std::move_backward(place, end, end + 1);
        *place = number;
        ++m_Count;
    }
    // Numbers that directly follow the known ones need not be kept.
    size_t known = 0;
    while (known < m_Count && m_Numbers[known] == m_First)
    {
        ++known;
        ++m_First;
    }
    std::move(begin + static_cast<ptrdiff_t>(known), begin + static_cast<ptrdiff_t>(m_Count), begin);
    m_Count -= known;
    return true;
}

} // namespace zet::inner
