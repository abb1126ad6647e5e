#include "commands/zone_tunnel.h"

#include "packaging/wire/order.h"

namespace
{

// A frame may be larger than a packager's buffer value.
bool frameOf(wire::Writer<CCmdPackager>& v, const zet::Buffer& frame)
{
    return wire::writeSizedBytes(v.packager(), frame);
}

bool frameOf(wire::Reader<CCmdPackager>& v, zet::Buffer& frame)
{
    return wire::readSizedBytes(v.packager(), &frame);
}

bool frameOf(wire::Describer& v, const zet::Buffer& frame)
{
    return v.Fields("m_Data1", frame);
}

bool intoTunnel(const CCmdHead& command, zet::Buffer& frame)
{
    CCmdPackager packager;
    return command.Write(&packager) && CCmdPackager_packageToBuffer(packager, frame);
}

} // namespace

WIRE_COMMAND(CCmdGZ_clientToServer)
{
    return HEAD(CCmdPlatform) && BY_HAND(Unlimited, frameOf(v, r.m_Data1)) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdGZ_serverToClient)
{
    return HEAD(CCmdPlatform) && BY_HAND(Unlimited, frameOf(v, r.m_Data1));
}

bool toCCmdGZ_clientToServer(CCmdHead* cmd, CCmdGZ_clientToServer* tunnel)
{
    return intoTunnel(*cmd, tunnel->m_Data1);
}

bool toCCmdGZ_serverToClient(CCmdHead* cmd, CCmdGZ_serverToClient* tunnel)
{
    return intoTunnel(*cmd, tunnel->m_Data1);
}
