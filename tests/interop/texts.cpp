#include "tests/interop/texts.h"

namespace interop
{

namespace
{

constexpr char32_t kBasicPlane = 0xFFFF;
// A 32-bit writer's form of any character above the basic plane.
constexpr char32_t kStandIn[] = {0xD840, 0xDC00};

Text textOf(int length)
{
    Text text{std::to_string(length) + " characters", {}};
    for (int i = 0; i < length; ++i)
        text.m_Characters += i % 10 == 9 ? U'\u4E2D' : static_cast<char32_t>(U'a' + i % 26);
    return text;
}

std::u32string unitsOf(const Text& text, Width writer)
{
    std::u32string units;
    for (const char32_t character : text.m_Characters)
    {
        if (character <= kBasicPlane)
            units += character;
        else if (writer == Width::k32)
            units.append({kStandIn[0], kStandIn[1]});
        else
            units.append({0xD800 + ((character - 0x10000) >> 10), 0xDC00 + (character & 0x3FF)});
    }
    return units;
}

size_t countOf(const Text& text, Width writer)
{
    if (writer == Width::k16 || text.m_Characters.empty())
        return unitsOf(text, writer).size();
    return 2 * text.m_Characters.size() + 2;
}

} // namespace

const std::vector<Text>& texts()
{
    static const std::vector<Text> all = {textOf(0),
                                          textOf(1),
                                          textOf(63),
                                          textOf(64),
                                          textOf(499),
                                          textOf(500),
                                          {"a character above the basic plane", U"a\U0001F600z"}};
    return all;
}

zet::String_T<wchar_t> nativeText(const Text& text)
{
    const std::u32string values = sizeof(wchar_t) == 2 ? unitsOf(text, Width::k16) : std::u32string(text.m_Characters);
    std::wstring wide;
    for (const char32_t value : values)
        wide += static_cast<wchar_t>(value);
    return zet::String_T<wchar_t>(wide.c_str());
}

std::string wireForm(const Text& text, Width writer)
{
    const size_t count = countOf(text, writer);
    std::u32string units = unitsOf(text, writer);
    units.resize(count, U'\0');
    std::string bytes;
    if (count > 0x3F)
        bytes += static_cast<char>(count >> 8 | 0x40);
    bytes += static_cast<char>(count & 0xFF);
    for (const char32_t unit : units)
    {
        bytes += static_cast<char>(unit & 0xFF);
        bytes += static_cast<char>(unit >> 8);
    }
    return bytes;
}

bool isTaken(const Text& text, Width writer)
{
    return countOf(text, writer) <= 1000;
}

std::u32string readValues(const Text& text, Width writer, Width reader)
{
    const std::u32string units = unitsOf(text, writer);
    if (reader == Width::k16)
        return units;
    // A 32-bit reader takes each half of a surrogate pair for a character; these are the halves that occur here.
    std::u32string values;
    for (const char32_t unit : units)
        values += unit == 0xD83D   ? char32_t{0x1FC3D}
                  : unit == 0xDE00 ? char32_t{0x190200}
                  : unit == 0xD840 ? char32_t{0x2FC40}
                  : unit == 0xDC00 ? char32_t{0x110000}
                                   : unit;
    return values;
}

std::u32string valuesOf(const zet::String_T<wchar_t>& text)
{
    std::u32string values;
    for (int i = 0; i < text.getLength(); ++i)
        values += static_cast<char32_t>(text[i]);
    return values;
}

} // namespace interop
