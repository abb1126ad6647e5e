// Type-safe printf formatting for narrow and wide text.
// One rule on every platform: %s takes text of the pattern's width; numbers are converted to the type that the
// pattern names; neither the C locale nor the platform's printf is used. A pattern that does not match its arguments
// returns the pattern itself; there is no undefined behaviour.
#pragma once

#include "framework/export.h"

#include <cstddef>
#include <type_traits>

namespace zet
{

template <class T>
class String_T;

// One argument of a pattern, in the form that crosses the library boundary.
template <class T>
struct FormatArg
{
    enum Kind
    {
        kSigned,
        kUnsigned,
        kFloat,
        kText,
        kPointer
    };

    Kind m_Kind = kSigned;
    // Width in bytes of the original integer, so that %x of a negative int shows 32 bits.
    int m_Width = 4;
    union
    {
        long long m_Signed;
        unsigned long long m_Unsigned;
        double m_Float;
        const T* m_Text;
        const void* m_Pointer;
    };

    // The argument for a value: a number, an enumeration, a text of the width T, or a pointer. Does not copy a text.
    template <class V>
    static FormatArg of(const V& value)
    {
        FormatArg arg;
        using D = std::decay_t<V>;
        if constexpr (std::is_enum_v<D>)
        {
            return of(static_cast<std::underlying_type_t<D>>(value));
        }
        else if constexpr (std::is_floating_point_v<D>)
        {
            arg.m_Kind = kFloat;
            arg.m_Float = static_cast<double>(value);
        }
        else if constexpr (std::is_integral_v<D> && std::is_signed_v<D>)
        {
            arg.m_Kind = kSigned;
            arg.m_Width = static_cast<int>(sizeof(D));
            arg.m_Signed = value;
        }
        else if constexpr (std::is_integral_v<D>)
        {
            arg.m_Kind = kUnsigned;
            arg.m_Width = static_cast<int>(sizeof(D));
            arg.m_Unsigned = value;
        }
        else if constexpr (std::is_convertible_v<const V&, const T*>)
        {
            arg.m_Kind = kText;
            arg.m_Text = value;
        }
        else
        {
            static_assert(std::is_pointer_v<D>, "a pattern takes numbers, text of its own width and pointers");
            arg.m_Kind = kPointer;
            arg.m_Pointer = value;
        }
        return arg;
    }
};

// Formats count arguments by the pattern, for formatText().
COMMONGROUND_API String_T<char> formatArgs(const char* pattern, const FormatArg<char>* args, size_t count);
COMMONGROUND_API String_T<wchar_t> formatArgs(const wchar_t* pattern, const FormatArg<wchar_t>* args, size_t count);

// Formats the arguments by the pattern.
template <class T, class... Args>
String_T<T> formatText(const T* pattern, const Args&... args)
{
    const FormatArg<T> list[sizeof...(Args) + 1] = {FormatArg<T>::of(args)..., FormatArg<T>()};
    return formatArgs(pattern, list, sizeof...(Args));
}

} // namespace zet
