#include "commands/registry.h"

#include "framework/string_helper.h"
#include "packaging/wire/order.h"

namespace
{

// One line of a trace; the pattern's text arguments are narrow.
template <class... Args>
void print(FILE* out, const char* pattern, const Args&... args)
{
    std::fputs(zet::formatText(pattern, args...).getBuffer(), out);
}

} // namespace

WIRE_COMMAND(CCmdHostnameRequest)
{
    return HEAD(CCmdHead) && FIELDS(r.m_ServerType);
}

WIRE_COMMAND(CCmdHostnameResponse)
{
    return HEAD(CCmdHostnameRequest) && FIELDS(r.m_IP, r.m_Port);
}

WIRE_COMMAND(CCmdServerRegister)
{
    return HEAD(CCmdSystem) && FIELDS(r.m_ServerType, r.m_ServerId, r.m_ServerName, r.m_ServerAddress[2],
                                      r.m_ServerAddress[0], r.m_ServerAddress[1], r.m_ServerPort);
}

WIRE_COMMAND(CCmdServerRegisterSuccess)
{
    return HEAD(CCmdSystem) && FIELDS(r.m_ServerId);
}

WIRE_COMMAND(CCmdServerRegisterFail)
{
    return HEAD(CCmdSystem) && FIELDS(r.m_Msg);
}

WIRE_COMMAND(CCmdServerHello)
{
    return HEAD(CCmdServerRegister);
}

WIRE_COMMAND(CCmdServerHelloReply)
{
    return HEAD(CCmdServerHello);
}

WIRE_COMMAND(CCmdServerNewNotify)
{
    return HEAD(CCmdServerRegister);
}

WIRE_COMMAND(CCmdServerFadeNotify)
{
    return HEAD(CCmdServerNewNotify);
}

WIRE_COMMAND(CCmdServerGUIDFade)
{
    return HEAD(CCmdSystem) && FIELDS(r.m_ServerId);
}

WIRE_COMMAND(CCmdServerUnregister)
{
    return HEAD(CCmdSystem);
}

WIRE_COMMAND(CCmdServerShutdown)
{
    return HEAD(CCmdSystem);
}

WIRE_COMMAND(CCmdServerEcho)
{
    return HEAD(CCmdSystem) && FIELDS(r.m_Data);
}

WIRE_COMMAND(CCmdServerEchoReply)
{
    return HEAD(CCmdServerEcho);
}

WIRE_COMMAND(CCmdServerInfoRequest)
{
    return HEAD(CCmdSystem);
}

WIRE_COMMAND(CCmdServerInfoResponse)
{
    return HEAD(CCmdServerInfoRequest) &&
           FIELDS(r.m_ServiceIP, r.m_ServicePort, r.m_ServiceExtra, r.m_MaxOnlineNum, r.m_OnlineCount);
}

void CCmdHostnameRequest::OutDebug(FILE* out) const
{
    CCmdHead::OutDebug(out);
    print(out, "  m_ServerType = %d\n", m_ServerType);
}

void CCmdHostnameResponse::OutDebug(FILE* out) const
{
    CCmdHostnameRequest::OutDebug(out);
    print(out, "  m_IP   = %s\n  m_Port = %d\n", zet::StringHelper::wideToUtf8(m_IP), m_Port);
}

void CCmdServerRegisterFail::OutDebug(FILE* out) const
{
    CCmdSystem::OutDebug(out);
    print(out, "  m_Msg = %s\n", zet::StringHelper::wideToUtf8(m_Msg));
}

void CCmdServerEcho::OutDebug(FILE* out) const
{
    CCmdSystem::OutDebug(out);
    // A 32-bit long, so the upper half of the values is printed as negative.
    print(out, "  m_Data = %ld\n", static_cast<int>(m_Data));
}

void CCmdServerInfoResponse::OutDebug(FILE* out) const
{
    CCmdServerInfoRequest::OutDebug(out);
    print(out, "  m_ServiceIP      = %s\n  m_ServicePort    = %d\n  m_MaxOnlineNum   = %d\n  m_OnlineCount    = %d\n",
          zet::StringHelper::wideToUtf8(m_ServiceIP), m_ServicePort, m_MaxOnlineNum, m_OnlineCount);
}
