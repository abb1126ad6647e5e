// Connects the analyser's plain function to a member of the socket's class.
#pragma once

#include "dispatch/analyser_socket.h"
#include "packaging/command_head.h"
#include "transport/command_socket.h"

namespace arena
{

template <auto Handle>
struct Deliverer;

template <class Socket, class Command, void (Socket::*Handle)(const Command&)>
struct Deliverer<Handle>
{
    static void handle(CCommandSocket* socket, CCmdHead* command, unsigned long, unsigned long)
    {
        (static_cast<Socket*>(socket)->*Handle)(*static_cast<const Command*>(command));
    }
};

} // namespace arena

// Installs a member of a socket class, given as &Class::member, for a command. The analyser must serve only sockets of
// that class.
#define ARENA_HANDLE(analyser, Command, member)                                                                        \
    analyser.Install(command_id::Command, Command::Command##_ProcessSocket, &::arena::Deliverer<member>::handle, 0, 0)
