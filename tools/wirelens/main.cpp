// wirelens: reads what the wire carries, for people and for scripts.
#include "framework/log.h"
#include "tools/wirelens/commands.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace
{

constexpr char kUsage[] =
    "usage:\n"
    "  wirelens catalogue [--json]                     every class: commands by id, records, messages by envelope\n"
    "  wirelens schema CLASS                           fields in wire order, types, defaults, quirks, smallest size\n"
    "  wirelens new CLASS                              a default-made object as JSON\n"
    "  wirelens read                                   lines \"CLASS cmd|data HEX\" in, a JSON object a line out\n"
    "  wirelens explain CLASS HEX                      offset, bytes, field and value, a line each\n"
    "  wirelens decode [--datagram|--packets] [FILE|-] frames from binary or hexadecimal as JSON lines\n";

} // namespace

int main(int argc, char** argv)
{
#ifdef _WIN32
    // Bytes come and go as they are on every platform.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    // What the library has to say about odd input goes beside the answers, not among them.
    zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& line) { wirelens::warn(line.getBuffer()); });

    const std::vector<std::string> arguments(argv + (argc > 1 ? 2 : argc), argv + argc);
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "catalogue")
        return wirelens::catalogue(arguments);
    if (command == "schema" && arguments.size() == 1)
        return wirelens::schema(arguments[0]);
    if (command == "new" && arguments.size() == 1)
        return wirelens::makeNew(arguments[0]);
    if (command == "read" && arguments.empty())
        return wirelens::read();
    if (command == "explain" && arguments.size() == 2)
        return wirelens::explain(arguments[0], arguments[1]);
    if (command == "decode" && arguments.size() <= 2)
        return wirelens::decode(arguments);
    std::fputs(kUsage, command == "--help" || command == "help" ? stdout : stderr);
    return command == "--help" || command == "help" ? 0 : 2;
}
