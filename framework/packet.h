// Packets on a byte stream: a length word of 32 bits, little-endian, and so many bytes. One write is one read.
#pragma once

#include "framework/memory_stream.h"

#include <span>
#include <vector>

namespace zet
{

// Takes whole packets off an Input. Memory grows with the bytes that came, never with the length that was announced.
// One reader belongs to one thread.
class COMMONGROUND_API PacketReader
{
public:
    // The largest stream frame of a command: its header with two addresses, and its payload.
    static constexpr int kDefaultLimit = 38 + 0x0FFFFFFF;

    PacketReader() = default;
    PacketReader(const PacketReader&) = delete;
    PacketReader& operator=(const PacketReader&) = delete;

    // Reads from input from now on, and forgets what was left of another one. A source that handles hold is held until
    // detach().
    void attach(Input* input);
    // The same without a handle: for the source that this reader is a part of, which outlives it.
    void attachOwner(Input* input);
    // Returns the handle of the source; null where there is none.
    Unknown::Handle_T<Input> detach();
    bool isAttached() const { return m_Input != nullptr; }

    // Hands over the next whole packet, or leaves the stream empty and returns true where none is there yet or no
    // source is attached. False once the byte stream is broken, by a length above the limit. The stream shows the
    // packet only until the next read() or detach(), and what the caller leaves of it is skipped. Packets of no bytes
    // are passed over, up to kEmptyAtOnce of them by one call: a peer that sends nothing else gets no longer turn.
    bool read(InputStream& stream);
    // The same without a stream: the packet's bytes where they lie, valid as long; none where the stream would be
    // empty.
    bool read(std::span<const unsigned char>& packet);
    // Whether the last read() handed nothing over because of empty packets; another call may find more.
    bool hasPaused() const { return m_HasPaused; }

    static constexpr int kEmptyAtOnce = 256;

    // Bytes that a packet may have, without its length word; 1 to kLargestLimit.
    static constexpr int kLargestLimit = 0x7FFFFF00;
    void setLimit(int limit) { m_Limit = limit < 1 ? 1 : limit > kLargestLimit ? kLargestLimit : limit; }
    int getLimit() const { return m_Limit; }

private:
    bool collect(std::span<const unsigned char>& packet);
    // Takes bytes until so many are collected; false where the source runs dry before.
    bool take(size_t upTo);

    Input* m_Input = nullptr;
    Unknown::Handle_T<Input> m_Owner;
    // The packet that a stream was given.
    MemoryInput m_Window;
    int m_Limit = kDefaultLimit;
    // Bytes of the source that the packet last handed over still takes up.
    int m_Shown = 0;
    // The length of the packet behind it, where the source has shown that too; else -1.
    long long m_Next = -1;
    // A packet whose source cannot show it in one piece is put together here, its length word included.
    std::vector<unsigned char> m_Collected;
    bool m_IsCollectedShown = false;
    bool m_HasPaused = false;
};

// Puts packets on an Output. One writer belongs to one thread.
class COMMONGROUND_API PacketWriter
{
public:
    // Bytes in front of each packet.
    static constexpr int kHeadSize = 4;

    PacketWriter() = default;
    PacketWriter(const PacketWriter&) = delete;
    PacketWriter& operator=(const PacketWriter&) = delete;

    // As with PacketReader.
    void attach(Output* output);
    void attachOwner(Output* output);
    Unknown::Handle_T<Output> detach();
    bool isAttached() const { return m_Output != nullptr; }

    // Takes all that the stream holds and sends it as one packet; an empty stream sends none. False where no sink is
    // attached or the sink does not take it all; then part of a packet may be out, and the sink is of no use for more.
    bool write(InputStream& stream);

    // Sends the size bytes behind the first kHeadSize bytes of place as one packet, with one write; the head is
    // written into place. The same result as write().
    bool writePlaced(unsigned char* place, int size)
    {
        if (!m_Output)
            return false;
        if (size <= 0)
            return true;
        putHead(place, size);
        return m_Output->write(place, kHeadSize + size) == kHeadSize + size;
    }

private:
    static void putHead(unsigned char* place, int size)
    {
        for (int i = 0; i < kHeadSize; ++i)
            place[i] = static_cast<unsigned char>(static_cast<unsigned int>(size) >> 8 * i);
    }

    Output* m_Output = nullptr;
    Unknown::Handle_T<Output> m_Owner;
};

} // namespace zet
