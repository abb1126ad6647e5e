// The servers that a client chooses from before it logs in.
#include "commands/server_choice.h"
#include "commands/registry.h"
#include "examples/arena/peers.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/platform_codes.h"

namespace arena::platform
{

namespace
{

// The numbers of the list count from 1 in the order of the ids, which is the same at all platforms.
void listServers(Platform& platform, Session& session)
{
    CCmdServerListReply reply;
    int number = 0;
    for (const auto& [id, server] : platform.getServers())
    {
        PlatformServerInfo info;
        info.m_Enabled = true;
        info.m_Value1 = ++number;
        info.m_Value2 = getServed(server).m_Port;
        info.m_Name = server.m_ServerName;
        info.m_Node = id.m_Node;
        reply.m_PlatformServerInfos[info.m_Node] = info;
    }
    reply.m_Value1 = number;
    session.send(reply);
}

// m_Value1: the number of the list. The reply has the address to connect to, which is this connection's for this
// server.
void selectServer(Platform& platform, Session& session, const CCmdSelectServerRequest& request)
{
    CCmdSelectServerReply reply;
    int number = 0;
    reply.m_Value2 = protocol::kUnknownThing;
    for (const auto& [id, server] : platform.getServers())
        if (++number == request.m_Value1)
        {
            session.m_ChosenServer = number;
            const HostPort address = getServed(server);
            reply.m_Text1 = address.m_Host;
            reply.m_Value1 = address.m_Port;
            reply.m_Value2 = protocol::kDone;
            reply.m_Value3 = number;
        }
    session.send(reply);
}

} // namespace

void installServerChoice(Platform& platform)
{
    platform.on<CCmdServerListRequest>([&platform](Session& session, const CCmdServerListRequest&)
                                       { listServers(platform, session); });
    platform.on<CCmdSelectServerRequest>([&platform](Session& session, const CCmdSelectServerRequest& request)
                                         { selectServer(platform, session, request); });
}

} // namespace arena::platform
