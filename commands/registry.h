// The server registry: the servers of the platform find each other, check that others are alive and report their load.
// A server registers, greets the others, echoes, reports and unregisters; a registry announces new and leaving servers.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/registry.h"
#include "packaging/command_head.h"

// Requests a server of a type.
class COMMONGROUND_API CCmdHostnameRequest : public CCmdHead
{
public:
    explicit CCmdHostnameRequest(unsigned short id = command_id::CCmdHostnameRequest) : CCmdHead(id) {}
    COMMAND_INTERFACE(CCmdHostnameRequest)
    void OutDebug(FILE* out) const override;

    unsigned char m_ServerType = 0;
};

// The same type, and the address of a server of that type.
class COMMONGROUND_API CCmdHostnameResponse : public CCmdHostnameRequest
{
public:
    explicit CCmdHostnameResponse(unsigned short id = command_id::CCmdHostnameResponse) : CCmdHostnameRequest(id) {}
    COMMAND_INTERFACE(CCmdHostnameResponse)
    void OutDebug(FILE* out) const override;

    zet::String_T<wchar_t> m_IP;
    unsigned short m_Port = 0;
};

// A server's identity and address.
class COMMONGROUND_API CCmdServerRegister : public CCmdSystem
{
public:
    explicit CCmdServerRegister(unsigned short id = command_id::CCmdServerRegister) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerRegister)

    unsigned char m_ServerType = 0;
    zet::Uuid m_ServerId;
    zet::String_T<wchar_t> m_ServerName;
    // The third of these is first on the wire.
    zet::String_T<wchar_t> m_ServerAddress[3];
    unsigned short m_ServerPort = 0;
};

// The reply to a registration, with an identifier.
class COMMONGROUND_API CCmdServerRegisterSuccess : public CCmdSystem
{
public:
    explicit CCmdServerRegisterSuccess(unsigned short id = command_id::CCmdServerRegisterSuccess) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerRegisterSuccess)

    zet::Uuid m_ServerId;
};

// The refusal of a registration, with its reason.
class COMMONGROUND_API CCmdServerRegisterFail : public CCmdSystem
{
public:
    explicit CCmdServerRegisterFail(unsigned short id = command_id::CCmdServerRegisterFail) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerRegisterFail)
    void OutDebug(FILE* out) const override;

    zet::String_T<wchar_t> m_Msg;
};

// A greeting between servers.
class COMMONGROUND_API CCmdServerHello : public CCmdServerRegister
{
public:
    explicit CCmdServerHello(unsigned short id = command_id::CCmdServerHello) : CCmdServerRegister(id) {}
    COMMAND_INTERFACE(CCmdServerHello)
};

// The reply to a greeting.
class COMMONGROUND_API CCmdServerHelloReply : public CCmdServerHello
{
public:
    explicit CCmdServerHelloReply(unsigned short id = command_id::CCmdServerHelloReply) : CCmdServerHello(id) {}
    COMMAND_INTERFACE(CCmdServerHelloReply)
};

// A registry announces a new server.
class COMMONGROUND_API CCmdServerNewNotify : public CCmdServerRegister
{
public:
    explicit CCmdServerNewNotify(unsigned short id = command_id::CCmdServerNewNotify) : CCmdServerRegister(id) {}
    COMMAND_INTERFACE(CCmdServerNewNotify)
};

// A registry announces a server that has left, with all its data.
class COMMONGROUND_API CCmdServerFadeNotify : public CCmdServerNewNotify
{
public:
    explicit CCmdServerFadeNotify(unsigned short id = command_id::CCmdServerFadeNotify) : CCmdServerNewNotify(id) {}
    COMMAND_INTERFACE(CCmdServerFadeNotify)
};

// The same with the identifier only.
class COMMONGROUND_API CCmdServerGUIDFade : public CCmdSystem
{
public:
    explicit CCmdServerGUIDFade(unsigned short id = command_id::CCmdServerGUIDFade) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerGUIDFade)

    zet::Uuid m_ServerId;
};

// Ends a registration.
class COMMONGROUND_API CCmdServerUnregister : public CCmdSystem
{
public:
    explicit CCmdServerUnregister(unsigned short id = command_id::CCmdServerUnregister) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerUnregister)
};

// Orders a server to stop.
class COMMONGROUND_API CCmdServerShutdown : public CCmdSystem
{
public:
    explicit CCmdServerShutdown(unsigned short id = command_id::CCmdServerShutdown) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerShutdown)
};

// Checks that the other side is alive; the reply returns the 32 bits unchanged.
class COMMONGROUND_API CCmdServerEcho : public CCmdSystem
{
public:
    explicit CCmdServerEcho(unsigned short id = command_id::CCmdServerEcho) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerEcho)
    void OutDebug(FILE* out) const override;

    unsigned long m_Data = 0;
};

class COMMONGROUND_API CCmdServerEchoReply : public CCmdServerEcho
{
public:
    explicit CCmdServerEchoReply(unsigned short id = command_id::CCmdServerEchoReply) : CCmdServerEcho(id) {}
    COMMAND_INTERFACE(CCmdServerEchoReply)
};

// Requests a server's load.
class COMMONGROUND_API CCmdServerInfoRequest : public CCmdSystem
{
public:
    explicit CCmdServerInfoRequest(unsigned short id = command_id::CCmdServerInfoRequest) : CCmdSystem(id) {}
    COMMAND_INTERFACE(CCmdServerInfoRequest)
};

// A server's address and load.
class COMMONGROUND_API CCmdServerInfoResponse : public CCmdServerInfoRequest
{
public:
    explicit CCmdServerInfoResponse(unsigned short id = command_id::CCmdServerInfoResponse) : CCmdServerInfoRequest(id)
    {
    }
    COMMAND_INTERFACE(CCmdServerInfoResponse)
    // Does not send m_ServiceExtra.
    void OutDebug(FILE* out) const override;

    zet::String_T<wchar_t> m_ServiceIP;
    unsigned short m_ServicePort = 0;
    int m_ServiceExtra = 0;
    int m_MaxOnlineNum = 0;
    int m_OnlineCount = 0;
};
