// Fuzzed bytes as text: one unit per byte, including zeros.
#pragma once

#include "framework/string.h"

#include <cstddef>
#include <cstdint>

namespace fuzz
{

inline zet::String_T<wchar_t> wideText(const std::uint8_t* data, std::size_t size)
{
    zet::String_T<wchar_t> text;
    wchar_t* out = text.resizeForOverwrite(static_cast<int>(size));
    for (std::size_t i = 0; i < size; ++i)
        out[i] = static_cast<wchar_t>(data[i]);
    return text;
}

} // namespace fuzz
