// wirelens: decodes the wire format, for people and for scripts.
#include "framework/log.h"
#include "tools/wirelens/commands.h"
#include "tools/wirelens/usage.h"

#include <algorithm>
#include <iostream>
#include <string>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace
{

bool isHelp(const std::string& word)
{
    return word == "--help" || word == "-h";
}

int run(const std::string& command, const std::vector<std::string>& arguments)
{
    using namespace wirelens;
    if (command == "--version" && arguments.empty())
    {
        std::cout << "wirelens " WIRELENS_VERSION "\n";
        return 0;
    }
    if (isHelp(command) || command == "help")
    {
        printHelp(std::cout, arguments.empty() ? "" : arguments[0]);
        return 0;
    }
    if (!isCommand(command))
        return misuse("", command.empty() ? "a command is missing" : "no command " + command);
    if (std::any_of(arguments.begin(), arguments.end(), isHelp))
    {
        printHelp(std::cout, command);
        return 0;
    }
    if (command == "catalogue")
        return catalogue(arguments);
    if (command == "decode")
        return decode(arguments);
    if (command == "schema" && arguments.size() == 1)
        return schema(arguments[0]);
    if (command == "new" && arguments.size() == 1)
        return makeNew(arguments[0]);
    if (command == "read" && arguments.empty())
        return read();
    if (command == "explain" && arguments.size() == 2)
        return explain(arguments[0], arguments[1]);
    return misuse(command, "wrong number of arguments");
}

} // namespace

int main(int argc, char** argv)
{
#ifdef _WIN32
    // Input and output are binary on every platform.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    // The library's log lines go to the standard error, not among the results.
    zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& line) { wirelens::warn(line.getBuffer()); });

    const std::vector<std::string> arguments(argv + (argc > 1 ? 2 : argc), argv + argc);
    return run(argc > 1 ? argv[1] : "", arguments);
}
