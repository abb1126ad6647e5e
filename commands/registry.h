// The server registry: the servers of the platform find each other, check that others are alive and report their load.
// A server registers, greets the others, echoes, reports and unregisters; a registry announces new and leaving servers.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/registry.h"
#include "packaging/command_head.h"

// Server to server: asks for a server of a type. Answered by CCmdHostnameResponse. Has no client address and no account
// name.
class COMMONGROUND_API CCmdHostnameRequest : public CCmdHead
{
public:
    explicit CCmdHostnameRequest(unsigned short id = command_id::CCmdHostnameRequest) : CCmdHead(id) {}
    COMMAND_INTERFACE(CCmdHostnameRequest)
    void OutDebug(FILE* out) const override;

    // The type byte of a service, as CMyServiceSystem::GetServerType returns it.
    unsigned char m_ServerType = 0;
};

// Answers CCmdHostnameRequest: the same type, and the address and port of a server of that type.
class COMMONGROUND_API CCmdHostnameResponse : public CCmdHostnameRequest
{
public:
    explicit CCmdHostnameResponse(unsigned short id = command_id::CCmdHostnameResponse) : CCmdHostnameRequest(id) {}
    COMMAND_INTERFACE(CCmdHostnameResponse)
    void OutDebug(FILE* out) const override;

    zet::String_T<wchar_t> m_IP;
    unsigned short m_Port = 0;
};

// Server to registry: sent on start, with the identity and the addresses of the sender. Answered by
// CCmdServerRegisterSuccess or, on failure, CCmdServerRegisterFail.
class COMMONGROUND_API CCmdServerRegister : public CCmdSystem
{
public:
    static constexpr int kServerAddresses = 3;

    explicit CCmdServerRegister(unsigned short id = command_id::CCmdServerRegister) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerRegister)

    // The type byte of the service, CMyServiceSystem::GetServerType.
    unsigned char m_ServerType = 0;
    // The identifier that the service generated, CMyServiceSystem::GetServerId.
    zet::Uuid m_ServerId;
    // The name of the service.
    zet::String_T<wchar_t> m_ServerName;
    // Address texts, which the hosts define. The third of these is first on the wire.
    zet::String_T<wchar_t> m_ServerAddress[kServerAddresses];
    // The port of the service.
    unsigned short m_ServerPort = 0;
};

// Answers CCmdServerRegister: the server is registered, with an identifier.
class COMMONGROUND_API CCmdServerRegisterSuccess : public CCmdSystem
{
public:
    explicit CCmdServerRegisterSuccess(unsigned short id = command_id::CCmdServerRegisterSuccess) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerRegisterSuccess)

    zet::Uuid m_ServerId;
};

// Answers CCmdServerRegister: the registration is refused.
class COMMONGROUND_API CCmdServerRegisterFail : public CCmdSystem
{
public:
    explicit CCmdServerRegisterFail(unsigned short id = command_id::CCmdServerRegisterFail) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerRegisterFail)
    void OutDebug(FILE* out) const override;

    // The reason.
    zet::String_T<wchar_t> m_Msg;
};

// Server to server: a greeting, with the same fields as a registration. Answered by CCmdServerHelloReply.
class COMMONGROUND_API CCmdServerHello : public CCmdServerRegister
{
public:
    explicit CCmdServerHello(unsigned short id = command_id::CCmdServerHello) : CCmdServerRegister(id) {}
    COMMAND_INTERFACE(CCmdServerHello)
};

// Answers CCmdServerHello: the greeting returned, with the fields of its sender.
class COMMONGROUND_API CCmdServerHelloReply : public CCmdServerHello
{
public:
    explicit CCmdServerHelloReply(unsigned short id = command_id::CCmdServerHelloReply) : CCmdServerHello(id) {}
    COMMAND_INTERFACE(CCmdServerHelloReply)
};

// Registry to server: announces a new server, with the fields of its registration.
class COMMONGROUND_API CCmdServerNewNotify : public CCmdServerRegister
{
public:
    explicit CCmdServerNewNotify(unsigned short id = command_id::CCmdServerNewNotify) : CCmdServerRegister(id) {}
    COMMAND_INTERFACE(CCmdServerNewNotify)
};

// Registry to server: announces a server that has gone, with the fields of its registration. All of its texts may be
// empty.
class COMMONGROUND_API CCmdServerFadeNotify : public CCmdServerNewNotify
{
public:
    explicit CCmdServerFadeNotify(unsigned short id = command_id::CCmdServerFadeNotify) : CCmdServerNewNotify(id) {}
    COMMAND_INTERFACE(CCmdServerFadeNotify)
};

// Server to server: names a server that has gone by its identifier alone.
class COMMONGROUND_API CCmdServerGUIDFade : public CCmdSystem
{
public:
    explicit CCmdServerGUIDFade(unsigned short id = command_id::CCmdServerGUIDFade) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerGUIDFade)

    // The server that has gone.
    zet::Uuid m_ServerId;
};

// Server to server: ends a registration.
class COMMONGROUND_API CCmdServerUnregister : public CCmdSystem
{
public:
    explicit CCmdServerUnregister(unsigned short id = command_id::CCmdServerUnregister) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerUnregister)
};

// Server to server: orders a server to stop.
class COMMONGROUND_API CCmdServerShutdown : public CCmdSystem
{
public:
    explicit CCmdServerShutdown(unsigned short id = command_id::CCmdServerShutdown) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerShutdown)
};

// Server to server: checks that the other side is alive. Answered by CCmdServerEchoReply.
class COMMONGROUND_API CCmdServerEcho : public CCmdSystem
{
public:
    explicit CCmdServerEcho(unsigned short id = command_id::CCmdServerEcho) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerEcho)
    void OutDebug(FILE* out) const override;

    // 32 bits, which the reply returns unchanged.
    unsigned long m_Data = 0;
};

// Answers CCmdServerEcho: returns its m_Data unchanged.
class COMMONGROUND_API CCmdServerEchoReply : public CCmdServerEcho
{
public:
    explicit CCmdServerEchoReply(unsigned short id = command_id::CCmdServerEchoReply) : CCmdServerEcho(id) {}
    COMMAND_INTERFACE(CCmdServerEchoReply)
};

// Server to server: asks for the load of a server. Answered by CCmdServerInfoResponse.
class COMMONGROUND_API CCmdServerInfoRequest : public CCmdSystem
{
public:
    explicit CCmdServerInfoRequest(unsigned short id = command_id::CCmdServerInfoRequest) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerInfoRequest)
};

// Answers CCmdServerInfoRequest: address and load of a server.
class COMMONGROUND_API CCmdServerInfoResponse : public CCmdServerInfoRequest
{
public:
    explicit CCmdServerInfoResponse(unsigned short id = command_id::CCmdServerInfoResponse) : CCmdServerInfoRequest(id)
    {
    }
    COMMAND_INTERFACE(CCmdServerInfoResponse)
    // Does not send m_ServiceExtra.
    void OutDebug(FILE* out) const override;

    // The address on which the service is reachable.
    zet::String_T<wchar_t> m_ServiceIP;
    // Its port.
    unsigned short m_ServicePort = 0;
    // An extra value, which OutDebug leaves out.
    int m_ServiceExtra = 0;
    // The most players that the service takes.
    int m_MaxOnlineNum = 0;
    // The players online now.
    int m_OnlineCount = 0;
};
