// std::from_chars for float and double, also where the standard library has it for integers only.
#pragma once

#include <charconv>

#ifndef _WIN32
#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <string>
#include <type_traits>
#endif

namespace zet::platform
{

#ifndef _WIN32
// The same by the C library, with '.' as the decimal point whatever the locale of the process. As with std::from_chars,
// a number that is too large or too small leaves value unchanged. The text must not start with a space, '+' or "0x". It
// is copied, so this may throw std::bad_alloc.
template <class Float>
std::from_chars_result fromCharsByC(const char* first, const char* last, Float& value, std::chars_format format)
{
    static const locale_t plain = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    const bool minus = first != last && *first == '-';
    std::string text(minus ? "-" : "");
    if (format == std::chars_format::hex)
        text += "0x";
    const size_t added = text.size() - minus;
    text.append(first + minus, last);
    char* end = text.data();
    const int before = errno;
    errno = 0;
    Float read;
    if constexpr (std::is_same_v<Float, float>)
        read = strtof_l(text.c_str(), &end, plain);
    else
        read = strtod_l(text.c_str(), &end, plain);
    const bool isOutOfRange = errno == ERANGE && (read == 0 || std::isinf(read));
    errno = before;
    const auto length = static_cast<size_t>(end - text.data());
    if (length <= added)
        return {first, std::errc::invalid_argument};
    const char* const at = first + (length - added);
    if (isOutOfRange)
        return {at, std::errc::result_out_of_range};
    value = read;
    return {at, std::errc()};
}
#endif

template <class Float>
std::from_chars_result fromChars(const char* first, const char* last, Float& value,
                                 std::chars_format format = std::chars_format::general)
{
#if defined(__cpp_lib_to_chars) || defined(_WIN32)
    return std::from_chars(first, last, value, format);
#else
    return fromCharsByC(first, last, value, format);
#endif
}

} // namespace zet::platform
