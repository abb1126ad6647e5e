// The target of a virtual call, for compilers whose layout is known.
#pragma once

#include <cstddef>
#include <cstring>

namespace zet::inner
{

// The function that a call of this virtual member reaches for this object, to detect an override. Null if it cannot be
// determined.
template <class Class, class Function>
const void* getVirtualTarget(const Class& object, Function Class::*member)
{
#if defined(__GNUC__) && !defined(__arm64e__) &&                                                                       \
    (defined(__x86_64__) || defined(__i386__) || defined(__aarch64__) || defined(__arm__))
    // The C++ ABI of these compilers: a pointer to a virtual member is its offset in the table, in bytes, and an
    // adjustment of the object pointer. The lowest bit of the offset marks it as virtual; on ARM, where a function may
    // have an odd address, the lowest bit of the shifted adjustment.
    struct
    {
        std::ptrdiff_t m_Place;
        std::ptrdiff_t m_Adjustment;
    } parts;
    static_assert(sizeof parts == sizeof member);
    std::memcpy(&parts, &member, sizeof parts);
#if defined(__aarch64__) || defined(__arm__)
    const bool isVirtual = parts.m_Adjustment & 1;
    parts.m_Adjustment >>= 1;
#else
    const bool isVirtual = parts.m_Place & 1;
    parts.m_Place -= isVirtual;
#endif
    if (!isVirtual)
        return nullptr;
    const auto* const at = reinterpret_cast<const unsigned char*>(&object) + parts.m_Adjustment;
    const unsigned char* table;
    std::memcpy(&table, at, sizeof table);
    const void* target;
    std::memcpy(&target, table + parts.m_Place, sizeof target);
    return target;
#else
    static_cast<void>(object);
    static_cast<void>(member);
    return nullptr;
#endif
}

} // namespace zet::inner
