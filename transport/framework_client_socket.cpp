#include "transport/framework_client_socket.h"

CFrameworkClientSocket::CFrameworkClientSocket(CCmdAnalyserSocket* analyser) : CCommandSocket(analyser) {}

// Copy and move take the identity only; copying its texts may throw.
// NOLINTBEGIN(bugprone-copy-constructor-init,performance-noexcept-move-constructor,performance-move-constructor-init)
CFrameworkClientSocket::CFrameworkClientSocket(const CFrameworkClientSocket& other)
    : Unknown(), CCommandSocket(other.GetCmdAnalyser())
{
    copyIdentity(other);
}

CFrameworkClientSocket::CFrameworkClientSocket(CFrameworkClientSocket&& other)
    : CFrameworkClientSocket(static_cast<const CFrameworkClientSocket&>(other))
{
}

CFrameworkClientSocket& CFrameworkClientSocket::operator=(const CFrameworkClientSocket& other)
{
    copyIdentity(other);
    return *this;
}

CFrameworkClientSocket& CFrameworkClientSocket::operator=(CFrameworkClientSocket&& other)
{
    copyIdentity(other);
    return *this;
}
// NOLINTEND(bugprone-copy-constructor-init,performance-noexcept-move-constructor,performance-move-constructor-init)

void CFrameworkClientSocket::copyIdentity(const CFrameworkClientSocket& other)
{
    m_ServerType = other.m_ServerType;
    m_PeerServerId = other.m_PeerServerId;
    m_Version = other.m_Version;
    m_ServerName = other.m_ServerName;
    m_IP = other.m_IP;
    m_Port = other.m_Port;
    m_Reserved = other.m_Reserved;
    m_RegisteredId = other.m_RegisteredId;
}

bool CFrameworkClientSocket::connect(const wchar_t* ip, unsigned short port, bool keepAlive)
{
    m_IP = ip;
    m_Port = port;
    return TcpConnection::connect(ip, port, keepAlive);
}

const wchar_t* CFrameworkClientSocket::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:49 2019";
}
