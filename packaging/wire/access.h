// The inner side of both packagers, for the value forms and the analysers only: space at the write position, bytes at
// the read position, a frame shown in place.
// Everything is inline, since every value of every command passes here.
#pragma once

#include "framework/inner/fast_paths.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>
#include <type_traits>

namespace wire
{

using zet::inner::kHasFastPaths;

static_assert(std::endian::native == std::endian::little,
              "the wire holds the id of a datagram, the units of nodes and of texts as they are in the memory of a "
              "little-endian machine: another one would send other bytes");

struct Access
{
    // The write position if size bytes are free there without growing, else null; logs nothing.
    template <class P>
    static unsigned char* freeSpace(P& packager, int size)
    {
        return packager.m_iBufSize - packager.m_iDataSize >= size ? storage(packager) + packager.m_iDataSize : nullptr;
    }
    // The write position with space for size bytes; null, after an error in the log, if there is none.
    template <class P>
    static unsigned char* space(P& packager, int size)
    {
        if (packager.m_iBufSize - packager.m_iDataSize < size && !packager.Alloc(size))
            return nullptr;
        return storage(packager) + packager.m_iDataSize;
    }
    // The offset of these bytes in the packager's storage, or nothing if they are elsewhere.
    template <class P>
    static std::optional<size_t> placeWithin(P& packager, const void* bytes)
    {
        const uintptr_t place = reinterpret_cast<uintptr_t>(bytes) - reinterpret_cast<uintptr_t>(storage(packager));
        if (place < static_cast<uintptr_t>(packager.m_iBufSize))
            return place;
        return std::nullopt;
    }
    template <class P>
    static void wrote(P& packager, int size)
    {
        packager.m_iDataSize += size;
    }

    // A packager for show() or Receive(), without storage of its own until it needs some.
    static CCmdPackager makeShown() { return CCmdPackager(CCmdPackager::Shown()); }
    // CCmdPackager::show() for a packager of makeShown(). The usual frame has no addresses.
    static bool show(CCmdPackager& packager, const void* frame, int size)
    {
        if (size < CCmdPackager::kMinHeaderSize)
            return false;
        const unsigned char* const bytes = static_cast<const unsigned char*>(frame);
        std::uint32_t word = 0;
        std::memcpy(&word, bytes + sizeof packager.m_CmdID, sizeof word);
        const int payload = static_cast<int>(word >> 2);
        constexpr std::uint32_t kAddressBits = 3;
        if ((word & kAddressBits) != 0 ||
            payload > std::min(size - CCmdPackager::kMinHeaderSize, CCmdPackager::kMaxDataSize))
            return packager.show(frame, size);
        std::memcpy(&packager.m_CmdID, bytes, sizeof packager.m_CmdID);
        packager.m_iDataSize = payload;
        packager.showPayload(bytes + CCmdPackager::kMinHeaderSize);
        return true;
    }
    // CCmdPackager::FrameInPlace(), empty if the payload is too large.
    static std::span<unsigned char> frameInPlace(const CCmdPackager& packager) { return packager.frameInPlace(); }

    // Bytes not yet read: 0 where a datagram's addresses have moved the read pointer past the data.
    template <class P>
    static int left(const P& packager)
    {
        const int left = packager.m_iDataSize - packager.m_iReadPointer;
        return left > 0 ? left : 0;
    }
    // The read position if size bytes are left, else null.
    template <class P>
    static const unsigned char* next(P& packager, int size)
    {
        return left(packager) >= size ? storage(packager) + packager.m_iReadPointer : nullptr;
    }
    template <class P>
    static void took(P& packager, int size)
    {
        packager.m_iReadPointer += size;
    }

private:
    static unsigned char* storage(CDataPackager& packager) { return packager.m_Buffer; }
    static unsigned char* storage(CCmdPackager& packager)
    {
        // The storage is never null. With this hint the compiler tests only the bytes left, not the pointer too.
        if (!packager.m_pBuffer)
            __builtin_unreachable();
        return packager.m_pBuffer;
    }
};

} // namespace wire
