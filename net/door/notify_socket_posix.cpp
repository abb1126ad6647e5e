#include "net/door/notify_socket.h"

#include <cstddef>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace zet::inner
{

bool sendToNamedSocket(const std::string& name, const std::string& text)
{
    sockaddr_un address{};
    if (name.size() < 2 || name.size() >= sizeof address.sun_path || (name[0] != '/' && name[0] != '@'))
        return false;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.data(), name.size());
    if (name[0] == '@')
        address.sun_path[0] = 0;
    // An abstract name has no terminator: each further byte would be a part of it.
    const size_t size = offsetof(sockaddr_un, sun_path) + name.size() + (name[0] == '/' ? 1 : 0);
    const int handle = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (handle < 0)
        return false;
    const ssize_t sent = ::sendto(handle, text.data(), text.size(), MSG_NOSIGNAL,
                                  reinterpret_cast<const sockaddr*>(&address), static_cast<socklen_t>(size));
    ::close(handle);
    return sent == static_cast<ssize_t>(text.size());
}

} // namespace zet::inner
