// The inner side of both packagers, for the value forms alone: room at the write position, bytes at the read
// position. Everything is inline, since every value of every command passes here.
#pragma once

#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <optional>
#include <type_traits>

namespace wire
{

static_assert(std::endian::native == std::endian::little,
              "the wire holds the id of a datagram, the units of nodes and of texts as they lie in the memory of a "
              "little-endian machine: another one would send other bytes");

struct Access
{
    // The write position if size bytes are free there without growing, else null; nobody is told.
    template <class P>
    static unsigned char* freeRoom(P& packager, int size)
    {
        return packager.m_iBufSize - packager.m_iDataSize >= size ? storage(packager) + packager.m_iDataSize : nullptr;
    }
    // The write position with room for size bytes, or null, and then the log has been told.
    template <class P>
    static unsigned char* room(P& packager, int size)
    {
        if (packager.m_iBufSize - packager.m_iDataSize < size && !packager.Alloc(size))
            return nullptr;
        return storage(packager) + packager.m_iDataSize;
    }
    // Where in the packager's storage these bytes lie, or nothing for bytes of another place.
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

    // Bytes not yet read: none where a datagram's addresses have moved the read pointer past the data.
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
        // The storage is never null. Told so, the compiler tests the bytes left alone, not the pointer as well.
        if (!packager.m_pBuffer)
            __builtin_unreachable();
        return packager.m_pBuffer;
    }
};

} // namespace wire
