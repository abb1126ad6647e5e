#include "examples/arena/options.h"

#include <algorithm>
#include <charconv>

namespace arena
{

bool Options::parse(const std::vector<std::string>& words, const std::vector<std::string>& allowed)
{
    for (size_t i = 0; i < words.size(); i += 2)
    {
        const std::string& name = words[i];
        if (std::find(allowed.begin(), allowed.end(), name) == allowed.end())
            m_Error = name + " is no option here";
        else if (i + 1 == words.size())
            m_Error = name + " has no value";
        else if (!m_Values.emplace(name, words[i + 1]).second)
            m_Error = name + " is given twice";
        if (!m_Error.empty())
            return false;
    }
    return true;
}

std::string Options::getText(const std::string& name) const
{
    const auto found = m_Values.find(name);
    return found == m_Values.end() ? std::string() : found->second;
}

bool Options::getNumber(const std::string& name, int least, int most, int& number)
{
    const std::string text = getText(name);
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (!text.empty() && result.ec == std::errc() && result.ptr == end && number >= least && number <= most)
        return true;
    m_Error = name + " wants a number from " + std::to_string(least) + " to " + std::to_string(most);
    return false;
}

} // namespace arena
