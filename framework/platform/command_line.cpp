#include "framework/platform/command_line.h"

#include <getopt.h>

namespace zet::platform
{

std::string parseOptions(int count, char** words, const std::vector<OptionName>& options,
                         const std::function<void(size_t, const std::string&)>& take)
{
    std::vector<option> known;
    known.reserve(options.size() + 1);
    for (const OptionName& each : options)
        known.push_back({each.m_Name.c_str(), each.m_HasValue ? required_argument : no_argument, nullptr, 0});
    known.push_back({nullptr, 0, nullptr, 0});
    // The C library moves the words that are no options to the end.
    std::vector<char*> moved(words, words + count);
    moved.push_back(nullptr);
    opterr = 0;
    optind = 0;
    int number = 0;
    int found = 0;
    while ((found = getopt_long(count, moved.data(), ":", known.data(), &number)) != -1)
    {
        const std::string word = optind > 0 && optind <= count ? moved[static_cast<size_t>(optind) - 1] : "";
        // Of a switch with a value, C libraries report either.
        const bool hasValue = word.find('=') != std::string::npos;
        if (found == ':' && !hasValue)
            return word + " needs a value";
        if (found != 0)
            return "not a valid option: " + (optopt && !hasValue ? std::string("-") + static_cast<char>(optopt) : word);
        take(static_cast<size_t>(number), optarg ? optarg : "");
    }
    return optind < count ? "not an option: " + std::string(moved[static_cast<size_t>(optind)]) : "";
}

} // namespace zet::platform
