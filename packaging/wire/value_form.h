// The byte forms of the scalars, as plain stores and loads, and the packagers' value operations over them.
#pragma once

#include "packaging/float_text.h"
#include "packaging/wire/access.h"
#include "packaging/wire/text_form.h"

#include <climits>
#include <cstdint>
#include <optional>
#include <type_traits>

namespace wire
{

// Bytes from the wire that may cost memory before they have arrived.
constexpr int kTrustedBytes = 0x10000;

// Bytes that a value of T always takes, or 0 where that depends on the value.
template <class T>
inline constexpr int kFixedSize = 0;
template <>
inline constexpr int kFixedSize<bool> = 1;
template <>
inline constexpr int kFixedSize<char> = 1;
template <>
inline constexpr int kFixedSize<unsigned char> = 1;
template <>
inline constexpr int kFixedSize<short> = 2;
template <>
inline constexpr int kFixedSize<unsigned short> = 2;
template <>
inline constexpr int kFixedSize<int> = 4;
// 32 bits on the wire, whatever the host's long has.
template <>
inline constexpr int kFixedSize<unsigned long> = 4;
template <>
inline constexpr int kFixedSize<zet::Uuid> = 16;
template <>
inline constexpr int kFixedSize<zet::uuid_node_t> = 6;
template <class T, size_t N>
inline constexpr int kFixedSize<T[N]> = kFixedSize<T>* static_cast<int>(N);

template <class T>
void store(unsigned char* at, const T& value)
{
    if constexpr (std::is_array_v<T>)
    {
        for (const auto& element : value)
        {
            store(at, element);
            at += kFixedSize<std::remove_extent_t<T>>;
        }
    }
    else if constexpr (std::is_same_v<T, bool>)
    {
        *at = value ? 1 : 0;
    }
    else if constexpr (std::is_integral_v<T>)
    {
        const uint32_t bits = static_cast<uint32_t>(value);
        for (int i = 0; i < kFixedSize<T>; ++i)
            at[i] = static_cast<unsigned char>(bits >> 8 * (kFixedSize<T> - 1 - i));
    }
    else
    {
        std::memcpy(at, &value, sizeof value);
    }
}

// The number in so many bytes, the highest first. In this form compilers see one load and a swap.
template <int kSize>
uint32_t bigEndian(const unsigned char* at)
{
    if constexpr (kSize == 1)
        return *at;
    else
        return bigEndian<kSize - 1>(at) << 8 | at[kSize - 1];
}

template <class T>
void load(const unsigned char* at, T& value)
{
    if constexpr (std::is_array_v<T>)
    {
        for (auto& element : value)
        {
            load(at, element);
            at += kFixedSize<std::remove_extent_t<T>>;
        }
    }
    else if constexpr (std::is_same_v<T, bool>)
    {
        value = *at != 0;
    }
    else if constexpr (std::is_integral_v<T>)
    {
        value = static_cast<T>(bigEndian<kFixedSize<T>>(at));
    }
    else
    {
        std::memcpy(static_cast<void*>(&value), at, sizeof value);
    }
}

template <class P, class T>
bool writeScalar(P& packager, const T& value)
{
    unsigned char* at = Access::room(packager, kFixedSize<T>);
    if (!at)
        return false;
    store(at, value);
    Access::wrote(packager, kFixedSize<T>);
    return true;
}

template <class P, class T>
bool readScalar(P& packager, T* value)
{
    const unsigned char* at = Access::next(packager, kFixedSize<T>);
    if (!at)
        return false;
    load(at, *value);
    Access::took(packager, kFixedSize<T>);
    return true;
}

template <class P>
bool writeBytes(P& packager, const void* data, int size)
{
    if (size < 0)
        return false;
    unsigned char* at = Access::freeRoom(packager, size);
    if (!at)
    {
        // Bytes of the packager itself move with all others where it grows.
        const std::optional<size_t> place = Access::placeWithin(packager, data);
        at = Access::room(packager, size);
        if (!at)
            return false;
        if (place)
            data = packager.GetBuffer() + *place;
    }
    if (size > 0)
        std::memcpy(at, data, static_cast<size_t>(size));
    Access::wrote(packager, size);
    return true;
}

template <class P>
bool readBytes(P& packager, void* data, int size)
{
    const unsigned char* at = size < 0 ? nullptr : Access::next(packager, size);
    if (!at)
        return false;
    if (size > 0)
        std::memcpy(data, at, static_cast<size_t>(size));
    Access::took(packager, size);
    return true;
}

template <class P>
bool writeFloat(P& packager, float value)
{
    // Straight into the storage where the longest text fits, so that nearly every float is printed in its place.
    if (unsigned char* at = Access::freeRoom(packager, 1 + kFloatTextRoom))
    {
        const int length = printFloat(value, reinterpret_cast<char*>(at) + 1);
        *at = static_cast<unsigned char>(length);
        Access::wrote(packager, 1 + length);
        return true;
    }
    char text[kFloatTextRoom];
    const int length = printFloat(value, text);
    return writeScalar(packager, static_cast<unsigned char>(length)) && writeBytes(packager, text, length);
}

template <class P>
bool readFloat(P& packager, float* value)
{
    unsigned char length = 0;
    if (!readScalar(packager, &length))
        return false;
    const unsigned char* at = Access::next(packager, length);
    if (!at)
        return false;
    Access::took(packager, length);
    // Text that does not parse leaves the value as it was, and the read is good all the same.
    scanFloat(reinterpret_cast<const char*>(at), length, *value);
    return true;
}

// A size and that many bytes, as many as the packager holds.
template <class P>
bool writeSizedBytes(P& packager, const zet::Buffer& value)
{
    const int size = value.getBufferSize();
    return writeScalar(packager, size) && writeBytes(packager, value.getBuffer(), size);
}

template <class P>
bool readSizedBytes(P& packager, zet::Buffer* value, int most = INT_MAX)
{
    int size = 0;
    if (!readScalar(packager, &size) || size < 0 || size > most)
        return false;
    // A large block is made only for bytes that are there.
    if (size > kTrustedBytes && size > Access::left(packager))
        return false;
    return value->setBufferSize(size) == size && readBytes(packager, value->getBuffer(), size);
}

// The same as a value of the packager; the command packager's has a largest size.
template <class P>
inline constexpr int kMaxBufferSize = std::is_same_v<P, CCmdPackager> ? CCmdPackager::kMaxBufferSize : INT_MAX;

template <class P>
bool writeBuffer(P& packager, const zet::Buffer& value)
{
    return value.getBufferSize() <= kMaxBufferSize<P> && writeSizedBytes(packager, value);
}

template <class P>
bool readBuffer(P& packager, zet::Buffer* value)
{
    return readSizedBytes(packager, value, kMaxBufferSize<P>);
}

template <class P>
bool write15(P& packager, unsigned short value)
{
    const uint32_t masked = value & kMask15;
    if (masked <= 0x7F)
        return writeScalar(packager, static_cast<unsigned char>(masked));
    return writeScalar(packager, static_cast<unsigned short>(masked | 0x8000));
}

template <class P>
bool read15(P& packager, unsigned short* value)
{
    unsigned char first = 0;
    if (!readScalar(packager, &first))
        return false;
    if (!(first & 0x80))
    {
        *value = first;
        return true;
    }
    unsigned char second = 0;
    if (!readScalar(packager, &second))
        return false;
    *value = static_cast<unsigned short>((first & 0x7F) << 8 | second);
    return true;
}

} // namespace wire

// Defines for Class what COMMONGROUND_VALUE_OPERATIONS declares.
#define COMMONGROUND_DEFINE_SCALAR(Class, Type)                                                                        \
    bool Class::Write(Type value)                                                                                      \
    {                                                                                                                  \
        return wire::writeScalar(*this, value);                                                                        \
    }                                                                                                                  \
    bool Class::Read(Type* value)                                                                                      \
    {                                                                                                                  \
        return wire::readScalar(*this, value);                                                                         \
    }

#define COMMONGROUND_DEFINE_VALUE_OPERATIONS(Class)                                                                    \
    COMMONGROUND_DEFINE_SCALAR(Class, bool)                                                                            \
    COMMONGROUND_DEFINE_SCALAR(Class, char)                                                                            \
    COMMONGROUND_DEFINE_SCALAR(Class, unsigned char)                                                                   \
    COMMONGROUND_DEFINE_SCALAR(Class, short)                                                                           \
    COMMONGROUND_DEFINE_SCALAR(Class, unsigned short)                                                                  \
    COMMONGROUND_DEFINE_SCALAR(Class, int)                                                                             \
    COMMONGROUND_DEFINE_SCALAR(Class, unsigned long)                                                                   \
    bool Class::Write(float value)                                                                                     \
    {                                                                                                                  \
        return wire::writeFloat(*this, value);                                                                         \
    }                                                                                                                  \
    bool Class::Read(float* value)                                                                                     \
    {                                                                                                                  \
        return wire::readFloat(*this, value);                                                                          \
    }                                                                                                                  \
    bool Class::Write15(unsigned short value)                                                                          \
    {                                                                                                                  \
        return wire::write15(*this, value);                                                                            \
    }                                                                                                                  \
    bool Class::Read15(unsigned short* value)                                                                          \
    {                                                                                                                  \
        return wire::read15(*this, value);                                                                             \
    }                                                                                                                  \
    bool Class::Write30(unsigned long value)                                                                           \
    {                                                                                                                  \
        return wire::write30(*this, static_cast<uint32_t>(value & wire::kMask30));                                     \
    }                                                                                                                  \
    bool Class::Read30(unsigned long* value)                                                                           \
    {                                                                                                                  \
        uint32_t result = 0;                                                                                           \
        if (!wire::read30(*this, result))                                                                              \
            return false;                                                                                              \
        *value = result;                                                                                               \
        return true;                                                                                                   \
    }                                                                                                                  \
    bool Class::Write(const zet::String_T<wchar_t>& value)                                                             \
    {                                                                                                                  \
        return wire::writeText(*this, value);                                                                          \
    }                                                                                                                  \
    bool Class::Read(zet::String_T<wchar_t>* value)                                                                    \
    {                                                                                                                  \
        return wire::readText(*this, value);                                                                           \
    }                                                                                                                  \
    bool Class::Write(const zet::Uuid& value)                                                                          \
    {                                                                                                                  \
        return wire::writeScalar(*this, value);                                                                        \
    }                                                                                                                  \
    bool Class::Read(zet::Uuid* value)                                                                                 \
    {                                                                                                                  \
        return wire::readScalar(*this, value);                                                                         \
    }                                                                                                                  \
    bool Class::Write(const zet::Buffer& value)                                                                        \
    {                                                                                                                  \
        return wire::writeBuffer(*this, value);                                                                        \
    }                                                                                                                  \
    bool Class::Read(zet::Buffer* value)                                                                               \
    {                                                                                                                  \
        return wire::readBuffer(*this, value);                                                                         \
    }                                                                                                                  \
    bool Class::Write(const void* data, int size)                                                                      \
    {                                                                                                                  \
        return wire::writeBytes(*this, data, size);                                                                    \
    }                                                                                                                  \
    bool Class::Read(void* data, int size)                                                                             \
    {                                                                                                                  \
        return wire::readBytes(*this, data, size);                                                                     \
    }
