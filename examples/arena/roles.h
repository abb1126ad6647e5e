// The roles of the platform, each a process of this executable. A role gets the words of the command line from its own
// name on, and returns the exit code of the process.
#pragma once

#include <string_view>

namespace arena
{

struct Role
{
    const char* m_Name;
    const char* m_Help;
    int (*m_Run)(int count, char** words);
};

// Null if this program does not have the role.
const Role* findRole(std::string_view name);

// Servers.
int runRegistry(int count, char** words);
int runService(int count, char** words);

int runZone(int count, char** words);
int runGame(int count, char** words);
int runSport(int count, char** words);
int runLesson(int count, char** words);
int runDevice(int count, char** words);

// Accounts, and what is wrong in their database; where there are SOCI, libpq and libcrypt.
int runPlatform(int count, char** words);
int runAudit(int count, char** words);

// What the servers and the players agree on.
int runNumbers(int count, char** words);

// Requests to servers.
int runLookup(int count, char** words);
int runShutdown(int count, char** words);

// Scripted players; where the compiler has coroutines.
int runPlayer(int count, char** words);

// Processes that start others. runAll() is "arena run".
int runAll(int count, char** words);
int runDemo(int count, char** words);

} // namespace arena
