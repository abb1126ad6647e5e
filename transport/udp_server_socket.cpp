#include "transport/udp_server_socket.h"

zet::Unknown::Handle_T<UdpServerSocket> UdpServerSocket::createInstance()
{
    return new UdpServerSocket;
}

UdpServerSocket::~UdpServerSocket()
{
    close();
}

bool UdpServerSocket::listen(const zet::String_T<wchar_t>& ip, unsigned short port)
{
    return zet::UdpServer::listen(port) && keepAddress(ip);
}

bool UdpServerSocket::listen(unsigned short port)
{
    return zet::UdpServer::listen(port) && keepAddress({});
}

bool UdpServerSocket::attach(unsigned int handle)
{
    return zet::UdpServer::attach(handle) && keepAddress({});
}

bool UdpServerSocket::keepAddress(const zet::String_T<wchar_t>& ip)
{
    m_IP = ip.getLength() > 0 ? ip : zet::Socket::getHostName();
    m_Port = getPort();
    return true;
}

bool UdpServerSocket::accept(zet::UdpServer::UdpConnection* connection)
{
    if (!zet::UdpServer::accept(connection))
        return false;
    m_ClientSockets.set(connection, connection);
    return true;
}

void UdpServerSocket::onEnd(zet::UdpServer::UdpConnection* connection)
{
    abandon(connection);
}

void UdpServerSocket::abandon(zet::UdpServer::UdpConnection* connection)
{
    m_ClientSockets.erase(connection);
}

const wchar_t* UdpServerSocket::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:49 2019";
}
