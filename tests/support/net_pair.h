// Net sessions for tests: a module that accepts every session, and sessions that record their events.
#pragma once

#include "dispatch/analyser.h"
#include "net/session/module.h"
#include "tests/support/loopback.h"
#include "transport/net_message.h"
#include "transport/net_session.h"

#include <functional>
#include <string>
#include <vector>

namespace test
{

// The handler of NoteCommand; one per analyser of net commands.
class NetNotes
{
public:
    NetNotes() { m_Analyser.Install(NoteCommand::kId, &NetNotes::process, &NetNotes::ignore); }

    CCmdAnalyser m_Analyser;
    // Called instead of a handler; static, since a handler's arguments belong to the session.
    static inline std::function<void(unsigned long arg1, unsigned long arg2, const NoteCommand&)> s_Handler;

private:
    static void ignore(CCmdHead*, unsigned long, unsigned long) {}
    static bool process(CCmdPackager* pk, CmdHandler, unsigned long arg1, unsigned long arg2)
    {
        NoteCommand command;
        return ProcessCommandBy(command, nullptr, pk,
                                [&]
                                {
                                    if (s_Handler)
                                        s_Handler(arg1, arg2, command);
                                });
    }
};

// Each note is a letter: o for connect ok, f for connect fail, c for closed, e for error, a for abort, x for the
// virtual close().
class NotingSession : public CNetSession
{
public:
    NotingSession(zet::NetModule* module, CCmdAnalyser* analyser) : CNetSession(module, analyser) {}

    void close() override
    {
        m_Notes += 'x';
        CNetSession::close();
    }
    void onConnectOk(const zet::Evt_NetConnectOk* event) override
    {
        m_Notes += 'o';
        CNetSession::onConnectOk(event);
        if (m_OnOk)
            m_OnOk();
    }
    void onConnectFail(const zet::Evt_NetConnectFail* event) override
    {
        note('f', event), CNetSession::onConnectFail(event);
    }
    void onClosed(const zet::Evt_NetClosed* event) override
    {
        note('c', event);
        CNetSession::onClosed(event);
        if (m_OnClosed)
            m_OnClosed();
    }
    void onError(const zet::Evt_NetError* event) override { note('e', event), CNetSession::onError(event); }
    void onAbort(const zet::Evt_NetAbort* event) override { note('a', event), CNetSession::onAbort(event); }

    void note(char what, const zet::NetEvent* event)
    {
        m_Notes += event->m_Session == this ? what : '?';
        m_StateAtEnd = getState();
    }

    std::string m_Notes;
    // The result of getState() in the last handler other than that of connect ok.
    State m_StateAtEnd = kEstablished;
    std::function<void()> m_OnOk;
    std::function<void()> m_OnClosed;
};
using NotingHandle = zet::Unknown::Handle_T<NotingSession>;

class NotingModule : public zet::NetModule
{
public:
    explicit NotingModule(CCmdAnalyser* analyser) : m_Analyser(analyser) {}

    void onAccept() override
    {
        const NotingHandle session = new NotingSession(this, m_Analyser);
        if (session->accept())
            m_Accepted.push_back(session);
    }

    CCmdAnalyser* m_Analyser;
    std::vector<NotingHandle> m_Accepted;
};

// One System with a module that listens and a module that connects.
struct NetPair
{
    NetPair() : m_Server(new NotingModule(&m_Notes.m_Analyser)), m_Client(zet::NetModule::createInstance())
    {
        m_System.init();
        m_Server->start(&m_System);
        m_Client->start(&m_System);
        m_IsListening = m_Server->listen(0, 100);
    }
    ~NetPair()
    {
        NetNotes::s_Handler = nullptr;
        m_Server->m_Accepted.clear();
        m_Server->close();
        m_System.exit();
    }

    zet::NetAddress address() const { return zet::NetAddress(L"127.0.0.1", m_Server->getPort()); }
    NotingHandle make() { return new NotingSession(m_Client, &m_Notes.m_Analyser); }
    // A session that is established on both ends, or null.
    NotingHandle connect(const zet::Uuid& id = zet::Uuid())
    {
        const NotingHandle session = make();
        const size_t before = m_Server->m_Accepted.size();
        if (!session->connect(address(), id) || !tickUntil(m_System,
                                                           [&] {
                                                               return session->getState() ==
                                                                          zet::NetSession::kEstablished &&
                                                                      m_Server->m_Accepted.size() > before;
                                                           }))
            return nullptr;
        return session;
    }
    // The server's end of the latest session.
    const NotingHandle& accepted() const { return m_Server->m_Accepted.back(); }

    NetNotes m_Notes;
    zet::System m_System;
    zet::Unknown::Handle_T<NotingModule> m_Server;
    zet::Unknown::Handle_T<zet::NetModule> m_Client;
    bool m_IsListening = false;
};

} // namespace test
