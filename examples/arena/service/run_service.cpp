#include "examples/arena/command_line.h"
#include "examples/arena/roles.h"
#include "examples/arena/service/service.h"
#include "examples/arena/text.h"
#include "framework/string_helper.h"

#include <algorithm>
#include <string>

namespace arena
{

namespace
{

// A name is also the name of a directory of log files.
std::string checkName(const std::string& name)
{
    const bool isGood =
        !name.empty() && name.size() <= 32 &&
        std::all_of(name.begin(), name.end(),
                    [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_'; });
    return isGood ? std::string() : "a name has 1 to 32 of a-z, 0-9, '-' and '_'";
}

} // namespace

int runService(int count, char** words)
{
    CLI::App app("A server: registers, greets the others, measures echoes.");
    int type = 0;
    int registry = 0;
    std::string name;
    ServiceOptions options;
    app.add_option("--type", type, "the type of the server")
        ->required()
        ->check(CLI::Range(1, CFrameworkClientSocket::kUnknownServerType - 1));
    app.add_option("--name", name, "its name")->required()->check(checkName);
    app.add_option("--registry", registry, "the port of the registry")->required()->check(CLI::Range(1, kMostPort));
    app.add_option("--port", options.m_Port, "the port to listen on; 0 for a free one");
    app.add_option_function<std::string>(
        "--id",
        [&options](const std::string& text)
        {
            if (!idFromText(text, options.m_Id))
                throw CLI::ValidationError("--id", "an id has 32 hexadecimal digits");
        },
        "its id; a new one without this option");
    if (const auto result = parseWords(app, count, words))
        return *result;
    options.m_Type = static_cast<unsigned char>(type);
    options.m_RegistryPort = static_cast<unsigned short>(registry);
    options.m_Name = zet::StringHelper::utf8ToWide(name.c_str());
    const zet::Unknown::Handle_T<Service> service(new Service(options));
    return service->run() ? service->getResult() : 1;
}

} // namespace arena
