// The miniature platform: a registry, servers and clients, each a process of this executable.
#include "examples/arena/roles.h"
#include "host/service.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace
{

constexpr arena::Role kRoles[] = {
    {"registry", "keeps the registry of the servers", arena::runRegistry},
    {"service", "a server: registers, greets the others, measures echoes", arena::runService},
#ifdef ARENA_HAS_PLATFORM
    {"platform", "serves players: accounts, logins, purchases, progress", arena::runPlatform},
    {"audit", "prints what is wrong in the database of a platform", arena::runAudit},
#endif
    {"zone", "a game zone, and the centre of all zones", arena::runZone},
    {"game", "runs races for a zone", arena::runGame},
    {"sport", "rooms and sessions of sports", arena::runSport},
    {"lesson", "dance lessons", arena::runLesson},
    {"device", "phones that drive a game, and a camera", arena::runDevice},
    {"numbers", "prints the numbers of the messages in packs, a line of JSON per pair of envelopes", arena::runNumbers},
    {"lookup", "prints the address of a server of a type; returns 1 if there is none", arena::runLookup},
    {"shutdown", "ends all servers and their registry, or one server", arena::runShutdown},
#ifdef ARENA_HAS_PLAYERS
    {"player", "plays scripts as a player of the platform, or of a single server", arena::runPlayer},
    {"run", "starts everything, lets players play, and audits the outcome", arena::runAll},
#endif
    {"demo", "plays the registry with processes of its own", arena::runDemo},
};

void printUsage(std::FILE* out)
{
    std::fputs("usage: arena ROLE [OPTION...]\n", out);
    for (const arena::Role& role : kRoles)
        std::fprintf(out, "  %-10s%s\n", role.m_Name, role.m_Help);
    std::fputs("arena ROLE --help prints the options of a role. A port of 0 is a free one.\n", out);
}

} // namespace

const arena::Role* arena::findRole(std::string_view name)
{
    const Role* const role =
        std::find_if(std::begin(kRoles), std::end(kRoles), [&](const Role& each) { return name == each.m_Name; });
    return role == std::end(kRoles) ? nullptr : role;
}

int main(int count, char** words)
{
    if (const arena::Role* const role = count > 1 ? arena::findRole(words[1]) : nullptr)
        return role->m_Run(count - 1, words + 1);
    if (count > 1 && std::string_view(words[1]) == "--help")
    {
        printUsage(stdout);
        return host::kExitGood;
    }
    if (count > 1)
        std::fprintf(stderr, "arena: there is no role '%s'\n\n", words[1]);
    printUsage(stderr);
    return host::kExitUsage;
}
