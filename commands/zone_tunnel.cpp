#include "commands/zone_tunnel.h"

#include "packaging/wire/order.h"

namespace
{

bool intoTunnel(const CCmdHead& command, zet::Buffer& frame)
{
    CCmdPackager packager;
    return command.Write(&packager) && CCmdPackager_packageToBuffer(packager, frame);
}

} // namespace

WIRE_COMMAND(CCmdGZ_clientToServer)
{
    return HEAD(CCmdPlatform) && UNLIMITED(r.m_Data1) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGZ_serverToClient)
{
    return HEAD(CCmdPlatform) && UNLIMITED(r.m_Data1);
}

bool toCCmdGZ_clientToServer(CCmdHead* cmd, CCmdGZ_clientToServer* tunnel)
{
    return intoTunnel(*cmd, tunnel->m_Data1);
}

bool toCCmdGZ_serverToClient(CCmdHead* cmd, CCmdGZ_serverToClient* tunnel)
{
    return intoTunnel(*cmd, tunnel->m_Data1);
}
