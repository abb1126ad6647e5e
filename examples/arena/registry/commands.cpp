// The command lines of the registry and of the requests to it.
#include "examples/arena/command_line.h"
#include "examples/arena/registry/call.h"
#include "examples/arena/registry/registry.h"
#include "examples/arena/roles.h"

namespace arena
{

int runRegistry(int count, char** words)
{
    CLI::App app("Keeps the registry of the servers on this machine.");
    unsigned short port = 0;
    app.add_option("--port", port, "the port to listen on; 0 for a free one");
    if (const auto result = parseWords(app, count, words))
        return *result;
    const zet::Unknown::Handle_T<Registry> registry(new Registry(port));
    return registry->run() ? 0 : 1;
}

int runLookup(int count, char** words)
{
    CLI::App app("Prints the address of a server of a type; returns 1 if there is none, 2 without an answer.");
    int type = 0;
    int registry = 0;
    app.add_option("--type", type, "the type of the server")
        ->required()
        ->check(CLI::Range(0, static_cast<int>(CFrameworkClientSocket::kUnknownServerType)));
    app.add_option("--registry", registry, "the port of the registry")->required()->check(CLI::Range(1, kMostPort));
    if (const auto result = parseWords(app, count, words))
        return *result;
    return lookUp(static_cast<unsigned char>(type), static_cast<unsigned short>(registry));
}

int runShutdown(int count, char** words)
{
    CLI::App app("Ends all servers and their registry, or one server.");
    int port = 0;
    auto* const targets = app.add_option_group("target", "one of these");
    targets->add_option("--registry", port, "the port of the registry")->check(CLI::Range(1, kMostPort));
    targets->add_option("--service", port, "the port of a server")->check(CLI::Range(1, kMostPort));
    targets->require_option(1);
    if (const auto result = parseWords(app, count, words))
        return *result;
    return orderShutdown(static_cast<unsigned short>(port));
}

} // namespace arena
