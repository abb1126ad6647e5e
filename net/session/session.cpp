#include "net/session/session.h"

#include "framework/log.h"
#include "framework/thread.h"
#include "net/session/inner/link.h"
#include "net/session/module.h"

namespace zet
{

Unknown::Handle_T<NetSession> NetSession::createInstance(NetModule* module)
{
    return new NetSession(module);
}

NetSession::NetSession(NetModule* module) : m_Module(module) {}

NetSession::~NetSession()
{
    drop();
}

bool NetSession::isReady() const
{
    return !m_Link && m_Module && m_Module->getSystem();
}

Unknown::Handle_T<inner::NetLink> NetSession::makeLink(bool isAccepting)
{
    const Unknown::Handle_T<inner::NetLink> link = new inner::NetLink(*this, isAccepting, m_Module->getMessageLimit());
    link->setOutputLimit(m_Module->getOutputLimit());
    return link;
}

bool NetSession::accept()
{
    if (!isReady())
        return false;
    const auto link = makeLink(true);
    if (!m_Module->accept(link))
        return false;
    m_ConnectionId = Uuid();
    m_Link = link;
    if (link->start(m_Module->getSystem()))
        return true;
    drop();
    return false;
}

bool NetSession::connect(const NetAddress& address, const Uuid& id)
{
    if (!isReady())
        return false;
    const auto link = makeLink(false);
    if (!link->setTlsContext(m_TlsContext) || !link->start(m_Module->getSystem()))
        return false;
    m_ConnectionId = id;
    m_Link = link;
    if (link->connect(address.getHost(), address.getPort(), true) && link->greet(id))
        return true;
    drop();
    return false;
}

void NetSession::close()
{
    drop();
}

void NetSession::drop()
{
    // leave() may call back; this session has no link then.
    const Unknown::Handle_T<inner::NetLink> link = std::exchange(m_Link, nullptr);
    if (link)
        link->leave();
}

bool NetSession::send(Message* message)
{
    return message && m_Link && m_Link->sendMessage(*message);
}

void NetSession::onMessage(Message* message)
{
    m_Messages.dispense(message);
}

NetSession::State NetSession::getState() const
{
    return !m_Link || m_Link->hasEnded() ? kDown : m_Link->isOpen() ? kEstablished : kConnecting;
}

String_T<wchar_t> NetSession::getPeerName() const
{
    return m_Link ? m_Link->getPeerName() : String_T<wchar_t>();
}

void NetSession::dispense(NetEvent& event)
{
    event.m_Session = this;
    m_Events.dispense(&event);
}

void NetSession::finish(NetEvent& event)
{
    const Unknown::Handle_T<inner::NetLink> link = m_Link;
    inner::NetLink::guard(*this, [&] { dispense(event); });
    if (m_Link == link)
        drop();
}

} // namespace zet
