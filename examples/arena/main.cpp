// The miniature platform: a registry, services and clients, each a process of this executable.
#include "examples/arena/call.h"
#include "examples/arena/demo.h"
#include "examples/arena/options.h"
#include "examples/arena/registry.h"
#include "examples/arena/service.h"
#include "examples/arena/text.h"
#include "framework/string_helper.h"

#include <algorithm>
#include <cstdio>

namespace
{

using arena::Options;

constexpr char kUsage[] = "usage: arena registry [--port P]\n"
                          "           keeps the registry of the servers on this machine\n"
                          "       arena service --type N --name S --registry P [--port P] [--id HEX]\n"
                          "           a server of type N: registers, greets the others, measures echoes\n"
                          "       arena lookup --type N --registry P\n"
                          "           prints the address of a server of type N; returns 1 if there is none\n"
                          "       arena shutdown --registry P | --service P\n"
                          "           ends all servers and their registry, or one service\n"
                          "       arena demo\n"
                          "           plays all of it with processes of its own\n"
                          "A port P of a server may be 0 for a free one. An id is 32 hexadecimal digits.\n";

// The exit code for an invalid command line.
constexpr int kBadUsage = 2;
constexpr int kMostPort = 0xFFFF;

int complain(const std::string& error)
{
    std::fprintf(stderr, "arena: %s\n\n%s", error.c_str(), kUsage);
    return kBadUsage;
}

// A name is also the name of a directory of log files.
bool isName(const std::string& name)
{
    return !name.empty() && name.size() <= 32 &&
           std::all_of(name.begin(), name.end(),
                       [](char c) { return (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '_'; });
}

int runRegistry(Options& options)
{
    int port = 0;
    if (options.has("--port") && !options.getNumber("--port", 0, kMostPort, port))
        return complain(options.getError());
    const zet::Unknown::Handle_T<arena::Registry> registry(new arena::Registry(static_cast<unsigned short>(port)));
    return registry->run() ? 0 : 1;
}

int runService(Options& options)
{
    int type = 0;
    int registry = 0;
    int port = 0;
    arena::ServiceOptions service;
    if (!options.getNumber("--type", 1, CFrameworkClientSocket::kUnknownServerType - 1, type) ||
        !options.getNumber("--registry", 1, kMostPort, registry) ||
        (options.has("--port") && !options.getNumber("--port", 0, kMostPort, port)))
        return complain(options.getError());
    const std::string name = options.getText("--name");
    if (!isName(name))
        return complain("--name wants 1 to 32 of a-z, 0-9, '-' and '_'");
    if (options.has("--id") && !arena::idFromText(options.getText("--id"), service.m_Id))
        return complain("--id wants 32 hexadecimal digits");
    service.m_Type = static_cast<unsigned char>(type);
    service.m_RegistryPort = static_cast<unsigned short>(registry);
    service.m_Port = static_cast<unsigned short>(port);
    service.m_Name = zet::StringHelper::utf8ToWide(name.c_str());
    const zet::Unknown::Handle_T<arena::Service> host(new arena::Service(service));
    return host->run() ? host->getResult() : 1;
}

int runLookup(Options& options)
{
    int type = 0;
    int registry = 0;
    if (!options.getNumber("--type", 0, CFrameworkClientSocket::kUnknownServerType, type) ||
        !options.getNumber("--registry", 1, kMostPort, registry))
        return complain(options.getError());
    return arena::lookUp(static_cast<unsigned char>(type), static_cast<unsigned short>(registry));
}

int runShutdown(Options& options)
{
    int port = 0;
    if (options.has("--registry") == options.has("--service"))
        return complain("either --registry or --service is wanted");
    if (!options.getNumber(options.has("--registry") ? "--registry" : "--service", 1, kMostPort, port))
        return complain(options.getError());
    return arena::orderShutdown(static_cast<unsigned short>(port));
}

int runDemo(Options&)
{
    return arena::runDemo() ? 0 : 1;
}

struct Role
{
    const char* m_Name;
    int (*m_Run)(Options& options);
    std::vector<std::string> m_Options;
};

} // namespace

int main(int count, char** words)
{
    const std::vector<Role> roles = {
        {"registry", runRegistry, {"--port"}},
        {"service", runService, {"--type", "--name", "--registry", "--port", "--id"}},
        {"lookup", runLookup, {"--type", "--registry"}},
        {"shutdown", runShutdown, {"--registry", "--service"}},
        {"demo", runDemo, {}},
    };
    const std::string name = count > 1 ? words[1] : "";
    const auto role = std::find_if(roles.begin(), roles.end(), [&](const Role& each) { return name == each.m_Name; });
    if (role == roles.end())
        return complain(name.empty() ? "a role is wanted" : name + " is no role");
    Options options;
    if (!options.parse(std::vector<std::string>(words + 2, words + count), role->m_Options))
        return complain(options.getError());
    return role->m_Run(options);
}
