// The call from a command up to the socket layer. Defined beside the socket.
#pragma once

class CCmdHead;
class CCommandSocket;

// socket->send(command).
bool SendCommand(CCommandSocket* socket, const CCmdHead& command);
