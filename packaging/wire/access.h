// The inner side of both packagers, for the value forms, the analysers and the command socket only: space at the write
// position, bytes at the read position, a frame shown or made in place.
// Everything is inline, since every value of every command passes here.
#pragma once

#include "framework/inner/fast_paths.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"

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
    // Receives a whole frame without copying its payload; a call that writes to the payload or before it copies it
    // first. False, and nothing changed, for a cut or oversized frame. REQUIRES: a packager just returned by
    // makeShown(), and a frame outside its storage that stays unchanged until the packager ends or is given another
    // payload.
    static bool show(CCmdPackager& packager, const void* frame, int size)
    {
        const unsigned char* const payload =
            packager.takeIdAndSize(static_cast<const unsigned char*>(frame), size, CCmdPackager::kMaxDataSize);
        if (!payload)
            return packager.showWithAddresses(frame, size);
        packager.showPayload(payload);
        return true;
    }
    // CCmdPackager::FrameInPlace(), with the size in a register. Empty if the payload is too large.
    static std::span<unsigned char> makeFrame(const CCmdPackager& packager) { return packager.makeFrame(); }

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
