#include "framework/string_helper.h"

namespace zet
{

namespace
{

constexpr char32_t kReplacement = 0xFFFD;

// Reads one character of UTF-8 text. A sequence that is truncated, overlong or outside Unicode gives the replacement
// character for its longest valid prefix.
char32_t takeUtf8(const unsigned char*& at)
{
    const unsigned char lead = *at++;
    if (lead < 0x80)
        return lead;
    int more = 0;
    char32_t value = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF)
    {
        more = 1;
        value = lead & 0x1F;
    }
    else if (lead >= 0xE0 && lead <= 0xEF)
    {
        more = 2;
        value = lead & 0x0F;
        if (lead == 0xE0)
            low = 0xA0;
        if (lead == 0xED)
            high = 0x9F;
    }
    else if (lead >= 0xF0 && lead <= 0xF4)
    {
        more = 3;
        value = lead & 0x07;
        if (lead == 0xF0)
            low = 0x90;
        if (lead == 0xF4)
            high = 0x8F;
    }
    else
    {
        return kReplacement;
    }
    for (; more > 0; --more)
    {
        if (*at < low || *at > high)
            return kReplacement;
        value = value << 6 | (*at++ & 0x3F);
        low = 0x80;
        high = 0xBF;
    }
    return value;
}

// Reads one character of wide text, whose units are UTF-16 or whole characters, depending on their width. Surrogate
// pairs are joined in both, since a 32-bit text may have been built from 16-bit units.
char32_t takeWide(const wchar_t*& at)
{
    const char32_t unit = static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(*at++));
    if (unit > 0x10FFFF || (unit >= 0xDC00 && unit <= 0xDFFF))
        return kReplacement;
    if (unit < 0xD800 || unit > 0xDBFF)
        return unit;
    const char32_t low = static_cast<char32_t>(static_cast<std::make_unsigned_t<wchar_t>>(*at));
    if (low < 0xDC00 || low > 0xDFFF)
        return kReplacement;
    ++at;
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
}

int putWide(char32_t character, wchar_t* out)
{
    if (sizeof(wchar_t) == 2 && character > 0xFFFF)
    {
        out[0] = static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
        out[1] = static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
        return 2;
    }
    out[0] = static_cast<wchar_t>(character);
    return 1;
}

int putUtf8(char32_t character, char* out)
{
    if (character < 0x80)
    {
        out[0] = static_cast<char>(character);
        return 1;
    }
    const int more = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    static constexpr unsigned char kLeads[] = {0, 0xC0, 0xE0, 0xF0};
    out[0] = static_cast<char>(kLeads[more] | character >> 6 * more);
    for (int i = 1; i <= more; ++i)
        out[i] = static_cast<char>(0x80 | (character >> 6 * (more - i) & 0x3F));
    return more + 1;
}

} // namespace

String_T<wchar_t> StringHelper::utf8ToWide(const char* text)
{
    String_T<wchar_t> wide;
    if (!text)
        return wide;
    // The first pass counts, so that the text is allocated once.
    int length = 0;
    wchar_t unit[2];
    for (const unsigned char* at = reinterpret_cast<const unsigned char*>(text); *at;)
        length += putWide(takeUtf8(at), unit);
    wchar_t* out = wide.resizeForOverwrite(length);
    for (const unsigned char* at = reinterpret_cast<const unsigned char*>(text); *at;)
        out += putWide(takeUtf8(at), out);
    return wide;
}

String_T<char> StringHelper::wideToUtf8(const wchar_t* text)
{
    String_T<char> narrow;
    if (!text)
        return narrow;
    int length = 0;
    char bytes[4];
    for (const wchar_t* at = text; *at;)
        length += putUtf8(takeWide(at), bytes);
    char* out = narrow.resizeForOverwrite(length);
    for (const wchar_t* at = text; *at;)
        out += putUtf8(takeWide(at), out);
    return narrow;
}

} // namespace zet
