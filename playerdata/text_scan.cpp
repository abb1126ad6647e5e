#include "playerdata/text_scan.h"

#include <cstdint>

bool TextScanner::takeRecord(std::wstring_view& text, wchar_t terminator, std::wstring_view& record)
{
    const size_t end = text.find(terminator);
    if (end == std::wstring_view::npos)
        return false;
    record = text.substr(0, end);
    text.remove_prefix(end + 1);
    return true;
}

bool TextScanner::takeInt(int& number)
{
    while (!m_Left.empty() && (m_Left[0] == L' ' || (m_Left[0] >= L'\t' && m_Left[0] <= L'\r')))
        m_Left.remove_prefix(1);
    const bool negative = !m_Left.empty() && m_Left[0] == L'-';
    if (negative || (!m_Left.empty() && m_Left[0] == L'+'))
        m_Left.remove_prefix(1);

    size_t digits = 0;
    uint32_t value = 0;
    for (; digits < m_Left.size() && m_Left[digits] >= L'0' && m_Left[digits] <= L'9'; ++digits)
        value = value * 10 + static_cast<uint32_t>(m_Left[digits] - L'0');
    if (digits == 0)
        return false;
    m_Left.remove_prefix(digits);
    number = static_cast<int>(negative ? 0 - value : value);
    return true;
}

int TextScanner::takeInts(wchar_t between, std::initializer_list<int*> numbers)
{
    int taken = 0;
    for (int* number : numbers)
    {
        if ((taken > 0 && !takeUnit(between)) || !takeInt(*number))
            break;
        ++taken;
    }
    return taken;
}

bool TextScanner::takeText(wchar_t end, int most, zet::String_T<wchar_t>& text)
{
    const std::wstring_view taken = m_Left.substr(0, m_Left.find(end));
    if (taken.empty() || taken.size() > static_cast<size_t>(most))
        return false;
    text = zet::String_T<wchar_t>(taken.data(), static_cast<int>(taken.size()));
    m_Left.remove_prefix(taken.size());
    return true;
}

bool TextScanner::takeUnit(wchar_t unit)
{
    if (m_Left.empty() || m_Left[0] != unit)
        return false;
    m_Left.remove_prefix(1);
    return true;
}
