#include "packaging/cmd_packager.h"

#include "framework/inner/fast_paths.h"
#include "framework/log.h"
#include "framework/memory_stream.h"
#include "framework/peer_log.h"
#include "packaging/wire/value_form.h"

#include <algorithm>
#include <array>
#include <new>

namespace
{

constexpr int kAddressSize = static_cast<int>(sizeof(zet::Uuid));

// memmove(), without a call for the size of the most frequent commands.
void copyPayload(unsigned char* to, const unsigned char* from, size_t size)
{
    using Piece = std::array<unsigned char, 16>;
    if (size < sizeof(Piece) || size > 2 * sizeof(Piece))
    {
        std::memmove(to, from, size);
        return;
    }
    // Both are read before one is written; they overlap where the size is below the sum.
    Piece first;
    Piece last;
    std::memcpy(&first, from, sizeof first);
    std::memcpy(&last, from + size - sizeof last, sizeof last);
    std::memcpy(to, &first, sizeof first);
    std::memcpy(to + size - sizeof last, &last, sizeof last);
}

// Logs an error and whistles: a failed frame is a serious fault. Within the limit of lines about peers.
template <class... Args>
bool refuse(const wchar_t* pattern, const Args&... args)
{
    if (!zet::PeerLog::takesLine())
        return false;
    zet::Log::error(pattern, args...);
    zet::Log::whistle(false);
    return false;
}

// Reads a frame in memory step by step, for what takeFrame() does not take. Not inline: it is rare, and its objects
// would make each Receive() longer.
[[gnu::noinline, gnu::cold]] bool receiveInSteps(CCmdPackager& packager, const void* frame, int size)
{
    zet::MemoryInput input(frame, size);
    zet::InputStream stream(&input);
    return packager.Receive(stream);
}

} // namespace

COMMONGROUND_DEFINE_VALUE_OPERATIONS(CCmdPackager)

bool CCmdPackager::Write(const zet::uuid_node_t& value)
{
    return wire::writeScalar(*this, value);
}

bool CCmdPackager::Read(zet::uuid_node_t* value)
{
    return wire::readScalar(*this, value);
}

CCmdPackager& CCmdPackager::operator=(const CCmdPackager& other)
{
    if (this == &other)
        return *this;
    Clear();
    m_CmdID = other.m_CmdID;
    m_Addresses = other.m_Addresses;
    if (Alloc(other.m_iDataSize) && Write(other.m_pBuffer, other.m_iDataSize))
        m_iReadPointer = other.m_iReadPointer;
    return *this;
}

bool CCmdPackager::Alloc(int size)
{
    return m_iBufSize - m_iDataSize >= size || grow(size);
}

bool CCmdPackager::grow(int size) const
{
    size = std::max(size, 0);
    if (kMaxDataSize - m_iDataSize < size)
        return refuse(L"Command Package extends max length limit(%d)", kMaxDataSize);
    const int want = storageFor(m_iDataSize + size);
    const unsigned char* const payload = m_pBuffer;
    if (isShown() && want == kInlineSize)
    {
        useInside();
        std::memcpy(m_pBuffer, payload, static_cast<size_t>(m_iDataSize));
        return true;
    }
    unsigned char* block =
        new (std::nothrow) unsigned char[static_cast<size_t>(kFrontSize) + static_cast<size_t>(want)];
    if (!block)
        return refuse(L"Error: malloc(%d) error!", want);
    std::memcpy(block + kFrontSize, payload, static_cast<size_t>(m_iDataSize));
    release();
    m_pBuffer = block + kFrontSize;
    m_iBufSize = want;
    return true;
}

// Bytes of a header with this size word.
inline int CCmdPackager::headerSizeOf(unsigned int word)
{
    constexpr int kSizes[] = {kMinHeaderSize, kMinHeaderSize + kAddressSize, kMinHeaderSize + kAddressSize,
                              kMaxHeaderSize};
    return kSizes[word & kHasAddress];
}

inline unsigned int CCmdPackager::sizeWord() const
{
    return static_cast<unsigned int>(m_iDataSize) << 2 | (m_Addresses.m_From.isNull() ? 0 : kHasFrom) |
           (m_Addresses.m_Target.isNull() ? 0 : kHasTarget);
}

long long CCmdPackager::GetFrameSize(const unsigned char* header)
{
    const unsigned int word = sizeWordOf(header);
    return headerSizeOf(word) + static_cast<long long>(word >> 2);
}

// Writes the stream frame's header so that it ends at end; returns its first byte.
inline unsigned char* CCmdPackager::putHeader(unsigned char* end) const
{
    // The usual header, without addresses.
    if (m_Addresses.m_From.isNull() && m_Addresses.m_Target.isNull())
        return putIdAndSize(end - kMinHeaderSize, static_cast<unsigned int>(m_iDataSize) << 2);
    return putHeaderWithAddresses(end);
}

// The id and the size word at begin.
inline unsigned char* CCmdPackager::putIdAndSize(unsigned char* begin, unsigned int word) const
{
    for (int i = 0; i < 2; ++i)
        begin[i] = static_cast<unsigned char>(m_CmdID >> 8 * i);
    for (int i = 0; i < 4; ++i)
        begin[2 + i] = static_cast<unsigned char>(word >> 8 * i);
    return begin;
}

// Not inline: few commands have addresses.
[[gnu::noinline]] unsigned char* CCmdPackager::putHeaderWithAddresses(unsigned char* end) const
{
    const unsigned int word = sizeWord();
    unsigned char* const begin = putIdAndSize(end - headerSizeOf(word), word);
    unsigned char* at = begin + kMinHeaderSize;
    if (word & kHasFrom)
    {
        std::memcpy(at, &m_Addresses.m_From, kAddressSize);
        at += kAddressSize;
    }
    if (word & kHasTarget)
        std::memcpy(at, &m_Addresses.m_Target, kAddressSize);
    return begin;
}

bool CCmdPackager::Send(zet::OutputStream& stream) const
{
    if (m_iDataSize < 0 || m_iDataSize > kMaxDataSize)
        return false;
    unsigned char header[kMaxHeaderSize];
    unsigned char* const end = header + kMaxHeaderSize;
    const unsigned char* const begin = putHeader(end);
    // Not checked: a stream that fails here fails at the payload too.
    stream.write(begin, static_cast<int>(end - begin));
    if (m_iDataSize > 0 && stream.write(m_pBuffer, m_iDataSize) != m_iDataSize)
        return refuse(L"Send Command Package error!");
    return true;
}

std::span<unsigned char> CCmdPackager::makeFrame() const
{
    if (m_iDataSize < 0 || m_iDataSize > kMaxDataSize || (isShown() && !own()))
        return {};
    unsigned char* const frame = putHeader(m_pBuffer);
    return {frame, m_pBuffer + m_iDataSize};
}

unsigned char* CCmdPackager::FrameInPlace(int& size) const
{
    const std::span<unsigned char> frame = makeFrame();
    if (frame.empty())
        return nullptr;
    size = static_cast<int>(frame.size());
    return frame.data();
}

// takeIdAndSize() for a frame that may have addresses, which it takes or clears. Not inline: few commands have them.
[[gnu::noinline]] const unsigned char* CCmdPackager::takeHeader(const unsigned char* frame, int there, int limit)
{
    if (there < kMinHeaderSize)
        return nullptr;
    const unsigned int word = sizeWordOf(frame);
    const int size = static_cast<int>(word >> 2);
    if (size > there - headerSizeOf(word) || size > limit)
        return nullptr;
    m_CmdID = static_cast<unsigned short>(frame[0] | frame[1] << 8);
    m_iDataSize = size;
    m_Addresses.clear();
    const unsigned char* at = frame + kMinHeaderSize;
    if (word & kHasFrom)
    {
        std::memcpy(&m_Addresses.m_From, at, kAddressSize);
        at += kAddressSize;
    }
    if (word & kHasTarget)
    {
        std::memcpy(&m_Addresses.m_Target, at, kAddressSize);
        at += kAddressSize;
    }
    return at;
}

// Copies a whole frame. False, and nothing changed, for a cut one or one that does not fit the storage: Receive() then
// reads step by step and reports which part is missing.
inline bool CCmdPackager::takeFrame(const unsigned char* frame, int there)
{
    const unsigned char* payload = takeIdAndSize(frame, there, m_iBufSize);
    if (payload)
        m_Addresses.clear();
    else
        payload = takeHeader(frame, there, m_iBufSize);
    if (!payload)
        return false;
    // The frame may be in this storage itself.
    copyPayload(m_pBuffer, payload, static_cast<size_t>(m_iDataSize));
    return true;
}

bool CCmdPackager::showWithAddresses(const void* frame, int size)
{
    const unsigned char* const payload = takeHeader(static_cast<const unsigned char*>(frame), size, kMaxDataSize);
    if (!payload)
        return false;
    showPayload(payload);
    return true;
}

bool CCmdPackager::Receive(const void* frame, int size)
{
    restart();
    return takeFrame(static_cast<const unsigned char*>(frame), size) || receiveInSteps(*this, frame, size);
}

bool CCmdPackager::Receive(zet::InputStream& stream)
{
    restart();
    const int there = stream.available();
    const unsigned char* const shown =
        zet::inner::kHasFastPaths && there >= kMinHeaderSize ? stream.view(there) : nullptr;
    if (shown && takeFrame(shown, there))
    {
        stream.skip(static_cast<int>(GetFrameSize(shown)));
        return true;
    }
    if (!stream.read16(m_CmdID))
        return refuse(L"Error:Read Command ID error!!");
    unsigned int word = 0;
    // The number is the command's id: the text has always been so.
    if (!stream.read32(word))
        return refuse(L"Error:Read Command Size(%d) error!", m_CmdID);

    m_Addresses.m_From = zet::Uuid();
    if ((word & kHasFrom) && stream.read(&m_Addresses.m_From, kAddressSize) != kAddressSize)
        return refuse(L"Error:Read Command(%d) Src Address error!", m_CmdID);
    m_Addresses.m_Target = zet::Uuid();
    if ((word & kHasTarget) && stream.read(&m_Addresses.m_Target, kAddressSize) != kAddressSize)
        return refuse(L"Error:Read Command(%d) Dest Address error!", m_CmdID);

    const int size = static_cast<int>(word >> 2);
    if (size > kMaxDataSize)
        return Alloc(size);
    while (m_iDataSize < size)
    {
        // What the stream has is read at once; beyond that, storage at most doubles the bytes that arrived.
        const int present = std::max({stream.available(), m_iDataSize, kInlineSize});
        const int part = std::min(size - m_iDataSize, present);
        if (!Alloc(part))
            return false;
        const int got = stream.read(m_pBuffer + m_iDataSize, part);
        if (got != part)
        {
            m_iDataSize = 0;
            return refuse(L"Error:Read Command(%d) data error!", m_CmdID);
        }
        m_iDataSize += got;
    }
    return true;
}

int CCmdPackager::Pack(void* buffer, int size) const
{
    if (m_iDataSize < 0 || m_iDataSize > kMaxDataSize)
        return 0;
    unsigned char* const out = static_cast<unsigned char*>(buffer);
    const int limit = out ? size : 0x7FFFFFFF;
    int used = 0;
    const auto put = [&](const void* bytes, int count)
    {
        if (count > limit - used)
            return false;
        if (out && count > 0)
            std::memcpy(out + used, bytes, static_cast<size_t>(count));
        used += count;
        return true;
    };

    // The id is written without a check of size: the caller provides at least two bytes.
    if (out)
        std::memcpy(out, &m_CmdID, sizeof m_CmdID);
    used = static_cast<int>(sizeof m_CmdID);

    const unsigned int word = sizeWord() & wire::kMask30;
    unsigned char count[4];
    if (!put(count, wire::encode30(word, count)))
        return 0;
    if ((word & kHasFrom) && !put(&m_Addresses.m_From, sizeof m_Addresses.m_From))
        return 0;
    if ((word & kHasTarget) && !put(&m_Addresses.m_Target, sizeof m_Addresses.m_Target))
        return 0;
    return put(m_pBuffer, m_iDataSize) ? used : 0;
}

int CCmdPackager::Unpack(const void* buffer, int size)
{
    restart();
    const unsigned char* const in = static_cast<const unsigned char*>(buffer);
    // One byte is not a datagram; refuse it here, so that the id is not read past the end.
    if (size < 2)
        return 0;
    std::memcpy(&m_CmdID, in, sizeof m_CmdID);
    int used = static_cast<int>(sizeof m_CmdID);

    if (used >= size)
        return 0;
    const int more = in[used] >> 6;
    unsigned int word = in[used++] & 0x3F;
    if (more > size - used)
        return 0;
    for (int i = 0; i < more; ++i)
        word = word << 8 | in[used++];

    // The addresses are taken from old storage, not from the input: every peer reads them so.
    zet::Uuid* const addresses[] = {&m_Addresses.m_From, &m_Addresses.m_Target};
    for (int i = 0; i < 2; ++i)
    {
        if (!(word & (kHasFrom << i)))
        {
            *addresses[i] = zet::Uuid();
            continue;
        }
        if (size - used < static_cast<int>(sizeof(zet::Uuid)))
            return 0;
        std::memcpy(addresses[i], m_pBuffer + m_iReadPointer, sizeof(zet::Uuid));
        m_iReadPointer += static_cast<int>(sizeof(zet::Uuid));
    }

    const int payload = static_cast<int>(word >> 2);
    if (payload > size - used)
        return 0;
    if (payload > 0)
    {
        if (!Alloc(payload))
            return 0;
        std::memmove(m_pBuffer, in + used, static_cast<size_t>(payload));
        m_iDataSize += payload;
    }
    return used + m_iDataSize;
}

bool CCmdPackager_packageToBuffer(const CCmdPackager& package, zet::Buffer& buffer)
{
    try
    {
        const auto store = zet::MemoryStream::createInstance();
        zet::OutputStream stream(store.get());
        if (!package.Send(stream))
            return false;
        const int size = store->getSize();
        return buffer.setBufferSize(size) == size && store->read(buffer.getBuffer(), size) == size;
    }
    catch (const zet::Exception& exception)
    {
        exception.report();
        return false;
    }
}

bool CCmdPackager_bufferToPackage(const zet::Buffer& buffer, CCmdPackager& package)
{
    try
    {
        const auto store = zet::MemoryStream::createInstance();
        if (store->write(buffer.getBuffer(), buffer.getBufferSize()) != buffer.getBufferSize())
            return false;
        zet::InputStream stream(store.get());
        return package.Receive(stream);
    }
    catch (const zet::Exception& exception)
    {
        if (zet::PeerLog::takesLine())
            exception.report();
        return false;
    }
}
