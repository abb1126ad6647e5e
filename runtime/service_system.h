// The frame of a server process.
#pragma once

#include "framework/system.h"
#include "framework/yield.h"

// A server derives its own class from it and passes its server type. What the derived class overrides calls the
// operations here.
class COMMONGROUND_API CMyServiceSystem : public zet::ServiceSystem
{
public:
    ~CMyServiceSystem() override;

    // A new identifier, for any use.
    zet::Uuid GenerateId();
    // Fixed at construction; any thread.
    unsigned char GetServerType() const { return m_ServerType; }
    const zet::Uuid& GetServerId() const { return m_ServerId; }

    const wchar_t* getClassTimestamp() const override;
    // Always true.
    bool ServiceOn() override;
    void ServiceOff() override;

protected:
    // Makes the identifier of this process and loads the two log modules; without a module the log has a sink less.
    explicit CMyServiceSystem(unsigned char serverType);

    // Starts the log, into files below "log/" and the system's name in the directory of the executable. False only
    // where zet::System::init() fails; nothing else has happened then.
    bool init() override;
    // The log stops first: the line of ServiceOff() goes to a stopped log.
    void exit() override;

    // The type lies right in front of the identifier; the room before it keeps the identifier on its boundary.
    alignas(zet::Uuid) unsigned char m_Room[alignof(zet::Uuid) - 1] = {};
    const unsigned char m_ServerType;
    zet::Uuid m_ServerId;
    // The process's yield object, from init() on.
    zet::Unknown::Handle_T<zet::Yield> m_Yield;
};
