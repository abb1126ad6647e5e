#include "host/inner/options.h"

#include "framework/platform/command_line.h"
#include "framework/platform/from_chars.h"
#include "framework/string_helper.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace host::inner
{

namespace
{

const char* kindOf(const OptionTarget& target)
{
    if (std::holds_alternative<bool*>(target))
        return "";
    return std::holds_alternative<zet::String_T<wchar_t>*>(target) ? " TEXT" : " NUMBER";
}

std::string textOf(const OptionTarget& target)
{
    if (const auto* const number = std::get_if<int*>(&target))
        return std::to_string(**number);
    if (const auto* const port = std::get_if<unsigned short*>(&target))
        return std::to_string(**port);
    if (const auto* const text = std::get_if<zet::String_T<wchar_t>*>(&target))
        return zet::StringHelper::wideToUtf8(**text).getBuffer();
    return "";
}

template <class Number>
std::string setNumber(Number& target, const std::string& name, const std::string& text)
{
    const char* const end = text.data() + text.size();
    Number value{};
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end)
        return "--" + name + " needs a number from " + std::to_string(std::numeric_limits<Number>::min()) + " to " +
               std::to_string(std::numeric_limits<Number>::max()) + ", not '" + text + "'";
    target = value;
    return "";
}

std::string set(const OptionTarget& target, const std::string& name, const std::string& text)
{
    if (bool* const* const flag = std::get_if<bool*>(&target))
        **flag = true;
    else if (int* const* const number = std::get_if<int*>(&target))
        return setNumber(**number, name, text);
    else if (unsigned short* const* const port = std::get_if<unsigned short*>(&target))
        return setNumber(**port, name, text);
    else if (zet::String_T<wchar_t>* const* const words = std::get_if<zet::String_T<wchar_t>*>(&target))
        **words = zet::StringHelper::utf8ToWide(text.c_str());
    return "";
}

} // namespace

void Options::add(const char* name, OptionTarget target, const char* help)
{
    const std::string whole = name;
    m_Rows.push_back({whole.compare(0, 2, "--") == 0 ? whole.substr(2) : whole, target, help, textOf(target)});
}

std::string Options::parse(int count, char** words) const
{
    std::vector<zet::platform::OptionName> names;
    for (const Row& row : m_Rows)
        names.push_back({row.m_Name, !std::holds_alternative<bool*>(row.m_Target)});
    std::string first;
    const std::string fault = zet::platform::parseOptions(count, words, names,
                                                          [&](size_t number, const std::string& value)
                                                          {
                                                              const Row& row = m_Rows[number];
                                                              const std::string wrong =
                                                                  set(row.m_Target, row.m_Name, value);
                                                              if (first.empty())
                                                                  first = wrong;
                                                          });
    return first.empty() ? fault : first;
}

std::string Options::getHelp() const
{
    size_t width = 0;
    for (const Row& row : m_Rows)
        width = std::max(width, row.m_Name.size() + std::string(kindOf(row.m_Target)).size());
    std::string text;
    for (const Row& row : m_Rows)
    {
        std::string name = row.m_Name + kindOf(row.m_Target);
        name.resize(width, ' ');
        text += "  --" + name + "  " + row.m_Help;
        if (!row.m_Default.empty())
            text += " (" + row.m_Default + ")";
        text += '\n';
    }
    return text;
}

} // namespace host::inner
