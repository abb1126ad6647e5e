#include "tests/support/notify_listener.h"

#include <cstddef>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace test
{

NotifyListener::NotifyListener() : m_Handle(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
{
    // The system chooses a free name.
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socklen_t size = offsetof(sockaddr_un, sun_path);
    if (bind(m_Handle, reinterpret_cast<sockaddr*>(&address), size) != 0)
        return;
    size = sizeof address;
    if (getsockname(m_Handle, reinterpret_cast<sockaddr*>(&address), &size) == 0)
        m_Name = "@" + std::string(address.sun_path + 1, size - offsetof(sockaddr_un, sun_path) - 1);
}

NotifyListener::~NotifyListener()
{
    close(m_Handle);
}

std::string NotifyListener::next()
{
    constexpr int kMostMilliseconds = 60000;
    pollfd waiting{m_Handle, POLLIN, 0};
    char text[512];
    if (poll(&waiting, 1, kMostMilliseconds) != 1)
        return "";
    const ssize_t got = recv(m_Handle, text, sizeof text, 0);
    return got > 0 ? std::string(text, static_cast<size_t>(got)) : "";
}

} // namespace test
