// The frame of a server process.
#pragma once

#include "framework/system.h"
#include "framework/yield.h"

// A server derives its own class and passes its server type. Overrides in the derived class must call the operations of
// this class.
class COMMONGROUND_API CMyServiceSystem : public zet::ServiceSystem
{
public:
    ~CMyServiceSystem() override;

    // Returns a new identifier.
    zet::Uuid GenerateId();
    // What the constructor was given, and the new identifier of this process. Fixed at construction; any thread.
    unsigned char GetServerType() const { return m_ServerType; }
    const zet::Uuid& GetServerId() const { return m_ServerId; }

    const wchar_t* getClassTimestamp() const override;
    // Always true.
    bool ServiceOn() override;
    void ServiceOff() override;

protected:
    // Creates the identifier of this process and loads the two log modules; a missing module is ignored.
    explicit CMyServiceSystem(unsigned char serverType);

    // Starts the log, with files in "log/SYSTEM_NAME/" in the directory of the executable. False only if
    // zet::System::init() fails; nothing else has happened then.
    bool init() override;
    // The folder of the log files that init() sets, with a closing '/'.
    zet::String_T<wchar_t> getLogFolder() const;

    // Stops the log first: the line of ServiceOff() goes to a stopped log.
    void exit() override;

    // The type directly precedes the identifier; the padding before it keeps the identifier aligned.
    alignas(zet::Uuid) unsigned char m_Room[alignof(zet::Uuid) - 1] = {};
    const unsigned char m_ServerType;
    zet::Uuid m_ServerId;
    // The process's yield object, after init().
    zet::Unknown::Handle_T<zet::Yield> m_Yield;
};
