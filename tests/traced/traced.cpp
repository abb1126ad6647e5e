// Receives one command with the trace on: dispatch/trace.cpp is compiled into this program as the option
// COMMONGROUND_TRACE_COMMANDS compiles it into the library. The test that runs it checks the output.
#include "dispatch/command_process.h"
#include "packaging/command_head.h"

#include <cstdio>

class CCmdShown : public CCmdHead
{
public:
    CCmdShown() : CCmdHead(1) {}
    void OutDebug(FILE* out) const override { std::fputs("its fields\n", out); }
    static bool CCmdShown_Process(CCmdPackager* pk, CmdHandler handler, unsigned long arg1, unsigned long arg2);
    static bool CCmdShown_ProcessSocket(CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler handler,
                                        unsigned long arg1, unsigned long arg2);
};

COMMAND_PAIR(CCmdShown)

int main()
{
    // Only the standard output counts.
    std::fclose(stderr);
    CCmdPackager packager;
    if (!CCmdShown().Write(&packager))
        return 1;
    const auto handler = [](CCmdHead*, unsigned long, unsigned long) { std::puts("handled"); };
    return CCmdShown::CCmdShown_Process(&packager, handler, 0, 0) ? 0 : 1;
}
