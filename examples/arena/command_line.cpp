#include "examples/arena/command_line.h"

#include "host/service.h"

#include <cstdio>

namespace arena
{

std::optional<int> parseWords(CLI::App& app, int count, char** words)
{
    app.name(std::string("arena ") + words[0]);
    app.get_formatter()->label("Usage", "usage");
    try
    {
        app.parse(count, words);
        return std::nullopt;
    }
    catch (const CLI::CallForHelp&)
    {
        std::fputs(app.help().c_str(), stdout);
        return host::kExitGood;
    }
    catch (const CLI::ParseError& fault)
    {
        std::fprintf(stderr, "arena %s: %s\n\n%s", words[0], fault.what(), app.help().c_str());
        return host::kExitUsage;
    }
}

} // namespace arena
