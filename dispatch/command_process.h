// The pair of static functions of every receivable command, and the types that the analysers install.
#pragma once

#include "dispatch/trace.h"
#include "framework/export.h"
#include "packaging/cmd_packager.h"
#include "packaging/wire_interface.h"

class CCmdHead;
class CCommandSocket;

// Gets a command that lives only during the call: the handler must copy what it keeps.
using CmdHandler = void (*)(CCmdHead* command, unsigned long arg1, unsigned long arg2);
// Reads a command and calls the handler with the two arguments: the X_Process of a class X. False, and logged, for a
// payload that does not fit the class; the handler is not called then.
using CmdProcess = bool (*)(CCmdPackager* pk, CmdHandler handler, unsigned long arg1, unsigned long arg2);
// Gets a command whose id has no handler, or that was refused.
using CmdFallback = void (*)(CCmdPackager* pk, unsigned long arg1, unsigned long arg2);

// The same for commands of a stream socket: X_ProcessSocket, and the socket comes first.
using SocketCmdHandler = void (*)(CCommandSocket* socket, CCmdHead* command, unsigned long arg1, unsigned long arg2);
using SocketCmdProcess = bool (*)(CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler handler,
                                  unsigned long arg1, unsigned long arg2);
using SocketCmdFallback = void (*)(CCommandSocket* socket, CCmdPackager* pk, unsigned long arg1, unsigned long arg2);

// Logs that the command's payload was refused; the socket is the receiving one or null. Always false.
COMMONGROUND_API bool RefuseCommand(const CCmdHead& command, CCommandSocket* socket);
// Prints the command to the trace.
COMMONGROUND_API void TraceReceivedCommand(const CCmdHead& command, CCommandSocket* socket);

// Reads the payload into the command, refuses it unless the command uses all its bytes, and calls handle. False, and
// logged, for a refused payload. The socket is the receiving one or null. A template, so that the Read of a known class
// is called directly.
template <class Command, class Handle>
bool ProcessCommandBy(Command& command, CCommandSocket* socket, CCmdPackager* pk, Handle handle)
{
    // Sender and receiver must agree on the fields exactly: extra bytes are as wrong as missing ones.
    if (!command.Read(pk) || pk->GetReadPointer() != pk->GetDataSize())
        return RefuseCommand(command, socket);
    if (kTraceCommands)
        TraceReceivedCommand(command, socket);
    handle();
    return true;
}

// Declares the members of a command class other than its fields: order, schema, pair.
#define COMMAND_INTERFACE(Class)                                                                                       \
    WIRE_INTERFACE_CMD_OVERRIDE                                                                                        \
    static bool Class##_Process(CCmdPackager* pk, CmdHandler handler, unsigned long arg1, unsigned long arg2);         \
    static bool Class##_ProcessSocket(CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler handler,              \
                                      unsigned long arg1, unsigned long arg2);

// Defines the pair.
#define COMMAND_PAIR(Class)                                                                                            \
    bool Class::Class##_Process(CCmdPackager* pk, CmdHandler handler, unsigned long arg1, unsigned long arg2)          \
    {                                                                                                                  \
        Class command;                                                                                                 \
        return ProcessCommandBy(command, nullptr, pk, [&] { handler(&command, arg1, arg2); });                         \
    }                                                                                                                  \
    bool Class::Class##_ProcessSocket(CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler handler,              \
                                      unsigned long arg1, unsigned long arg2)                                          \
    {                                                                                                                  \
        Class command;                                                                                                 \
        return ProcessCommandBy(command, socket, pk, [&] { handler(socket, &command, arg1, arg2); });                  \
    }
