// Finds the command in a packet of a net session without creating the message: for recordings and for tools.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>

// The class name of the message that carries a command.
inline constexpr std::string_view kNetCommandName = "Msg_NetCommand";

// A packet of a net session: its class name, and the stream frame in it if it is a Msg_NetCommand.
struct NetPacketView
{
    // Empty if the packet does not start with a class name.
    std::string_view m_ClassName;
    // 16 bytes each; null and empty without one.
    const unsigned char* m_From = nullptr;
    std::span<const unsigned char> m_Targets;
    // Null if the packet is not a whole Msg_NetCommand without further bytes.
    const unsigned char* m_Frame = nullptr;
    size_t m_FrameSize = 0;
};

// The parts of a packet, in order. Each take() returns null at its end.
class NetPacketParts
{
public:
    explicit NetPacketParts(std::span<const unsigned char> bytes) : m_Left(bytes) {}

    const unsigned char* take(size_t size)
    {
        if (size > m_Left.size())
            return nullptr;
        const unsigned char* const at = m_Left.data();
        m_Left = m_Left.subspan(size);
        return at;
    }
    bool takeVarint(size_t& value)
    {
        unsigned long long whole = 0;
        for (int shift = 0; shift < 35; shift += 7)
        {
            const unsigned char* const byte = take(1);
            if (!byte)
                return false;
            whole |= static_cast<unsigned long long>(*byte & 0x7F) << shift;
            if ((*byte & 0x80) == 0)
            {
                value = static_cast<size_t>(whole);
                return whole <= m_Left.size();
            }
        }
        return false;
    }
    bool isEmpty() const { return m_Left.empty(); }

private:
    std::span<const unsigned char> m_Left;
};

inline NetPacketView viewNetPacket(std::span<const unsigned char> packet)
{
    constexpr size_t kUuid = 16;
    constexpr unsigned char kHasFrom = 1;
    constexpr unsigned char kHasTarget = 2;

    NetPacketView view;
    NetPacketParts parts(packet);
    size_t size = 0;
    if (!parts.takeVarint(size) || size == 0)
        return view;
    view.m_ClassName = std::string_view(reinterpret_cast<const char*>(parts.take(size)), size);
    if (view.m_ClassName != kNetCommandName)
        return view;
    const unsigned char* const flags = parts.take(1);
    if (!flags || ((*flags & kHasFrom) && !(view.m_From = parts.take(kUuid))))
        return view;
    if (*flags & kHasTarget)
    {
        const unsigned char* targets = nullptr;
        if (!parts.takeVarint(size) || !(targets = parts.take(size * kUuid)))
            return view;
        view.m_Targets = {targets, size * kUuid};
    }
    if (!parts.takeVarint(size))
        return view;
    const unsigned char* const frame = parts.take(size);
    if (!frame || !parts.isEmpty())
        return view;
    view.m_Frame = frame;
    view.m_FrameSize = size;
    return view;
}
