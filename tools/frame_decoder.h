// Frames out of a recording as its bytes come: streams of frames, packets as TCP connections carry them, datagrams.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace tools
{

enum class Framing
{
    kStream,  // stream frames back to back
    kPackets, // each after the 32-bit little-endian length of the connection's packets
    kDatagram // one datagram frame an input
};

// Called with each frame's description and with each error, one JSON object each.
using Tell = std::function<void(const nlohmann::ordered_json&)>;

// Tells each frame as soon as it is whole. Holds the bytes of one frame at most, and those as they come, whatever a
// length announces; what cannot be a frame is passed over without being held.
//
// An error is an object with "error" and the offset of the bytes that it is about. In packets the next one is looked at
// after an error, elsewhere an error ends the input: nothing says where the next frame begins.
class FrameDecoder
{
public:
    FrameDecoder(Framing framing, Tell tell) : m_Framing(framing), m_Tell(std::move(tell)) {}

    // The next bytes of the input, in pieces of any size.
    void add(std::string_view bytes);
    // The end of the input: tells what is cut or left over. Nothing may be added after it.
    void finish();

    // Bytes that wait for the rest of their frame.
    size_t held() const { return m_Held.size(); }

private:
    bool step();
    bool stepStream();
    bool stepPackets();
    bool stepDatagram();
    std::string_view waiting() const { return std::string_view(m_Held).substr(m_At); }
    uint64_t offset() const { return m_Begin + m_At; }
    void tellFailure(uint64_t offset, const std::string& what);
    bool tellStreamFrame(std::string_view frame, uint64_t offset);
    void pass(uint64_t size);
    void finishPackets();

    Framing m_Framing;
    Tell m_Tell;
    std::string m_Held;
    // How much of the held bytes is done with, and where in the input they begin.
    size_t m_At = 0;
    uint64_t m_Begin = 0;
    // Bytes to come that are passed over: the rest of a packet, all after a datagram's frame or an error.
    uint64_t m_ToPass = 0;
    bool m_IsOver = false;
    // Of the packet that is being passed over: where its frame begins and its length.
    uint64_t m_PacketOffset = 0;
    uint64_t m_PacketLength = 0;
    // Where a datagram's frame ends; 0 before one was read.
    uint64_t m_DatagramEnd = 0;
    // Bytes of the input so far.
    uint64_t m_Size = 0;
};

// A recording that is raw or hexadecimal text. It is text where its first kDecidingBytes, or all if there are fewer,
// are hexadecimal digits and white space: in a raw frame the size word would then announce more than 37,000,000 bytes,
// and in a datagram's the head's version stands there, which is no such character.
class Recording
{
public:
    static constexpr size_t kDecidingBytes = 8;

    Recording(Framing framing, Tell tell) : m_Decoder(framing, tell), m_Tell(std::move(tell)) {}

    void add(std::string_view content);
    void finish();

private:
    void addText(std::string_view text);

    FrameDecoder m_Decoder;
    Tell m_Tell;
    // Content that is not enough to decide by.
    std::string m_Undecided;
    bool m_IsDecided = false;
    bool m_IsText = false;
    // The first half of a byte, or -1.
    int m_High = -1;
    uint64_t m_Characters = 0;
    // A character that is no digit ends the text.
    bool m_IsOver = false;
};

} // namespace tools
