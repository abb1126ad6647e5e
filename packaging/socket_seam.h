// The three calls that go up to the socket from the floors below it. They are defined beside the socket.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

class CCmdHead;
class CCommandSocket;

// socket->send(command).
bool SendCommand(CCommandSocket* socket, const CCmdHead& command);
// socket->getPeerName().
zet::String_T<wchar_t> PeerNameOf(CCommandSocket* socket);
// socket->OnCmdRecv(size).
void CountReceivedCommand(CCommandSocket* socket, int size);
