// The calls that go up from the analysers to the socket. They are defined beside the socket.
#pragma once

#include "framework/string.h"

class CCommandSocket;

// socket->getPeerName().
zet::String_T<wchar_t> PeerNameOf(CCommandSocket* socket);
// socket->OnCmdRecv(size).
void CountReceivedCommand(CCommandSocket* socket, int size);
