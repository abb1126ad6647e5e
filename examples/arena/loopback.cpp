#include "examples/arena/loopback.h"

#include "examples/arena/text.h"

namespace arena
{

LoopbackPort::LoopbackPort(unsigned short port) : CFrameworkServerSocket(kLoopback, port)
{
    // Rejects all addresses except the permitted one.
    addRejectAddress({0, 0, 0, 0}, {0, 0, 0, 0});
    addPermissionAddress({127, 0, 0, 0}, {255, 0, 0, 0});
}

void copyRecord(const CCmdServerRegister& from, CCmdServerRegister& to)
{
    to.m_ServerType = from.m_ServerType;
    to.m_ServerId = from.m_ServerId;
    to.m_ServerName = from.m_ServerName;
    for (int i = 0; i < 3; ++i)
        to.m_ServerAddress[i] = from.m_ServerAddress[i];
    to.m_ServerPort = from.m_ServerPort;
}

zet::String_T<char> describe(const CCmdServerRegister& record)
{
    return zet::formatText("%s (type %d) at %s:%d", shown(record.m_ServerName), record.m_ServerType,
                           shown(record.m_ServerAddress[0]), record.m_ServerPort);
}

} // namespace arena
