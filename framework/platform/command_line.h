// The options of a command line, by the C library.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zet::platform
{

struct OptionName
{
    // Without the two dashes.
    std::string m_Name;
    bool m_HasValue;
};

// Calls take with the number of each option of the line and its value, or an empty text for one without a value.
// Options are "--name VALUE", "--name=VALUE" or "--name", and a name may be shortened as long as it is unambiguous.
// Returns what is wrong with the line, or the empty text; take may have been called before the fault.
std::string parseOptions(int count, char** words, const std::vector<OptionName>& options,
                         const std::function<void(size_t, const std::string&)>& take);

} // namespace zet::platform
