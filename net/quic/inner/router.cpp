#include "net/quic/inner/router.h"

#include "framework/inner/guard.h"
#include "framework/inner/make_room.h"
#include "framework/inner/mark.h"
#include "framework/inner/nanoseconds.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/door/addresses.h"
#include "net/inner/peer_text.h"

#include <gnutls/crypto.h>

#include <algorithm>
#include <cstring>

namespace zet::inner
{

namespace
{

using Connection = UdpServer::UdpConnection;

void reportThrown(const char* what)
{
    report([&] { Log::error(L"Exception in a handler of a UDP port: %s", StringHelper::utf8ToWide(what)); });
    report([] { Log::whistle(false); });
}

} // namespace

template <class Call>
bool QuicRouter::guard(Call call)
{
    return guardCall(call, [](const char* what) { reportThrown(what ? what : "?"); });
}

bool UdpRouter::isAvailable()
{
    return true;
}

std::shared_ptr<UdpRouter> UdpRouter::make(UdpServer& server, const std::shared_ptr<Reactor>& reactor,
                                           DoorHandle& handle)
{
    const auto opened = UdpPort::open(reactor, handle);
    if (!opened)
        return nullptr;
    std::shared_ptr<QuicRouter> made;
    try
    {
        made = std::make_shared<QuicRouter>(server, reactor, opened);
        if (made->init())
            return made;
    }
    catch (...)
    {
        handle.set(opened->giveAway());
        throw;
    }
    handle.set(opened->giveAway());
    return nullptr;
}

QuicRouter::QuicRouter(UdpServer& server, const std::shared_ptr<Reactor>& reactor, const Ref<UdpPort>& port)
    : m_Server(&server), m_Reactor(reactor), m_Port(port), m_Now(NGTCP2_SECONDS), m_LastTime(getNanoseconds())
{
}

QuicRouter::~QuicRouter()
{
    m_Port->close();
}

bool QuicRouter::init()
{
    return gnutls_rnd(GNUTLS_RND_KEY, m_Secret, sizeof m_Secret) >= 0 && m_Tls.init(m_Server->getTlsContext());
}

unsigned short QuicRouter::getPort() const
{
    return getAddress().m_Port;
}

unsigned long long QuicRouter::getLostPackets() const
{
    unsigned long long packets = m_Lost;
    for (const auto& link : m_Links)
        packets += link->lostPackets();
    return packets;
}

QuicTime QuicRouter::now()
{
    const unsigned long long time = getNanoseconds();
    // When a test clock begins or ends, the time goes back.
    if (time > m_LastTime)
        m_Now += time - m_LastTime;
    m_LastTime = time;
    return m_Now;
}

bool QuicRouter::join(const std::shared_ptr<Reactor>& reactor)
{
    if (reactor == m_Reactor)
        return true;
    // Another door cannot use the handle.
    if (reactor->door() != m_Reactor->door())
        return false;
    m_Port->flush();
    // Owned here until a port owns it, so that a failure closes it.
    DoorHandle handle(reactor->door(), m_Port->giveAway());
    // The System of the old reactor may continue on another thread, and must not call this router then.
    m_Reactor->forgetLater(*this);
    const auto port = UdpPort::open(reactor, handle);
    if (!port)
    {
        // If a host has closed the handle itself, its number may belong to another file by now: do not close that one.
        Endpoint own;
        if (handle.isOpen() && !(handle.door().getOwnEndpoint(handle.get(), own) && own == m_Port->getAddress()))
            handle.release();
        return false;
    }
    m_Port = port;
    m_Reactor = reactor;
    m_IsLate = false;
    for (const auto& link : m_Links)
        link->lookUpAgain(*reactor);
    return true;
}

EndCause QuicRouter::connect(Connection& connection, const wchar_t* ip, unsigned short port, const Uuid& id)
{
    if (!UdpLink::isFree(connection))
        return {EndCause::kHeld, 0};
    if (!m_Server)
        return {EndCause::kNotStarted, 0};
    if (!ip || !*ip || port == 0)
        return {EndCause::kBadAddress, 0};
    const String_T<char> name = StringHelper::wideToUtf8(ip);
    Endpoint peer;
    const bool isName = !Door::parse(name, port, peer);
    const String_T<char> host = isName || peer.isV4() ? name : StringHelper::wideToUtf8(hostText(peer));
    QuicLink& link = keep(std::make_unique<QuicLink>(*this));
    EndCause fault{EndCause::kNoMemory, 0};
    const auto begin = [&]
    {
        if (link.beginClient(host, id) && (isName ? link.lookUp(*m_Reactor, port) : link.openClient(peer)))
            return true;
        if (link.getCause())
            fault = link.getCause();
        return false;
    };
    if (!open(link, begin))
        return fault;
    ++m_Count;
    link.setOwner(connection, Connection::kConnecting, id, peer);
    wake(link, QuicLink::kWrite);
    return {};
}

bool QuicRouter::give(Connection& connection)
{
    if (m_Visitors.empty() || !UdpLink::isFree(connection))
        return false;
    QuicLink& link = *m_Visitors.front();
    m_Visitors.pop_front();
    link.setOwner(connection, Connection::kEstablished, link.getId(), link.getPeer());
    link.onAccepted();
    wake(link, QuicLink::kTickOwner);
    return true;
}

bool QuicRouter::sendUserData(const Endpoint& peer, const void* data, int size)
{
    unsigned char* const room = m_Port->room();
    if (!room)
        return false;
    std::memcpy(room, data, static_cast<size_t>(size));
    post(peer, static_cast<size_t>(size), Endpoint());
    return true;
}

void QuicRouter::post(const Endpoint& peer, size_t size, const Endpoint& local)
{
    ++m_Traffic.m_DatagramsOut;
    m_Traffic.m_BytesOut += size;
    m_Port->commit(peer, static_cast<int>(size), local);
    if (m_IsTicking || m_IsLate)
        return;
    m_IsLate = m_Reactor->flushLater(weak_from_this());
    if (!m_IsLate)
        m_Port->flush();
}

void QuicRouter::list(QuicLink& link)
{
    if (link.m_IsListed)
        return;
    m_Listed.push_back(&link);
    link.m_IsListed = true;
    if (!m_IsTicking && !m_IsLate)
        m_IsLate = m_Reactor->flushLater(weak_from_this());
}

void QuicRouter::wake(QuicLink& link, unsigned char pending)
{
    if (!m_Server)
        return;
    link.m_Pending |= pending;
    list(link);
}

bool QuicRouter::makeId(QuicLink& link, ngtcp2_cid& id)
{
    id.datalen = QuicId::kSize;
    if (gnutls_rnd(GNUTLS_RND_RANDOM, id.data, id.datalen) < 0)
        return false;
    addId(link, id);
    return true;
}

void QuicRouter::addId(QuicLink& link, const ngtcp2_cid& id)
{
    // In this order: forget() removes from m_ByName only the ids that the link has.
    link.addId(id);
    m_ByName.emplace(QuicId(id), &link);
}

void QuicRouter::removeId(QuicLink& link, const ngtcp2_cid& id)
{
    if (id.datalen != QuicId::kSize)
        return;
    m_ByName.erase(QuicId(id));
    // Or the ids of the link would grow: a peer may use any number of ids in turn.
    link.removeId(QuicId(id));
}

QuicLink* QuicRouter::find(const unsigned char* id) const
{
    const auto place = m_ByName.find(QuicId(id));
    return place == m_ByName.end() ? nullptr : place->second;
}

QuicLink& QuicRouter::keep(std::unique_ptr<QuicLink> link)
{
    // Reserve the list entries now, so that later steps of a link need no memory.
    const size_t links = m_Links.size() + 1;
    makeRoom(m_Timers, links);
    const size_t listed = std::max({m_Listed.size(), m_Round.size(), m_Writing.size()}) + links;
    makeRoom(m_Listed, listed);
    makeRoom(m_Round, listed);
    makeRoom(m_Writing, listed);
    link->m_Place = m_Links.size();
    m_Links.push_back(std::move(link));
    return *m_Links.back();
}

bool QuicRouter::hasSpaceForClosed() const
{
    constexpr int kRemains = 1024;
    return static_cast<int>(m_Links.size()) - m_Count < std::max(settings().m_ConnectionLimit, kRemains);
}

void QuicRouter::onOver(QuicLink& link)
{
    --m_Count;
    if (link.isServer())
    {
        if (m_Server)
        {
            m_Server->countEnd(link.getCause());
            m_Server->m_Accepts.m_HandshakesFailed += !link.isStanding();
        }
        --m_VisitorCount;
        m_Addresses.remove(link.getOrigin());
        if (link.isAnnounced() && !link.getOwner())
            std::erase(m_Visitors, &link);
    }
    schedule(link);
}

void QuicRouter::forget(QuicLink& link)
{
    for (const QuicId& id : link.getIds())
    {
        const auto place = m_ByName.find(id);
        if (place != m_ByName.end() && place->second == &link)
            m_ByName.erase(place);
    }
    removeTimer(link);
    if (link.m_IsListed)
    {
        std::replace(m_Listed.begin(), m_Listed.end(), &link, static_cast<QuicLink*>(nullptr));
        std::replace(m_Round.begin(), m_Round.end(), &link, static_cast<QuicLink*>(nullptr));
    }
    const size_t place = link.m_Place;
    m_Links.back()->m_Place = place;
    std::swap(m_Links[place], m_Links.back());
    m_Links.pop_back();
}

void QuicRouter::tick()
{
    if (m_IsTicking)
        return;
    const Mark ticking(m_IsTicking);
    m_Reactor->pollOutsideTick();
    m_Greetings = 0;
    m_TokenChecks = 0;
    m_VersionAnswers = 0;
    m_Admissions = 0;
    receive();
    runTimers();
    callVisitors();
    takeTurns();
    if (!m_Server)
        return;
    // Write the links that were woken after their turn.
    writeListed();
    m_Port->flush();
    hurry();
}

void QuicRouter::endTick()
{
    m_IsLate = false;
    if (!m_Server)
        return;
    writeListed();
    m_Port->flush();
    hurry();
}

void QuicRouter::hurry()
{
    const auto mustWrite = [](const QuicLink* link) { return link && (link->m_Pending & QuicLink::kWrite); };
    if (!m_Port->isBlocked() && (m_Port->isReadable() || std::any_of(m_Listed.begin(), m_Listed.end(), mustWrite)))
        m_Reactor->hurry();
    hurryForTimers();
}

void QuicRouter::giveUserData(const UdpPort::Datagram& datagram)
{
    const Endpoint& peer = *datagram.m_Peer;
    if (peer.isV4())
        guard([&] { m_Server->onUserData(toIPv4(peer), datagram.m_Data, datagram.m_Size); });
    else
        guard([&] { m_Server->onUserDataIPv6(toIPv6(peer), datagram.m_Data, datagram.m_Size); });
}

void QuicRouter::takeTurns()
{
    // A round that a lack of memory has interrupted continues here.
    if (m_TurnAt >= m_Round.size())
    {
        m_TurnAt = 0;
        m_Round.clear();
        m_Round.swap(m_Listed);
    }
    while (m_Server && m_TurnAt < m_Round.size())
        if (QuicLink* const link = m_Round[m_TurnAt++])
        {
            link->m_IsListed = false;
            turn(*link);
        }
}

void QuicRouter::turn(QuicLink& link)
{
    if ((link.m_Pending & QuicLink::kTickOwner) && link.getOwner())
    {
        link.m_Pending &= static_cast<unsigned char>(~QuicLink::kTickOwner);
        Connection* const owner = link.getOwner();
        const Unknown::Handle_T<Connection> hold = owner->getRefCount() > 0 ? owner : nullptr;
        UdpServer* const server = m_Server;
        const auto tick = static_cast<unsigned int>(m_LastTime / NGTCP2_MILLISECONDS);
        const bool isWhole = guard([&] { owner->onTick(tick); });
        if (!m_Server)
            return;
        if (!link.getOwner())
        {
            // The object may have a new connection already.
            if (UdpLink::isFree(*owner))
                guard([&] { server->onEnd(owner); });
        }
        else if (!isWhole || link.available() > 0 || link.isOver())
            // Continue in the next tick, which need not start early.
            wake(link, QuicLink::kTickOwner);
        if (!m_Server)
            return;
    }
    link.m_Pending &= static_cast<unsigned char>(link.getOwner() ? 0xFF : ~QuicLink::kTickOwner);
    link.settle();
    if (std::exchange(link.m_Pending, link.m_Pending & ~QuicLink::kWrite) & QuicLink::kWrite)
        link.write();
}

void QuicRouter::writeListed()
{
    m_Writing.swap(m_Listed);
    for (QuicLink* const link : m_Writing)
    {
        if (!link)
            continue;
        link->m_IsListed = false;
        if (link->m_Pending & QuicLink::kWrite)
        {
            link->m_Pending &= static_cast<unsigned char>(~QuicLink::kWrite);
            link->write();
        }
        if (link->m_Pending != 0)
            list(*link);
    }
    m_Writing.clear();
}

void QuicRouter::callVisitors()
{
    while (m_Server && !m_Visitors.empty())
    {
        const QuicLink* const first = m_Visitors.front();
        guard([this] { m_Server->onAccept(); });
        if (!m_Server || (!m_Visitors.empty() && m_Visitors.front() == first))
            return;
    }
}

void QuicRouter::finishAll()
{
    for (const auto& link : m_Links)
    {
        link->write();
        link->finish(Connection::kBroken, QuicLink::kClosed, {EndCause::kClosedHere, 0});
    }
    m_Port->flush();
    m_Server = nullptr;
    m_Visitors.clear();
    m_Listed.clear();
    m_ByName.clear();
    m_Addresses.clear();
    m_Timers.clear();
    m_Closed.swap(m_Links);
}

void QuicRouter::close()
{
    if (!m_Server)
        return;
    const auto self = shared_from_this();
    UdpServer& server = *m_Server;
    finishAll();
    m_Port->close();
    tellOwners(server);
}

void QuicRouter::tellOwners(UdpServer& server)
{
    for (const auto& link : m_Closed)
        if (Connection* const owner = link->getOwner())
        {
            const Unknown::Handle_T<Connection> hold = owner->getRefCount() > 0 ? owner : nullptr;
            guard([&] { link->breakOwner(); });
            guard([&] { server.onEnd(owner); });
        }
}

unsigned int QuicRouter::detach()
{
    if (!m_Server)
        return zet::Socket::kNoHandle;
    const auto self = shared_from_this();
    UdpServer& server = *m_Server;
    finishAll();
    const unsigned int handle = m_Port->giveAway();
    tellOwners(server);
    return handle;
}

} // namespace zet::inner
