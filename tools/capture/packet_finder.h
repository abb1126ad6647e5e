// Finds the packets of commands in the bytes of one direction of a connection: each is a 32-bit length and a stream
// frame of that length, or in a net session a message.
#pragma once

#include "packaging/cmd_packager.h"
#include "tools/capture/tcp_direction.h"
#include "transport/inner/net_command_view.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tools
{

// Takes what a finder finds. Offsets count the bytes of the direction from its start, gaps included; a frame's is after
// the length of its packet.
class FinderSink
{
public:
    virtual ~FinderSink() = default;
    // message is the one that carried the frame in a net session, otherwise null.
    virtual void onFrame(const CCmdPackager& frame, uint64_t offset, const NetPacketView* message) = 0;
    // A message of a net session without a command that can be read.
    virtual void onMessage(std::string_view className, uint64_t offset, uint64_t size) = 0;
    // What was lost or passed over, in words, and how many captured bytes were skipped for it.
    virtual void onNotice(const std::string& what, uint64_t offset, uint64_t skipped) = 0;
    virtual void onLoss(uint64_t size) = 0;
};

// While it is synchronised, a packet starts where the previous one ended. It is not after a start in the middle of a
// connection, after a gap over the end of a packet, and after bytes that are not a packet. Then it searches the next
// plausible packet: one whose length is that of its frame, with a known id, which a class reads exactly; or a
// Msg_NetCommand with such a frame.
//
// A direction that starts with the greeting of a net session, or in which such a Msg_NetCommand was found, is one: its
// packets start with a class name and may have any length.
class PacketFinder final : public ByteSink
{
public:
    // Longer packets are not searched. At most one incomplete packet is held.
    static constexpr uint64_t kMostPacket = 0x1000000;

    explicit PacketFinder(FinderSink& sink) : m_Sink(sink) {}

    // Forgets everything. reason is why it is not synchronised, or empty if it is.
    void start(const std::string& reason);
    void onBytes(std::string_view bytes) override;
    void onGap(uint64_t size) override;
    // Searches what is held and reports what is left.
    void finish();

    size_t held() const { return m_Held.size(); }

private:
    void findAll(bool isEnd);
    void search(bool isEnd);
    bool step();
    void give(std::string_view packet);
    // The size of the packet that starts here, with its length word; 0 if none can, or if bytes are too few to say.
    uint64_t sizeHere() const;
    // Whether the bytes are too few to say where the first packet ends.
    bool isHeadCut(std::string_view bytes) const;
    void lose(const std::string& reason);
    void compact();
    std::string_view waiting() const { return std::string_view(m_Held).substr(m_At); }
    void drop(size_t size);

    FinderSink& m_Sink;
    std::string m_Held;
    size_t m_At = 0;
    // The offset of the first held byte.
    uint64_t m_Begin = 0;
    // Bytes that belong to a packet with a gap in it.
    uint64_t m_ToPass = 0;
    bool m_IsSynchronised = true;
    bool m_IsSession = false;
    // The next packet is the first of the direction.
    bool m_IsAtStart = true;
    // While it is not synchronised: why, and the captured bytes skipped since.
    std::string m_Reason;
    uint64_t m_Skipped = 0;
};

} // namespace tools
