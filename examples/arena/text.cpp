#include "examples/arena/text.h"

#include "framework/string_helper.h"

#include <cstring>

namespace arena
{

namespace
{

int digitOf(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return -1;
}

} // namespace

zet::String_T<char> shown(const zet::String_T<wchar_t>& text)
{
    zet::String_T<wchar_t> line;
    wchar_t* out = line.resizeForOverwrite(text.getLength());
    for (int i = 0; i < text.getLength(); ++i)
        out[i] = text[i] < L' ' || text[i] == L'\x7f' ? L'?' : text[i];
    return zet::StringHelper::wideToUtf8(line);
}

zet::String_T<char> idToText(const zet::Uuid& id)
{
    unsigned char bytes[sizeof id];
    std::memcpy(bytes, &id, sizeof bytes);
    zet::String_T<char> text;
    for (const unsigned char byte : bytes)
        text += zet::formatText("%02x", byte);
    return text;
}

bool idFromText(std::string_view text, zet::Uuid& id)
{
    unsigned char bytes[sizeof id];
    if (text.size() != 2 * sizeof bytes)
        return false;
    for (size_t i = 0; i < sizeof bytes; ++i)
    {
        const int high = digitOf(text[2 * i]);
        const int low = digitOf(text[2 * i + 1]);
        if (high < 0 || low < 0)
            return false;
        bytes[i] = static_cast<unsigned char>(high * 16 + low);
    }
    std::memcpy(&id, bytes, sizeof bytes);
    return true;
}

} // namespace arena
