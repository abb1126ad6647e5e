// Address files: any content gives the rules of its lines, and every parsed rule prints and parses to the same rule.
#include "framework/platform/platform.h"
#include "fuzz/support/budget.h"
#include "fuzz/support/require.h"
#include "transport/address_file.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace
{

using fuzz::require;

std::string textOf(const AddressRule& rule)
{
    char text[64];
    std::snprintf(text, sizeof text, "%d.%d.%d.%d %d.%d.%d.%d", rule.m_Address[0], rule.m_Address[1], rule.m_Address[2],
                  rule.m_Address[3], rule.m_Mask[0], rule.m_Mask[1], rule.m_Mask[2], rule.m_Mask[3]);
    return text;
}

// The rule of one line as text; empty if it has none.
std::string ruleOf(const std::string& line)
{
    AddressRule rule;
    if (!ParseAddressRule(line.c_str(), rule))
        return {};
    AddressRule again;
    require(ParseAddressRule(textOf(rule).c_str(), again) && textOf(again) == textOf(rule));
    require(ParseAddressRule((" \t" + line).c_str(), again) && textOf(again) == textOf(rule));
    require(!ParseAddressRule(("#" + line).c_str(), again));
    return textOf(rule);
}

// One file for all inputs, deleted with the process.
class ScratchFile
{
public:
    ScratchFile() : m_Path(zet::platform::createTempFile(zet::platform::getTempDirectory())) {}
    ~ScratchFile() { zet::platform::deleteFile(m_Path); }

    void fill(const std::uint8_t* data, std::size_t size)
    {
        std::FILE* const file = zet::platform::openFile(m_Path, "wb");
        require(file);
        require(std::fwrite(data, 1, size, file) == size);
        require(std::fclose(file) == 0);
    }

    zet::String_T<wchar_t> m_Path;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static ScratchFile scratch;
    scratch.fill(data, size);
    const fuzz::Budget budget(size);
    std::vector<std::string> rules;
    require(ReadAddressFile(scratch.m_Path, [&](const AddressRule& rule) { rules.push_back(textOf(rule)); }));

    // If every line fits the buffer, the rules are those of the single lines.
    std::vector<std::string> expected;
    bool isPlain = true;
    const std::string content(data, data + size);
    for (size_t at = 0; at < content.size();)
    {
        const size_t end = std::min(content.find('\n', at), content.size());
        const std::string line = content.substr(at, end - at);
        isPlain = isPlain && line.size() < 1000 && line.find('\0') == std::string::npos;
        if (const std::string rule = ruleOf(line); !rule.empty())
            expected.push_back(rule);
        at = end + 1;
    }
    require(!isPlain || rules == expected);
    // The shortest rule has 15 characters.
    require(rules.size() <= size / 15 + 1);
    return 0;
}
