#include "tools/command_id.h"

namespace tools
{

int commandIdOf(const std::string& text)
{
    const bool isHex = text.starts_with("0x");
    const std::string digits = isHex ? text.substr(2) : text;
    if (digits.empty() || digits.size() > 5 ||
        digits.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789") != std::string::npos)
        return -1;
    const unsigned long id = std::stoul(digits, nullptr, isHex ? 16 : 10);
    return id <= 0xFFFF ? static_cast<int>(id) : -1;
}

} // namespace tools
