#include "tests/support/udp_loopback.h"

#ifdef _WIN32
#include <winsock2.h>
#else
#include <netinet/in.h>
#endif

namespace test
{

sockaddr_in loopback(unsigned short port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = static_cast<unsigned int>(zet::Socket::inet_addr("127.0.0.1"));
    address.sin_port = htons(port);
    return address;
}

void NoteUdpServer::onUserData(const sockaddr_in& address, const void* data, int size)
{
    const auto* const bytes = static_cast<const unsigned char*>(data);
    m_UserData.push_back({static_cast<unsigned int>(address.sin_addr.s_addr), ntohs(address.sin_port),
                          std::vector<unsigned char>(bytes, bytes + size)});
}

} // namespace test
