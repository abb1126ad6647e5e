#include "transport/address_file.h"

#include "framework/platform/platform.h"
#include "framework/string.h"

#include <memory>

namespace
{

constexpr int kLineSize = 1024;

bool isDigit(char unit)
{
    return unit >= '0' && unit <= '9';
}

bool isSpace(char unit)
{
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

// Skips white space and reads a word of four numbers.
bool takeAddress(const char*& at, unsigned char* bytes)
{
    while (isSpace(*at))
        ++at;
    for (int i = 0; i < 4; ++i)
    {
        if (i > 0 && *at++ != '.')
            return false;
        if (!isDigit(*at))
            return false;
        unsigned int number = 0;
        for (; isDigit(*at); ++at)
            number = number * 10 + static_cast<unsigned int>(*at - '0');
        bytes[i] = static_cast<unsigned char>(number);
    }
    return *at == 0 || isSpace(*at);
}

} // namespace

bool ParseAddressRule(const char* line, AddressRule& rule)
{
    const char* at = line;
    return takeAddress(at, rule.m_Address) && takeAddress(at, rule.m_Mask);
}

bool ReadAddressFile(const wchar_t* path, const std::function<void(const AddressRule&)>& take)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(zet::platform::openFile(path, "r"), std::fclose);
    if (!file)
        return false;
    char line[kLineSize];
    while (std::fgets(line, sizeof line, file.get()))
    {
        AddressRule rule;
        if (ParseAddressRule(line, rule))
            take(rule);
    }
    return true;
}
