// Decodes frames from a recording as its bytes arrive: streams of frames, packets of TCP connections, datagrams.
#pragma once

#include "tools/command_counts.h"
#include "tools/json_text.h"
#include "tools/pack_types.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

class CCmdPackager;

namespace tools
{

enum class Framing
{
    kStream,   // stream frames back to back
    kPackets,  // each after the 32-bit little-endian length of the connection's packets
    kDatagram, // the input is one datagram frame
    kUdpStream // datagram frames, each after its signed 16-bit little-endian length, as a connection over UDP has them
};

// Called for each frame and for each error with one JSON object as a line without its end, valid during the call, and
// whether the object has an "error".
using Tell = std::function<void(std::string_view line, bool isError)>;

// Reports each frame as soon as it is complete. Holds at most the bytes of one frame, as they arrive, whatever a length
// announces; input that cannot be a frame is skipped without being held.
//
// An error is an object with "error" and the offset of the bytes concerned. Among packets decoding continues with the
// next packet after an error, and in a stream over UDP after a frame that cannot be read; elsewhere an error ends the
// input, since the start of the next frame is unknown.
class FrameDecoder
{
public:
    FrameDecoder(Framing framing, Tell tell) : m_Framing(framing), m_Tell(std::move(tell)) {}

    // Opens the messages of packs, and tunnels in tunnels. Not owned.
    void setPackTypes(const PackTypes* types) { m_PackTypes = types; }
    // Counts commands instead of reporting them, and does not read their fields. Not owned.
    void setCounts(CommandCounts* counts) { m_Counts = counts; }
    // Called with each command before it is reported.
    using TakeFrame = std::function<void(const CCmdPackager& frame)>;
    void setTakeFrame(TakeFrame take) { m_TakeFrame = std::move(take); }
    // The next bytes of the input, in pieces of any size.
    void add(std::string_view bytes);
    // Ends the input: reports truncated or extra bytes. Nothing may be added after it.
    void finish();

    // Bytes of an incomplete frame.
    size_t held() const { return m_Held.size(); }

private:
    bool step();
    bool stepStream();
    bool stepPackets();
    bool stepDatagram();
    bool stepUdpStream();
    std::string_view waiting() const { return std::string_view(m_Held).substr(m_At); }
    uint64_t offset() const { return m_Begin + m_At; }
    void tellFailure(uint64_t offset, const std::string& what);
    bool tellStreamFrame(std::string_view frame, uint64_t offset);
    void tellFrame(const CCmdPackager& frame, const uint64_t* offset);
    void pass(uint64_t size);
    void finishPackets();

    Framing m_Framing;
    Tell m_Tell;
    const PackTypes* m_PackTypes = nullptr;
    CommandCounts* m_Counts = nullptr;
    TakeFrame m_TakeFrame;
    JsonText m_Line;
    std::string m_Held;
    // How many of the held bytes are decoded, and the offset of the held bytes in the input.
    size_t m_At = 0;
    uint64_t m_Begin = 0;
    // Bytes still to be skipped: the rest of a packet, or everything after a datagram's frame or an error.
    uint64_t m_ToPass = 0;
    bool m_IsOver = false;
    // Of the packet being skipped: the offset of its frame, and its length.
    uint64_t m_PacketOffset = 0;
    uint64_t m_PacketLength = 0;
    // The end of a datagram's frame; 0 before one was read.
    uint64_t m_DatagramEnd = 0;
    // The size of the input so far.
    uint64_t m_Size = 0;
};

// A recording that is raw or hexadecimal text. It is text if its first kDecidingBytes bytes, or all if there are fewer,
// are hexadecimal digits and white space. In a raw stream frame the size word would then announce more than 37,000,000
// bytes, and in a datagram frame these bytes contain the head's version, which is neither a digit nor white space.
class Recording
{
public:
    static constexpr size_t kDecidingBytes = 8;

    Recording(Framing framing, Tell tell) : m_Decoder(framing, tell), m_Tell(std::move(tell)) {}

    void setPackTypes(const PackTypes* types) { m_Decoder.setPackTypes(types); }
    void setCounts(CommandCounts* counts) { m_Decoder.setCounts(counts); }
    void setTakeFrame(FrameDecoder::TakeFrame take) { m_Decoder.setTakeFrame(std::move(take)); }
    void add(std::string_view content);
    void finish();

private:
    void addText(std::string_view text);
    void tellError(std::string_view what);

    FrameDecoder m_Decoder;
    Tell m_Tell;
    // Input that is too short to decide by.
    std::string m_Undecided;
    bool m_IsDecided = false;
    bool m_IsText = false;
    // The first digit of a byte, or -1.
    int m_High = -1;
    uint64_t m_Characters = 0;
    // A character other than a digit or white space ends the text.
    bool m_IsOver = false;
};

} // namespace tools
