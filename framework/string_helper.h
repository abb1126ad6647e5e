// Text between the host's wide form and UTF-8.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

namespace zet
{

// Conversions of text. Any thread.
class COMMONGROUND_API StringHelper
{
public:
    // Invalid UTF-8, and a unit that is not a valid character, becomes U+FFFD. A null pointer gives the empty text.
    static String_T<wchar_t> utf8ToWide(const char* text);
    static String_T<char> wideToUtf8(const wchar_t* text);
};

} // namespace zet
