// One command on its way: id, two addresses, payload. Owns both frame forms; the value forms are the data packager's.
//
//   stream frame    id:16le  size<<2|target<<1|from:32le  [from:16 bytes]  [target:16 bytes]  payload
//   datagram frame  id:16    the same word as a 30-bit count              [from]  [target]    payload
//
// An address travels exactly when it is not all zero.
#pragma once

#include "framework/buffer.h"
#include "framework/export.h"
#include "framework/string.h"
#include "framework/uuid.h"
#include "packaging/value_operations.h"

#include <cstring>

namespace wire
{
struct Access;
}
namespace zet
{
class InputStream;
class OutputStream;
} // namespace zet

// A payload of up to 64 KiB lives inside the object, a larger one in a heap block that only grows. The object is
// large and is meant for the stack or for reuse. Not locked: one object belongs to one thread at a time.
class COMMONGROUND_API CCmdPackager
{
public:
    // The largest payload in bytes: its size, shifted left by two, must fit 30 bits.
    static constexpr int kMaxDataSize = 0x0FFFFFFF;
    // Units that a text may have for this class to read it.
    static constexpr int kMaxTextUnits = 1000;
    // Bytes that a buffer value may have, read or written.
    static constexpr int kMaxBufferSize = 0xA00000;
    // Bytes of a stream frame in front of the payload: at least id and size word, at most both addresses too.
    static constexpr int kMinHeaderSize = 6;
    static constexpr int kMaxHeaderSize = kMinHeaderSize + 2 * static_cast<int>(sizeof(zet::Uuid));
    // Bytes of the stream frame that begins with these kMinHeaderSize bytes, payload included.
    static long long GetFrameSize(const unsigned char* header);

    // Only the bytes that Unpack may take for addresses are cleared: old stack contents must not leave through them.
    CCmdPackager() : m_pBuffer(m_Msg + kFrontSize) { std::memset(m_pBuffer, 0, 2 * sizeof(zet::Uuid)); }
    CCmdPackager(const CCmdPackager& other) : CCmdPackager() { *this = other; }
    ~CCmdPackager() { release(); }
    // Copies id, addresses, payload and read pointer. Where memory is short the payload is left empty.
    CCmdPackager& operator=(const CCmdPackager& other);

    COMMONGROUND_VALUE_OPERATIONS
    // Six raw bytes.
    bool Write(const zet::uuid_node_t& value);
    bool Read(zet::uuid_node_t* value);
    bool Read(zet::uuid_node_t& value) { return Read(&value); }

    // Makes room for size more bytes. On failure nothing moves, the data written so far stays, and the log has been
    // told.
    bool Alloc(int size);

    void SetCmdID(unsigned short id) { m_CmdID = id; }
    unsigned short GetCmdID() const { return m_CmdID; }
    void SetFromAddress(const zet::Uuid& from) { m_FromAddress = from; }
    void SetTargetAddress(const zet::Uuid& target) { m_TargetAddress = target; }
    const zet::Uuid& GetFromAddress() const { return m_FromAddress; }
    const zet::Uuid& GetTargetAddress() const { return m_TargetAddress; }
    void SetAddress(const zet::Uuid& from, const zet::Uuid& target)
    {
        m_FromAddress = from;
        m_TargetAddress = target;
    }
    void GetAddress(zet::Uuid& from, zet::Uuid& target) const
    {
        from = m_FromAddress;
        target = m_TargetAddress;
    }

    // The first byte of the payload, valid until the next write.
    const unsigned char* GetBuffer() const { return m_pBuffer; }
    unsigned char* GetBuffer() { return m_pBuffer; }
    int GetBufferSize() const { return m_iBufSize; }
    int GetDataSize() const { return m_iDataSize; }
    int GetReadPointer() const { return m_iReadPointer; }

    // Back to the first payload byte, so that the same command can be read again.
    void Reset() { m_iReadPointer = 0; }
    // Empties the payload; id, addresses and storage stay.
    void Clear()
    {
        m_iDataSize = 0;
        m_iReadPointer = 0;
    }

    // Writes one stream frame, the whole payload whatever the read pointer. False, with the log told, where the
    // stream does not take the payload.
    bool Send(zet::OutputStream& stream) const;
    // Bytes in front of a frame in place that its sender may write: room for a packet's head, and with the longest
    // frame head a multiple of 16, so that the payload lies as its memory does.
    static constexpr int kSpareSize = 10;
    // The frame as Send() writes it, put together in front of and with the payload where that lies, and its bytes in
    // size. Null, with size untouched, where the payload is too large. The frame is the packager's memory, valid until
    // the next call that writes; const as it is, this and CCommandSocket::send() use that memory, so a packager that
    // several threads send needs a copy for each.
    unsigned char* FrameInPlace(int& size) const;
    // Reads one stream frame. False, with the log told, on a cut or oversized frame; what was read of id and
    // addresses stays, and the bytes taken from the stream are gone. Memory grows with the bytes that the stream
    // delivers, not with the size that the frame announces.
    bool Receive(zet::InputStream& stream);
    // The same for a frame at the front of size bytes in memory, which are copied and may be this packager's own; what
    // lies behind it is not looked at.
    bool Receive(const void* frame, int size);

    // Writes one datagram frame and returns its length, or 0 where it does not fit size bytes. A null buffer
    // measures. The buffer has at least two bytes.
    int Pack(void* buffer, int size) const;
    // Reads one datagram frame and returns the bytes it took, or 0. A frame with addresses comes out wrongly: the
    // addresses are taken from old storage and their bytes stay in the payload. Every peer does it this way, so a
    // command goes by datagram without addresses.
    int Unpack(const void* buffer, int size);

private:
    friend struct wire::Access;

    static constexpr int kInlineSize = 0x10000;
    // Room in front of the payload, for all that may stand in front of it on its way.
    static constexpr int kFrontSize = kSpareSize + kMaxHeaderSize;

    void release()
    {
        if (m_pBuffer != m_Msg + kFrontSize)
            delete[](m_pBuffer - kFrontSize);
    }
    bool grow(int size);
    unsigned int sizeWord() const;
    unsigned char* putHeader(unsigned char* end) const;
    bool takeFrame(const unsigned char* frame, int there);

    unsigned short m_CmdID = 0xFFFF;
    zet::Uuid m_FromAddress;
    zet::Uuid m_TargetAddress;
    unsigned char* m_pBuffer;
    int m_iBufSize = kInlineSize;
    int m_iDataSize = 0;
    int m_iReadPointer = 0;
    // Never zero-filled: a small command touches no more of it than its frame. Mutable for the room in front.
    mutable unsigned char m_Msg[kFrontSize + kInlineSize];
};

// A whole stream frame in a buffer, and back. False, with the log told, where the frame does not fit or is cut.
COMMONGROUND_API bool CCmdPackager_packageToBuffer(const CCmdPackager& package, zet::Buffer& buffer);
COMMONGROUND_API bool CCmdPackager_bufferToPackage(const zet::Buffer& buffer, CCmdPackager& package);
