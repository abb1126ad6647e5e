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

// Bytes for which memory may be allocated before they have arrived.
constexpr int kTrustedBytes = 0x10000;

// A type of the packagers' values.
struct ValueType
{
    // What people call it; null for any other type.
    const char* name = nullptr;
    // Bytes that a value always takes, or 0 where that depends on the value.
    int size = 0;
};
template <class T>
inline constexpr ValueType kValueType{};
template <>
inline constexpr ValueType kValueType<bool>{"bool", 1};
template <>
inline constexpr ValueType kValueType<char>{"char", 1};
template <>
inline constexpr ValueType kValueType<unsigned char>{"unsigned char", 1};
template <>
inline constexpr ValueType kValueType<short>{"short", 2};
template <>
inline constexpr ValueType kValueType<unsigned short>{"unsigned short", 2};
template <>
inline constexpr ValueType kValueType<int>{"int", 4};
// 32 bits on the wire, whatever the host's long has.
template <>
inline constexpr ValueType kValueType<unsigned long>{"unsigned long", 4};
template <>
inline constexpr ValueType kValueType<zet::Uuid>{"uuid", 16};
template <>
inline constexpr ValueType kValueType<zet::uuid_node_t>{"node", 6};
template <>
inline constexpr ValueType kValueType<float>{"float"};
template <class Unit>
inline constexpr ValueType kValueType<zet::String_T<Unit>>{"text"};
template <>
inline constexpr ValueType kValueType<zet::Buffer>{"buffer"};

template <class T>
inline constexpr int kFixedSize = kValueType<T>.size;
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

// The number in kSize bytes, the highest first. In this form compilers see one load and a swap.
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
    unsigned char* at = Access::space(packager, kFixedSize<T>);
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
    unsigned char* at = Access::freeSpace(packager, size);
    if (!at)
    {
        // Bytes of the packager itself move when it grows.
        const std::optional<size_t> place = Access::placeWithin(packager, data);
        at = Access::space(packager, size);
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
    // Nearly every float is printed directly into the storage, since the longest text fits there.
    if (unsigned char* at = kHasFastPaths ? Access::freeSpace(packager, 1 + kFloatTextRoom) : nullptr)
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
    // Text that does not parse leaves the value unchanged, and the read succeeds.
    scanFloat(reinterpret_cast<const char*>(at), length, *value);
    return true;
}

// A size and that many bytes, limited only by the packager.
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
    if (const unsigned char* bytes = Access::next(packager, size))
    {
        // Not sized first, which would fill the block with zeros.
        if (!value->assign(bytes, size))
            return false;
        Access::took(packager, size);
        return true;
    }
    // Bytes are missing: the block is sized all the same, unless it is large.
    if (size <= kTrustedBytes)
        value->setBufferSize(size);
    return false;
}

// Bytes that a buffer value may have.
template <class P>
inline constexpr int kMaxBufferSize = std::is_same_v<P, CCmdPackager> ? CCmdPackager::kMaxBufferSize : INT_MAX;

// A value of any type of the table above.
template <class P, class T>
bool writeValue(P& packager, const T& value)
{
    if constexpr (std::is_same_v<T, float>)
        return writeFloat(packager, value);
    else if constexpr (std::is_same_v<T, zet::Buffer>)
        return value.getBufferSize() <= kMaxBufferSize<P> && writeSizedBytes(packager, value);
    else if constexpr (kFixedSize<T> == 0)
        return writeText(packager, value);
    else
        return writeScalar(packager, value);
}

template <class P, class T>
bool readValue(P& packager, T* value)
{
    if constexpr (std::is_same_v<T, float>)
        return readFloat(packager, value);
    else if constexpr (std::is_same_v<T, zet::Buffer>)
        return readSizedBytes(packager, value, kMaxBufferSize<P>);
    else if constexpr (kFixedSize<T> == 0)
        return readText(packager, value);
    else
        return readScalar(packager, value);
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
#define COMMONGROUND_DEFINE_VALUE(Class, Parameter, Type)                                                              \
    bool Class::Write(Parameter value)                                                                                 \
    {                                                                                                                  \
        return wire::writeValue(*this, value);                                                                         \
    }                                                                                                                  \
    bool Class::Read(Type* value)                                                                                      \
    {                                                                                                                  \
        return wire::readValue(*this, value);                                                                          \
    }

#define COMMONGROUND_DEFINE_VALUE_OPERATIONS(Class)                                                                    \
    COMMONGROUND_DEFINE_VALUE(Class, bool, bool)                                                                       \
    COMMONGROUND_DEFINE_VALUE(Class, char, char)                                                                       \
    COMMONGROUND_DEFINE_VALUE(Class, unsigned char, unsigned char)                                                     \
    COMMONGROUND_DEFINE_VALUE(Class, short, short)                                                                     \
    COMMONGROUND_DEFINE_VALUE(Class, unsigned short, unsigned short)                                                   \
    COMMONGROUND_DEFINE_VALUE(Class, int, int)                                                                         \
    COMMONGROUND_DEFINE_VALUE(Class, unsigned long, unsigned long)                                                     \
    COMMONGROUND_DEFINE_VALUE(Class, float, float)                                                                     \
    COMMONGROUND_DEFINE_VALUE(Class, const zet::String_T<wchar_t>&, zet::String_T<wchar_t>)                            \
    COMMONGROUND_DEFINE_VALUE(Class, const zet::Uuid&, zet::Uuid)                                                      \
    COMMONGROUND_DEFINE_VALUE(Class, const zet::Buffer&, zet::Buffer)                                                  \
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
    bool Class::Write(const void* data, int size)                                                                      \
    {                                                                                                                  \
        return wire::writeBytes(*this, data, size);                                                                    \
    }                                                                                                                  \
    bool Class::Read(void* data, int size)                                                                             \
    {                                                                                                                  \
        return wire::readBytes(*this, data, size);                                                                     \
    }
