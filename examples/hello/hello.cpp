// A host in one file: it sends one command to itself and receives it.
#include "commands/registry.h"
#include "dispatch/analyser.h"
#include "packaging/cmd_packager.h"

#include <cstdio>

static int s_Received = 0;

// Called for every command of its id. The command lives only as long as the call.
static void onEcho(CCmdHead* command, unsigned long peer, unsigned long)
{
    const auto* echo = static_cast<CCmdServerEcho*>(command);
    std::printf("received 0x%04x with %lu from peer %lu\n", echo->GetID(), echo->m_Data, peer);
    ++s_Received;
}

int main()
{
    // At start: one handler for each command that the host serves. From then on threads may share the analyser.
    static CCmdAnalyser analyser;
    analyser.Install(command_id::CCmdServerEcho, CCmdServerEcho::CCmdServerEcho_Process, onEcho);

    // The sender writes the command into a packager, and the packager into a datagram.
    CCmdServerEcho echo;
    echo.m_Data = 42;
    CCmdPackager packager;
    unsigned char datagram[256];
    if (!echo.Write(&packager))
        return 1;
    const int size = packager.Pack(datagram, sizeof datagram);
    std::printf("sent %d bytes\n", size);

    // The receiver gives the datagram to the analyser, which builds the command and calls the handler.
    analyser.Analyse(datagram, size, 7, 0);
    return s_Received == 1 ? 0 : 1;
}
