// The numbers of the messages in packs, for tools such as wirelens.
#include "examples/arena/command_line.h"
#include "examples/arena/protocol/pack_numbers.h"
#include "examples/arena/roles.h"
#include "framework/string_helper.h"
#include "host/service.h"

#include <cstdio>

namespace arena
{

int runNumbers(int count, char** words)
{
    CLI::App app("Prints the numbers of the messages in packs, a line of JSON per pair of envelopes.");
    if (const auto result = parseWords(app, count, words))
        return *result;
    std::fputs(zet::StringHelper::wideToUtf8(getPackTables()).getBuffer(), stdout);
    return host::kExitGood;
}

} // namespace arena
