#include "net/tcp/connection.h"

#include "framework/string_helper.h"
#include "net/inner/end_counts.h"
#include "net/inner/end_log.h"
#include "net/inner/peer_text.h"
#include "net/tcp/inner/bounds.h"
#include "net/tcp/inner/link.h"

namespace zet
{

namespace
{

using inner::Door;
using inner::Endpoint;
using inner::Reactor;
using inner::TcpLink;
using inner::TcpLinkRef;

// What connect() was given.
struct Target
{
    static String_T<wchar_t> textOf(const void* target)
    {
        const auto& self = *static_cast<const Target*>(target);
        return formatText(L"%s:%d", self.m_Host ? self.m_Host : L"", self.m_Port);
    }

    const wchar_t* m_Host;
    int m_Port;
};

} // namespace

bool TcpConnection::failConnect(EndCause cause, const wchar_t* host, unsigned short port)
{
    if (m_Link)
        drop();
    m_Handle = kNoHandle;
    m_State = kConnectFailed;
    const bool isLogged = isEndLogged();
    setFailure(cause);
    const Target target{host, port};
    if (!isLogged)
        inner::logEnd(inner::kConnectLine, getEndCause(), Target::textOf, &target);
    return false;
}

bool TcpConnection::connect(const wchar_t* ip, unsigned short port, bool keepAlive)
{
    if (!isInvalid())
    {
        const Target target{ip, port};
        inner::logEnd(inner::kConnectLine, {EndCause::kHeld, 0}, Target::textOf, &target);
        return false;
    }
    m_State = kConnectFailed;
    m_KeepAlive = keepAlive;
    beginAttempt();
    String_T<wchar_t> host = ip ? ip : L"";
    const auto name = StringHelper::wideToUtf8(host);
    Endpoint peer;
    const bool isName = !Door::parse(name, port, peer);
    if (!isName && !peer.isV4())
        host = inner::hostText(peer);
    if (host.isEmpty() || port == 0)
        return failConnect({EndCause::kBadAddress, 0}, ip, port);
    if (!expect(host, nullptr))
        return failConnect({EndCause::kTlsContext, 0}, ip, port);
    const auto reactor = Reactor::of(getSystem());
    if (!reactor)
        return failConnect({EndCause::kNoHandle, 0}, ip, port);
    Door::Fault fault;
    const Door::Family family = isName ? Door::kIPv4 : Door::familyOf(peer);
    const TcpLinkRef link(new TcpLink(*reactor, reactor->door()->open(Door::kStream, family, fault)));
    if (fault)
        return failConnect(inner::connectCauseOf(fault), ip, port);
    m_Reactor = reactor;
    setLink(link.get());
    m_Handle = link->getHandle();
    m_State = kConnecting;
    beginConnectTime();
    if (isName)
    {
        if (link->connectByName(*reactor, name, port))
            return true;
        noteCause({EndCause::kNoMemory, 0});
    }
    else
    {
        const bool hasBegun = link->connect(peer, fault);
        if (beginConnect(hasBegun, inner::connectCauseOf(fault)))
            return true;
    }
    return failConnect({EndCause::kNoHandle, 0}, ip, port);
}

bool TcpConnection::beginConnect(bool hasBegun, EndCause otherwise)
{
    if (!hasBegun)
    {
        noteCause(otherwise);
        return false;
    }
    // A peer on this machine has answered by now. This tick does not see what else is reported, so the next one comes
    // at once.
    m_Reactor->poll();
    m_Reactor->hurry();
    return !isPending(kConnected) || finishConnect();
}

bool TcpConnection::finishConnect()
{
    clearPending(kConnected);
    Door::Fault fault;
    if (m_Link->isNamed())
    {
        if (!m_Link->isResolved())
            return failNamed();
        const bool hasBegun = m_Link->beginNamed(fault);
        if (beginConnect(hasBegun, inner::connectCauseOf(fault)))
            return true;
        fail(kConnectFailed, {EndCause::kNoHandle, 0});
        return false;
    }
    if (m_Link->isRacing())
    {
        const inner::TcpRace::State state = m_Link->race(fault);
        m_Handle = m_Link->getHandle();
        if (state == inner::TcpRace::kRunning)
        {
            // The next tick may try the next address.
            setPending(kConnected);
            return true;
        }
        if (state == inner::TcpRace::kLost)
        {
            fail(kConnectFailed, fault ? inner::connectCauseOf(fault) : EndCause{EndCause::kNoMemory, 0});
            return false;
        }
    }
    else if ((fault = m_Link->endConnect()))
    {
        fail(kConnectFailed, inner::connectCauseOf(fault));
        return false;
    }
    if (m_Bounds && m_Bounds->m_Own)
        watchPeer();
    else if (m_KeepAlive)
        m_Link->door().setOption(m_Handle, Door::kKeepAlive, 1);
    m_State = kEstablished;
    joinReactor();
    if (m_State == kEstablished && attach(m_Handle))
        return true;
    fail(kConnectFailed, {EndCause::kThrown, 0});
    return false;
}

bool TcpConnection::failNamed()
{
    const EndCause cause{EndCause::kNotResolved, 0};
    // The peer has no address that could be logged later.
    const auto host = StringHelper::utf8ToWide(m_Link->getRaceName());
    const Target target{host, m_Link->getRacePort()};
    inner::logEnd(inner::kConnectLine, cause, Target::textOf, &target);
    setEndLogged();
    fail(kConnectFailed, cause);
    return false;
}

} // namespace zet
