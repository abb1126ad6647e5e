// The call that goes up from a command to the socket. It is defined beside the socket.
#pragma once

class CCmdHead;
class CCommandSocket;

// socket->send(command).
bool SendCommand(CCommandSocket* socket, const CCmdHead& command);
