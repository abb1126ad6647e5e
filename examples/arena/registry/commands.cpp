// The command lines of the registry and of the requests to it.
#include "examples/arena/command_line.h"
#include "examples/arena/registry/call.h"
#include "examples/arena/registry/registry.h"
#include "examples/arena/roles.h"
#include "framework/string_helper.h"
#include "host/service.h"

#include <cstdio>

namespace arena
{

namespace
{

int refuse(const char* fault)
{
    std::fprintf(stderr, "arena registry: %s\n", fault);
    return host::kExitUsage;
}

} // namespace

int runRegistry(int count, char** words)
{
    CLI::App app("Keeps the registry of the servers.");
    unsigned short port = 0;
    std::string host = "127.0.0.1";
    std::string networks;
    app.add_option("--port", port, "the port to listen on; 0 for a free one");
    app.add_option("--host", host, "the address to listen on")->capture_default_str();
    app.add_option("--peers", networks,
                   "the networks that may connect, such as \"10.0.0.0/8 127.0.0.1\"; those of this machine without it. "
                   "There is no login: each of them can register servers and shut all down");
    if (const auto result = parseWords(app, count, words))
        return *result;
    const zet::Unknown::Handle_T<Registry> registry(new Registry(port));
    Peers peers;
    if (!networks.empty() && !peers.set(zet::StringHelper::utf8ToWide(networks.c_str())))
        return refuse("--peers needs networks such as 10.0.0.0/8, with blanks between them");
    if (!registry->setAddress(zet::StringHelper::utf8ToWide(host.c_str()), peers))
        return refuse("--host needs an address of this machine");
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
