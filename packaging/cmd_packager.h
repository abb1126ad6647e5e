// One command in transit: id, two addresses, payload. Owns both frame forms; the value forms are the data packager's.
//
//   stream frame    id:16le  size<<2|target<<1|from:32le  [from:16 bytes]  [target:16 bytes]  payload
//   datagram frame  id:16    the same word as a 30-bit count              [from]  [target]    payload
//
// An address is in the frame exactly when it is not all zero.
#pragma once

#include "framework/buffer.h"
#include "framework/export.h"
#include "framework/string.h"
#include "framework/uuid.h"
#include "packaging/value_operations.h"

#include <cstring>
#include <span>

namespace wire
{
struct Access;
}
namespace zet
{
class InputStream;
class OutputStream;
} // namespace zet

// A payload of up to 64 KiB is inside the object, a larger one in a heap block that only grows. The object is large:
// keep it on the stack, or reuse it. Not locked: one object belongs to one thread at a time.
class COMMONGROUND_API CCmdPackager
{
public:
    // The largest payload in bytes: its size, shifted left by two, must fit 30 bits.
    static constexpr int kMaxDataSize = 0x0FFFFFFF;
    // Units that a text may have for this class to read it.
    static constexpr int kMaxTextUnits = 1000;
    // Bytes that a buffer value may have, read or written.
    static constexpr int kMaxBufferSize = 0xA00000;
    // Bytes of a stream frame before the payload: at least id and size word, at most both addresses too.
    static constexpr int kMinHeaderSize = 6;
    static constexpr int kMaxHeaderSize = kMinHeaderSize + 2 * static_cast<int>(sizeof(zet::Uuid));
    // Bytes of the stream frame that starts with these kMinHeaderSize bytes, payload included.
    static long long GetFrameSize(const unsigned char* header);

    // Empty: no payload, no addresses.
    CCmdPackager() : m_pBuffer(m_Msg + kFrontSize) { useInside(); }
    CCmdPackager(const CCmdPackager& other) : CCmdPackager() { *this = other; }
    ~CCmdPackager() { release(); }
    // Copies id, addresses, payload and read pointer. Where memory is short the payload is left empty.
    CCmdPackager& operator=(const CCmdPackager& other);

    COMMONGROUND_VALUE_OPERATIONS
    // Six raw bytes.
    bool Write(const zet::uuid_node_t& value);
    bool Read(zet::uuid_node_t* value);
    bool Read(zet::uuid_node_t& value) { return Read(&value); }

    // Reserves space for size more bytes. On failure logs an error; nothing moves, and the data written so far
    // stays.
    bool Alloc(int size);

    // The command's id; 0xFFFF at first.
    void SetCmdID(unsigned short id) { m_CmdID = id; }
    unsigned short GetCmdID() const { return m_CmdID; }
    // The addresses of the frame: sender and target; all zero for none.
    void SetFromAddress(const zet::Uuid& from) { m_Addresses.m_From = from; }
    void SetTargetAddress(const zet::Uuid& target) { m_Addresses.m_Target = target; }
    const zet::Uuid& GetFromAddress() const { return m_Addresses.m_From; }
    const zet::Uuid& GetTargetAddress() const { return m_Addresses.m_Target; }
    void SetAddress(const zet::Uuid& from, const zet::Uuid& target)
    {
        m_Addresses.m_From = from;
        m_Addresses.m_Target = target;
    }
    void GetAddress(zet::Uuid& from, zet::Uuid& target) const
    {
        from = m_Addresses.m_From;
        target = m_Addresses.m_Target;
    }

    // The first byte of the payload, valid until the next write. The caller may change the payload through the pointer
    // that is not const.
    const unsigned char* GetBuffer() const { return m_pBuffer; }
    unsigned char* GetBuffer()
    {
        if (isShown() && !own())
            restart();
        return m_pBuffer;
    }
    // Bytes of the payload that fit without a new allocation.
    int GetBufferSize() const { return isShown() ? storageFor(m_iDataSize) : m_iBufSize; }
    // Bytes of the payload.
    int GetDataSize() const { return m_iDataSize; }
    // Bytes of the payload that were read.
    int GetReadPointer() const { return m_iReadPointer; }

    // Moves the read pointer to the first payload byte, so that the same command can be read again.
    void Reset() { m_iReadPointer = 0; }
    // Empties the payload; id, addresses and storage stay.
    void Clear()
    {
        m_iDataSize = 0;
        m_iReadPointer = 0;
    }

    // Writes one stream frame, the whole payload whatever the read pointer. False, after an error in
    // the log, if the stream does not take the payload.
    bool Send(zet::OutputStream& stream) const;
    // Bytes before the frame in place that the caller may overwrite (the packet length). Together with the longest
    // frame header they are a multiple of 16, so that the payload is aligned as its memory is.
    static constexpr int kSpareSize = 10;
    // The frame as Send() writes it, in this packager's memory: the header is written directly before the payload. Sets
    // size to its bytes. Null, with size unchanged, if the payload is too large. Valid until the next call that writes.
    // This and CCommandSocket::send() write to that memory although they are const, so a packager that several threads
    // send needs a copy for each.
    unsigned char* FrameInPlace(int& size) const;
    // Reads one stream frame. False, after an error in the log, on a cut or oversized frame; what was read of
    // id and addresses stays, and the bytes taken from the stream are lost. Memory grows with the bytes that the
    // stream delivers, not with the size that the frame announces.
    bool Receive(zet::InputStream& stream);
    // The same for a frame at the start of size bytes in memory, which are copied and may be this packager's own; bytes
    // after the frame are ignored.
    bool Receive(const void* frame, int size);

    // Writes one datagram frame and returns its length, or 0 if it does not fit size bytes. A null buffer
    // measures. The buffer has at least two bytes.
    int Pack(void* buffer, int size) const;
    // Reads one datagram frame and returns the bytes it took, or 0. A frame with addresses is read wrongly: the
    // addresses are taken from old storage and their bytes stay in the payload. Every peer does it this way, so a
    // command is sent by datagram without addresses.
    int Unpack(const void* buffer, int size);

private:
    friend struct wire::Access;

    // The lowest two bits of the size word.
    static constexpr unsigned int kHasFrom = 1;
    static constexpr unsigned int kHasTarget = 2;
    static constexpr unsigned int kHasAddress = kHasFrom | kHasTarget;

    static constexpr int kInlineSize = 0x10000;
    // Space before the payload for the frame header and the caller's spare bytes.
    static constexpr int kFrontSize = kSpareSize + kMaxHeaderSize;

    // Storage grows in whole steps; the size of the last one is the largest payload.
    static int storageFor(int size)
    {
        const int steps = (size + kInlineSize - 1) / kInlineSize * kInlineSize;
        return size == 0 ? kInlineSize : steps < kMaxDataSize ? steps : kMaxDataSize;
    }
    struct Shown
    {
    };
    // Without storage of its own, as if an empty payload were shown.
    explicit CCmdPackager(Shown) : m_pBuffer(m_Msg + kFrontSize), m_iBufSize(0) {}
    // wire::Access::show() for a frame that may have addresses.
    bool showWithAddresses(const void* frame, int size);
    // After the header is taken.
    void showPayload(const unsigned char* payload)
    {
        // Only read through this pointer: see isShown().
        m_pBuffer = const_cast<unsigned char*>(payload);
        m_iBufSize = 0;
    }
    // FrameInPlace() for a caller that needs the size in a register. Empty if the payload is too large.
    std::span<unsigned char> makeFrame() const;
    bool isShown() const { return m_iBufSize == 0; }
    // Clear(), and storage of its own.
    void restart()
    {
        Clear();
        if (isShown())
            useInside();
    }
    // Copies a shown payload. False, after an error in the log, if memory is short.
    bool own() const { return grow(0); }
    // Only the bytes that Unpack may take for addresses are cleared: old stack contents must not leave through them.
    void useInside() const
    {
        m_pBuffer = m_Msg + kFrontSize;
        m_iBufSize = kInlineSize;
        std::memset(m_pBuffer, 0, 2 * sizeof(zet::Uuid));
    }
    void release() const
    {
        if (m_pBuffer != m_Msg + kFrontSize && !isShown())
            delete[](m_pBuffer - kFrontSize);
    }
    bool grow(int size) const;
    static int headerSizeOf(unsigned int word);
    unsigned int sizeWord() const;
    unsigned char* putHeader(unsigned char* end) const;
    unsigned char* putIdAndSize(unsigned char* begin, unsigned int word) const;
    unsigned char* putHeaderWithAddresses(unsigned char* end) const;
    // The size word of a stream frame, after the id.
    static unsigned int sizeWordOf(const unsigned char* frame)
    {
        return frame[2] | frame[3] << 8 | frame[4] << 16 | static_cast<unsigned int>(frame[5]) << 24;
    }
    // Takes id and size of a whole frame without addresses, the usual one, and returns its payload; leaves the
    // addresses. Null, and nothing changed, for a frame with addresses, a cut one or a payload above the limit.
    const unsigned char* takeIdAndSize(const unsigned char* frame, int there, int limit)
    {
        if (there < kMinHeaderSize)
            return nullptr;
        const unsigned int word = sizeWordOf(frame);
        const int size = static_cast<int>(word >> 2);
        if ((word & kHasAddress) != 0 || size > there - kMinHeaderSize || size > limit)
            return nullptr;
        m_CmdID = static_cast<unsigned short>(frame[0] | frame[1] << 8);
        m_iDataSize = size;
        return frame + kMinHeaderSize;
    }
    const unsigned char* takeHeader(const unsigned char* frame, int there, int limit);
    bool takeFrame(const unsigned char* frame, int there);

    unsigned short m_CmdID = 0xFFFF;
    // Both are cleared by whole 16-byte stores: reading a command loads each address by one load, which would have to
    // wait for two shorter stores.
    struct Addresses
    {
        Addresses() { clear(); }
        void clear() { std::memset(static_cast<void*>(this), 0, sizeof *this); }

        zet::Uuid m_From;
        zet::Uuid m_Target;
    };
    Addresses m_Addresses;
    // Mutable: a shown payload is copied when it is first framed in place.
    mutable unsigned char* m_pBuffer;
    // 0 for a shown payload, whose memory belongs to others: without free bytes, whatever writes asks for storage.
    mutable int m_iBufSize = kInlineSize;
    int m_iDataSize = 0;
    int m_iReadPointer = 0;
    // Never zero-filled: a small command touches no more of it than its frame. Mutable for the space before it.
    mutable unsigned char m_Msg[kFrontSize + kInlineSize];
};

// A whole stream frame in a buffer, and back. False, after an error in the log, if the frame does not fit or is cut.
COMMONGROUND_API bool CCmdPackager_packageToBuffer(const CCmdPackager& package, zet::Buffer& buffer);
COMMONGROUND_API bool CCmdPackager_bufferToPackage(const zet::Buffer& buffer, CCmdPackager& package);
