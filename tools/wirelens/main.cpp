// wirelens: decodes the wire format, for people and for scripts.
#include "framework/log.h"
#include "tools/wirelens/commands.h"
#include "tools/wirelens/grammar.h"

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#endif

int main(int argc, char** argv)
{
#ifdef _WIN32
    // Input and output are binary on every platform.
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
#endif
    // The library's log lines go to the standard error, not among the results.
    zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& line) { wirelens::warn(line.getBuffer()); });

    return wirelens::run(argc, argv);
}
