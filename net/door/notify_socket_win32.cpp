#include "net/door/notify_socket.h"

namespace zet::inner
{

bool sendToNamedSocket(const std::string&, const std::string&)
{
    return false;
}

} // namespace zet::inner
