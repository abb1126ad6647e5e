// A net session that carries commands.
#pragma once

#include "net/session/session.h"

class CCmdAnalyser;
class CCmdHead;
class CCmdPackager;
class Msg_NetCommand;

// Sends commands as messages and passes received ones to a CCmdAnalyser. An invalid frame is logged and dropped; a
// session that fails or ends calls its virtual close(). Threads are those of zet::NetSession.
class COMMONGROUND_API CNetSession : public zet::NetSession
{
public:
    // Module and analyser are not owned and must outlive the session's use of them. Without an analyser commands are
    // dropped.
    static zet::Unknown::Handle_T<CNetSession> createInstance(zet::NetModule* module, CCmdAnalyser* analyser);

    // The session that the first argument of an analyser's handler identifies. Valid within that handler only.
    static CNetSession* ofArgument(unsigned long argument);

    bool accept() override;
    bool connect(const zet::NetAddress& address, const zet::Uuid& id) override;
    // Called with the events of this session, on the run thread; the event lives during the call. The last four call
    // close().
    virtual void onConnectOk(const zet::Evt_NetConnectOk* event);
    virtual void onConnectFail(const zet::Evt_NetConnectFail* event);
    virtual void onClosed(const zet::Evt_NetClosed* event);
    virtual void onError(const zet::Evt_NetError* event);
    virtual void onAbort(const zet::Evt_NetAbort* event);

    // Sends the command as one message. False if it is null or does not write itself, or if send() is false.
    bool sendNetCommand(CCmdHead* command);
    bool sendNetCommand(CCmdPackager* packager);

    // The analyser passed at construction, which may be null.
    CCmdAnalyser* getCmdAnalyser() { return m_pCmdAnalyser; }
    // This session's own id, created with it: the from address of every command that it passes on.
    const zet::Uuid& getSessionId() const { return m_SessionId; }

    const wchar_t* getClassName() const override { return L"CNetSession"; }
    const wchar_t* getClassTimestamp() const override;

protected:
    // As createInstance().
    CNetSession(zet::NetModule* module, CCmdAnalyser* analyser);

    CCmdAnalyser* m_pCmdAnalyser;
    zet::Uuid m_SessionId;

private:
    void onMsg_NetCommand(Msg_NetCommand* message);
};
