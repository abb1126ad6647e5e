#include "net/session/session.h"

#include "framework/log.h"
#include "framework/thread.h"
#include "net/inner/end_log.h"
#include "net/limits.h"
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

void NetSession::setLimits(const NetLimits& limits)
{
    m_Limits = std::make_unique<NetLimits>(limits);
}

EndCause NetSession::getHindrance() const
{
    if (m_Link)
        return {EndCause::kHeld, 0};
    return {m_Module && m_Module->getSystem() ? EndCause::kNone : EndCause::kNotStarted, 0};
}

Unknown::Handle_T<inner::NetLink> NetSession::makeLink(bool isAccepting)
{
    const Unknown::Handle_T<inner::NetLink> link = new inner::NetLink(*this, isAccepting, m_Module->getMessageLimit());
    link->setOutputLimit(m_Module->getOutputLimit());
    return link;
}

bool NetSession::accept()
{
    if (getHindrance())
        return false;
    const auto link = makeLink(true);
    if (!m_Module->accept(link))
        return false;
    m_ConnectionId = Uuid();
    m_Link = link;
    if (link->start(m_Module->getSystem()))
    {
        beginEvents();
        return true;
    }
    drop();
    return false;
}

bool NetSession::connect(const NetAddress& address, const Uuid& id)
{
    if (const EndCause hindrance = getHindrance())
    {
        if (hindrance.m_Code != EndCause::kHeld)
            setFailure(hindrance);
        const String_T<wchar_t> target = address.convertToString();
        inner::logEnd(
            inner::kConnectLine, hindrance,
            [](const void* text) { return *static_cast<const String_T<wchar_t>*>(text); }, &target);
        return false;
    }
    const auto link = makeLink(false);
    if (m_Limits)
        link->setLimits(*m_Limits);
    if (!link->setTlsContext(m_TlsContext) || !link->start(m_Module->getSystem()))
    {
        // The log says why.
        setFailure({TlsContext::isAvailable() ? EndCause::kNoMemory : EndCause::kUnavailable, 0});
        return false;
    }
    m_ConnectionId = id;
    m_Link = link;
    const bool isBegun = link->connect(address.getHost(), address.getPort(), true);
    if (isBegun && link->greet(id))
    {
        beginEvents();
        return true;
    }
    // The link has logged and counted it.
    beginEvents();
    noteCause(isBegun ? EndCause{EndCause::kNoMemory, 0} : link->getEndCause());
    endSilently();
    drop();
    return false;
}

void NetSession::closeFor(unsigned short reason)
{
    noteCause({EndCause::kHost, reason});
    close();
}

void NetSession::close()
{
    drop();
}

void NetSession::drop()
{
    // leave() may call back; this session has no link then.
    const Unknown::Handle_T<inner::NetLink> link = std::exchange(m_Link, nullptr);
    if (!link)
        return;
    link->leave(getNotedCause());
    noteCause(link->getEndCause());
    if (endSilently())
        callEnd(getEndCause());
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
