#include "transport/net_session.h"

#include "dispatch/analyser.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "transport/net_message.h"

namespace
{

// The session whose command this thread handles: on some platforms a handler's argument is too small for a pointer.
thread_local CNetSession* t_Handling = nullptr;

struct Handling
{
    explicit Handling(CNetSession* session) : m_Before(std::exchange(t_Handling, session)) {}
    ~Handling() { t_Handling = m_Before; }
    Handling(const Handling&) = delete;
    Handling& operator=(const Handling&) = delete;

    CNetSession* m_Before;
};

unsigned long argumentOf(CNetSession* session)
{
    return static_cast<unsigned long>(reinterpret_cast<unsigned long long>(session));
}

} // namespace

zet::Unknown::Handle_T<CNetSession> CNetSession::createInstance(zet::NetModule* module, CCmdAnalyser* analyser)
{
    return new CNetSession(module, analyser);
}

CNetSession::CNetSession(zet::NetModule* module, CCmdAnalyser* analyser) : NetSession(module), m_pCmdAnalyser(analyser)
{
    zet::uuid_create(m_SessionId);
    zet::EventDispenser& events = getEventDispenser();
    events.addEventHandler(zet::EventHandler(this, &CNetSession::onConnectOk));
    events.addEventHandler(zet::EventHandler(this, &CNetSession::onConnectFail));
    events.addEventHandler(zet::EventHandler(this, &CNetSession::onClosed));
    events.addEventHandler(zet::EventHandler(this, &CNetSession::onError));
    events.addEventHandler(zet::EventHandler(this, &CNetSession::onAbort));
    getMessageDispenser().addMessageHandler(zet::MessageHandler(this, &CNetSession::onMsg_NetCommand));
}

CNetSession* CNetSession::ofArgument(unsigned long argument)
{
    return t_Handling && argument == argumentOf(t_Handling) ? t_Handling : nullptr;
}

bool CNetSession::accept()
{
    return NetSession::accept();
}

bool CNetSession::connect(const zet::NetAddress& address, const zet::Uuid& id)
{
    return NetSession::connect(address, id);
}

void CNetSession::onConnectOk(const zet::Evt_NetConnectOk*) {}

void CNetSession::onConnectFail(const zet::Evt_NetConnectFail*)
{
    close();
}

void CNetSession::onClosed(const zet::Evt_NetClosed*)
{
    close();
}

void CNetSession::onError(const zet::Evt_NetError*)
{
    close();
}

void CNetSession::onAbort(const zet::Evt_NetAbort*)
{
    close();
}

bool CNetSession::sendNetCommand(CCmdHead* command)
{
    if (!command)
        return false;
    CCmdPackager packager;
    return command->Write(&packager) && sendNetCommand(&packager);
}

bool CNetSession::sendNetCommand(CCmdPackager* packager)
{
    const auto message = convertToNetMessage(packager);
    if (!message || !send(message))
        return false;
    if (CommandObserver* const observer = m_pCmdAnalyser ? m_pCmdAnalyser->GetObserver() : nullptr)
        observer->onSent(packager->GetCmdID(), packager->GetDataSize());
    return true;
}

void CNetSession::onMsg_NetCommand(Msg_NetCommand* message)
{
    const zet::SharedPtr<CCmdPackager> packager = convertToNetCommand(message);
    if (!packager || !m_pCmdAnalyser)
        return;
    // The frame's from address is ignored.
    packager->SetFromAddress(m_SessionId);
    const Handling handling(this);
    m_pCmdAnalyser->Analyse(*packager, argumentOf(this), 0);
}

const wchar_t* CNetSession::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:50 2019";
}
