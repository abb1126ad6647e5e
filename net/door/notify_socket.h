// Datagrams to a socket of this machine that is named by a path, as a service manager takes them.
#pragma once

#include <string>

namespace zet::inner
{

// Sends one datagram, without waiting. The name is an absolute path, or starts with '@' for an abstract name. False if
// it was not sent, and where the system has no such sockets.
bool sendToNamedSocket(const std::string& name, const std::string& text);

} // namespace zet::inner
