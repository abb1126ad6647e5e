#include "net/session/inner/link.h"

#include "framework/inner/moment.h"
#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/memory_stream.h"
#include "framework/message.h"
#include "framework/string_helper.h"
#include "framework/thread.h"
#include "framework/time.h"
#include "net/inner/recorder.h"
#include "net/limits.h"
#include "net/session/inner/greeting.h"
#include "net/session/session.h"
#include "net/tcp/inner/packet_tick.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace zet::inner
{

NetLink::NetLink(NetSession& session, bool isAccepting, int messageLimit)
    : m_Session(&session), m_MessageLimit(std::clamp(messageLimit, 1, PacketReader::kLargestLimit)),
      m_GreetBy(getTimeTick() + NetSession::kGreetingTime), m_IsAccepting(isAccepting)
{
    // Before its greeting a peer gets no more memory than that.
    m_Reader.setLimit(kGreetingSize);
    m_Writer.attachOwner(this);
}

bool NetLink::attach(unsigned int handle)
{
    if (!TcpStream::attach(handle))
        return false;
    m_Reader.attachOwner(this);
    return true;
}

void NetLink::leave(EndCause cause)
{
    if (cause)
        noteCause(cause);
    m_Session = nullptr;
    m_Phase = kEnded;
    m_Reader.detach();
    close();
    stop();
}

void NetLink::onWritable()
{
    NetSession* const session = m_Session;
    if (!session)
        return;
    const Unknown::Handle_T<NetSession> keep = session->getRefCount() > 0 ? session : nullptr;
    session->callWritable();
}

void NetLink::onTick(unsigned int tick)
{
    if (!m_Session)
        return;
    const bool isLate = m_Phase == kGreeting && isReached(m_GreetBy, tick);
    if (System* const system = getSystem(); system && m_Phase == kGreeting)
        system->tickBy(m_GreetBy);
    if (!PacketTick::isDue(*this) && !isLate && !m_IsUnusable)
        return;
    // A handler may release session and link.
    const Unknown::Handle_T<NetLink> keep = this;
    const NetLimits* const limits = getLimits();
    setTurn(limits && limits->m_TurnInput > 0 ? limits->m_TurnInput : kEndlessTurn);
    PacketTick packets(*this, m_Reader, m_PeerLog, m_IsUnusable);
    const bool isAlive = packets.run(tick, NetSession::kDispatchTime,
                                     [this](std::span<const unsigned char> packet) { takePacket(packet); });
    if (!m_Session || (isAlive && !(isLate && m_Phase == kGreeting)))
        return;
    if (isAlive)
        noteCause({EndCause::kTimedOut, EndCause::kGreeting});
    end();
}

void NetLink::takePacket(std::span<const unsigned char> packet)
{
    if (Recorder::isOn())
        Recorder::reportPacket(*this, Recorder::kReceived, packet);
    MemoryInput bytes(packet.data(), static_cast<int>(packet.size()));
    InputStream stream(&bytes);
    if (m_Phase == kOpen)
        takeMessage(stream);
    else if (!takeGreeting(stream))
    {
        m_IsUnusable = true;
        noteCause({EndCause::kMalformed, 0});
    }
}

bool NetLink::greet(const Uuid& id)
{
    unsigned char greeting[PacketWriter::kHeadSize + kGreetingSize];
    unsigned char* const place = greeting + PacketWriter::kHeadSize;
    std::memcpy(place, kGreetingMark.data(), kGreetingMark.size());
    std::memcpy(place + kGreetingMark.size(), &id, sizeof id);
    if (!m_Writer.writePlaced(greeting, kGreetingSize))
        return false;
    if (Recorder::isOn())
        Recorder::reportPacket(*this, Recorder::kSent, {place, static_cast<size_t>(kGreetingSize)});
    return true;
}

bool NetLink::takeGreeting(InputStream& stream)
{
    char mark[kGreetingMark.size()];
    Uuid id;
    if (stream.available() != kGreetingSize || stream.read(mark, sizeof mark) != sizeof mark ||
        stream.read(&id, sizeof id) != sizeof id || std::string_view(mark, sizeof mark) != kGreetingMark)
        return false;
    // Created first: a session that is open has reported it.
    const auto event = Evt_NetConnectOk::createInstance();
    if (m_IsAccepting)
    {
        if (!greet(id))
            return false;
        m_Session->m_ConnectionId = id;
    }
    else if (!(id == m_Session->m_ConnectionId))
    {
        return false;
    }
    m_Phase = kOpen;
    // An accepted peer's first message has a smaller limit.
    const NetLimits* const limits = m_IsAccepting ? getPortLimits() : nullptr;
    const bool isLimited = limits && limits->m_FirstInput > 0;
    m_Reader.setLimit(isLimited ? std::min(m_MessageLimit, limits->m_FirstInput) : m_MessageLimit);
    NetSession* const session = m_Session;
    const Unknown::Handle_T<NetSession> keep = session->getRefCount() > 0 ? session : nullptr;
    guard(*session, [&] { session->dispense(*event); });
    if (m_Session)
        session->callEstablished();
    return true;
}

void NetLink::takeMessage(InputStream& stream)
{
    NetSession* const session = m_Session;
    const Unknown::Handle_T<NetSession> keep = session->getRefCount() > 0 ? session : nullptr;
    const Unknown::Handle_T<Message> message = Message::readWhole(stream);
    if (message && stream.isEmpty())
    {
        m_Reader.setLimit(m_MessageLimit);
        guard(*session, [&] { session->onMessage(message); });
    }
    else if (PeerLog::takesLine())
    {
        Log::error(L"Message is dropped \t(%s)", getPeerName());
    }
}

bool NetLink::sendMessage(const Message& message)
{
    if (m_Phase != kOpen || m_IsUnusable)
        return false;
    if (Thread::getCurrentThreadId() != getRunThreadId())
    {
        Log::error(L"Message Send Error:%s, Invoke on Wrong Thread", message.getClassName());
        return false;
    }
    const auto store = MemoryStream::createInstance();
    OutputStream output(store.get());
    if (!Message::writeWhole(output, message))
        return false;
    if (store->getSize() > m_MessageLimit)
    {
        Log::error(L"Message Send Error:%s, %d bytes are too many", message.getClassName(), store->getSize());
        return false;
    }
    InputStream input(store.get());
    const bool isRecorded = Recorder::isHere();
    std::vector<unsigned char> copy(isRecorded ? static_cast<size_t>(store->getSize()) : 0);
    if (isRecorded)
        store->peek(copy.data(), store->getSize());
    if (m_Writer.write(input))
    {
        if (isRecorded)
            Recorder::reportPacket(*this, Recorder::kSent, copy);
        return true;
    }
    // A part of the packet may have been sent.
    m_IsUnusable = true;
    noteCause({EndCause::kOutputFull, 0});
    hurry();
    Log::error(L"Error while writing data to network:%s", getPeerName());
    return false;
}

void NetLink::end()
{
    const bool wasOpen = m_Phase == kOpen;
    NetSession* const session = m_Session;
    const Unknown::Handle_T<NetSession> keep = session->getRefCount() > 0 ? session : nullptr;
    Unknown::Handle_T<NetEvent> event;
    if (!wasOpen)
        event = Evt_NetConnectFail::createInstance();
    else if (m_IsUnusable)
        event = Evt_NetError::createInstance();
    else if (getConnectionState() == kClosedByPeer)
        event = Evt_NetClosed::createInstance();
    else
        event = Evt_NetAbort::createInstance();
    event->m_Cause = getNotedCause();
    // Not earlier: without memory for the event the next tick tries again.
    m_Phase = kEnded;
    session->finish(*event);
}

void NetLink::reportThrown(const NetSession& session, const char* what)
{
    report(
        [&] {
            Log::error(L"Exception in a message handler: %s (%s)", StringHelper::utf8ToWide(what),
                       session.getPeerName());
        });
    report([] { Log::whistle(false); });
}

} // namespace zet::inner
