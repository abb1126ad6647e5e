// Packets on a byte stream: a 32-bit little-endian length and that many bytes. One write is one read.
#pragma once

#include "framework/memory_stream.h"

#include <memory>
#include <span>
#include <vector>

namespace zet
{

// Reads whole packets from an Input. Memory grows with the bytes received, never with the announced length.
// A reader belongs to one thread.
class COMMONGROUND_API PacketReader
{
public:
    // The maximum bytes of a packet until setLimit(). The owner of a reader knows what its packets carry.
    static constexpr int kDefaultLimit = 0x10000025;

    PacketReader() = default;
    PacketReader(const PacketReader&) = delete;
    PacketReader& operator=(const PacketReader&) = delete;

    // Starts reading from input and discards the rest of a previous source. A source owned by handles is held until
    // detach().
    void attach(Input* input);
    // The same without a handle, for a source that contains this reader and so outlives it.
    void attachOwner(Input* input);
    // Returns the handle of the source, or null if there is none.
    Unknown::Handle_T<Input> detach();
    // Whether there is a source.
    bool isAttached() const { return m_Input != nullptr; }

    // Passes the next whole packet. Returns true with an empty stream if no packet is complete yet or no source is
    // attached; false once a length above the limit has broken the byte stream. The packet is valid until the next
    // read() or finish(), unless its source shows it and discards it before; bytes that the caller leaves unread are
    // skipped. Empty packets are skipped, at most
    // kEmptyAtOnce per call, so that a peer that sends nothing else cannot prolong a call.
    bool read(InputStream& stream);
    // The same without a stream: the packet's bytes in place, valid as long; no bytes where the stream would be empty.
    bool read(std::span<const unsigned char>& packet);
    // Whether the last read() stopped because of empty packets; another call may find a packet.
    bool hasPaused() const { return m_Empty >= kEmptyAtOnce; }
    // The empty packets that the last read() skipped.
    int getEmpty() const { return m_Empty; }
    // Skips the packet that read() has passed now, not with the next read().
    void finish();

    // Whether packets are read from this source.
    bool reads(const Input* source) const { return m_Input == source; }

    // For the owner of a source that shows its bytes in place: the packet at the start of all bytes that the source
    // holds, if read() would pass it without more of them. The owner skips it, with its length word, in the source. No
    // bytes in any other case: the packet is cut, empty or above the limit, or read() is within one.
    std::span<const unsigned char> findWhole(const Input* source, const unsigned char* bytes, int size) const
    {
        if (size <= kHeadSize || !reads(source) || m_Shown > 0 || (m_Rare && !m_Rare->m_Collected.empty()))
            return {};
        const unsigned int length = getLength(bytes);
        if (length == 0 || length > static_cast<unsigned int>(m_Limit) ||
            length > static_cast<unsigned int>(size - kHeadSize))
            return {};
        return {bytes + kHeadSize, length};
    }

    // Bytes of the length word before each packet.
    static constexpr int kHeadSize = 4;

    // Empty packets that one read() skips.
    static constexpr int kEmptyAtOnce = 256;

    // The maximum bytes of a packet, without its length word; 1 to kLargestLimit.
    static constexpr int kLargestLimit = 0x7FFFFF00;
    void setLimit(int limit) { m_Limit = limit < 1 ? 1 : limit > kLargestLimit ? kLargestLimit : limit; }
    int getLimit() const { return m_Limit; }

private:
    static unsigned int getLength(const unsigned char* head)
    {
        return head[0] | head[1] << 8 | head[2] << 16 | static_cast<unsigned int>(head[3]) << 24;
    }
    // What a reader does not need that is a part of its source, if the source shows its bytes.
    struct Rare
    {
        Unknown::Handle_T<Input> m_Owner;
        // The packet passed by a stream.
        MemoryInput m_Window;
        // A packet that the source cannot show in one piece is assembled here, including its length word.
        std::vector<unsigned char> m_Collected;
    };

    bool collect(std::span<const unsigned char>& packet);
    // Collects bytes up to the given number; false if the source has fewer.
    bool take(size_t upTo);
    Rare& rare();
    void endPacket();

    Input* m_Input = nullptr;
    std::unique_ptr<Rare> m_Rare;
    int m_Limit = kDefaultLimit;
    // Bytes of the source that the last packet still occupies.
    int m_Shown = 0;
    // The length of the next packet, if the source has shown it too.
    unsigned int m_Next = 0;
    // At most twice kEmptyAtOnce.
    unsigned short m_Empty = 0;
    bool m_HasNext = false;
    bool m_IsCollectedShown = false;
};

// Writes packets to an Output. A writer belongs to one thread.
class COMMONGROUND_API PacketWriter
{
public:
    // Bytes of the length word before each packet.
    static constexpr int kHeadSize = PacketReader::kHeadSize;

    PacketWriter() = default;
    PacketWriter(const PacketWriter&) = delete;
    PacketWriter& operator=(const PacketWriter&) = delete;

    // Starts writing to output. A sink owned by handles is held until detach(). attachOwner() holds nothing, for a sink
    // that contains this writer; detach() returns the handle, or null.
    void attach(Output* output);
    void attachOwner(Output* output);
    Unknown::Handle_T<Output> detach();
    // Whether there is a sink.
    bool isAttached() const { return m_Output != nullptr; }

    // Sends all bytes of the stream as one packet; an empty stream sends nothing. False if no sink is attached or the
    // sink does not accept everything; a part of the packet may have been sent then, and the sink must not be used
    // again.
    bool write(InputStream& stream);

    // Sends the size bytes after the first kHeadSize bytes of place as one packet, with one write; the length word is
    // written into these first bytes. The same result as write().
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
