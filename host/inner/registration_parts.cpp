#include "host/inner/registration_parts.h"

#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/system.h"

#include <algorithm>

namespace host::inner
{

namespace
{

using std::chrono::milliseconds;

milliseconds doubled(milliseconds delay)
{
    return std::min(delay * 2, Registration::kLongestDelay);
}

// The server's own fields; the id of the command and its head stay.
void copyServer(const CCmdServerRegister& from, CCmdServerRegister& to)
{
    to.m_ServerType = from.m_ServerType;
    to.m_ServerId = from.m_ServerId;
    to.m_ServerName = from.m_ServerName;
    std::copy(std::begin(from.m_ServerAddress), std::end(from.m_ServerAddress), std::begin(to.m_ServerAddress));
    to.m_ServerPort = from.m_ServerPort;
}

bool areEqual(const CCmdServerRegister& a, const CCmdServerRegister& b)
{
    return a.m_ServerType == b.m_ServerType && a.m_ServerName == b.m_ServerName &&
           std::equal(std::begin(a.m_ServerAddress), std::end(a.m_ServerAddress), std::begin(b.m_ServerAddress)) &&
           a.m_ServerPort == b.m_ServerPort;
}

// The peer is a process of this machine.
bool isLocal(CCommandSocket& socket)
{
    const zet::String_T<wchar_t> peer = socket.getPeerName();
    const std::wstring_view name(peer.getBuffer(), static_cast<size_t>(peer.getLength()));
    return name.starts_with(L"127.") || name.starts_with(L"[::1]:");
}

} // namespace

// The connection to the registry.
class RegistrationParts::Link final : public CCommandSocket
{
public:
    explicit Link(RegistrationParts& parts) : CCommandSocket(&parts.m_Analyser), m_Parts(&parts) {}

    void onEnd(const zet::EndCause&) override
    {
        if (m_Parts)
            m_Parts->onLinkEnd();
    }
    void forget() { m_Parts = nullptr; }

private:
    RegistrationParts* m_Parts;
};

RegistrationParts::RegistrationParts(zet::System& system)
    // A lambda, since the type of a pointer to a function would be exported.
    : m_GreetingCheck([](CCommandSocket& socket) { return isLocal(socket); }), m_System(system), m_Handlers(m_Analyser),
      m_Questions(m_Handlers, system), m_Tasks(m_Questions)
{
    m_Questions.expect<CCmdServerRegisterSuccess, CCmdServerRegisterFail, CCmdServerEchoReply, CCmdServerHelloReply>();
    m_Handlers.on<CCmdServerNewNotify>(
        [this](CCommandSocket& socket, const CCmdServerNewNotify& notify)
        {
            if (!isAnnouncement(socket) || notify.m_ServerId == m_Record.m_ServerId)
                return;
            m_Gone.erase(notify.m_ServerId);
            add(notify);
            greet(notify.m_ServerId);
        });
    m_Handlers.on<CCmdServerFadeNotify>([this](CCommandSocket& socket, const CCmdServerFadeNotify& notify)
                                        { onFade(socket, notify.m_ServerId); });
    m_Handlers.on<CCmdServerGUIDFade>([this](CCommandSocket& socket, const CCmdServerGUIDFade& notify)
                                      { onFade(socket, notify.m_ServerId); });
    m_Handlers.on<CCmdServerShutdown>(
        [this](CCommandSocket& socket, const CCmdServerShutdown&)
        {
            if (isAnnouncement(socket) && m_OnShutdown)
                m_OnShutdown();
        });
}

RegistrationParts::~RegistrationParts()
{
    stop();
}

void RegistrationParts::setRecord(const CCmdServerRegister& record)
{
    copyServer(record, m_Record);
    if (m_Record.m_ServerId.isNull())
        zet::uuid_create(m_Record.m_ServerId);
}

bool RegistrationParts::start(const wchar_t* address, unsigned short port)
{
    if (m_IsStarted || m_Record.m_ServerId.isNull())
    {
        zet::Log::error(m_IsStarted ? L"The registration is started already" : L"A registration needs a record");
        return false;
    }
    m_IsStarted = true;
    m_Address = address;
    m_Port = port;
    connect();
    return true;
}

void RegistrationParts::stop()
{
    if (m_IsStopped)
        return;
    m_IsStopped = true;
    m_Tasks.cancel();
    while (!m_Greetings.empty())
        endGreeting(zet::Uuid(m_Greetings.begin()->first));
    if (m_IsRegistered)
        m_Link->send(CCmdServerUnregister());
    closeLink();
}

void RegistrationParts::closeLink()
{
    m_IsRegistered = false;
    if (!m_Link)
        return;
    m_Link->forget();
    m_Link->close();
    m_Link->stop();
    m_Link = nullptr;
}

void RegistrationParts::connect()
{
    closeLink();
    ++m_LinkNumber;
    m_Link = new Link(*this);
    if (m_Link->start(&m_System) && m_Link->connect(m_Address, m_Port, true))
        enrol();
    else
        connectLater();
}

void RegistrationParts::enrol()
{
    CCmdServerRegister command;
    copyServer(m_Record, command);
    m_Tasks.ask<CCmdServerRegisterSuccess, CCmdServerRegisterFail>(
        *m_Link, command, Registration::kAnswerTime,
        [this](const Reply<CCmdServerRegisterSuccess, CCmdServerRegisterFail>& reply)
        {
            if (std::holds_alternative<CCmdServerRegisterSuccess>(reply))
                return onEnrolled();
            if (const auto* const fail = std::get_if<CCmdServerRegisterFail>(&reply))
                zet::Log::warning(L"The registry refuses the registration: %s", fail->m_Msg);
            else
                zet::Log::warning(L"No registration: %s", std::get<Unanswered>(reply).getText());
            // The end of the link leads to the next attempt; if it has ended, that is planned.
            m_Link->close();
        });
}

void RegistrationParts::onEnrolled()
{
    zet::Log::message(L"Registered with the registry %s:%d", m_Address, static_cast<int>(m_Port));
    m_IsRegistered = true;
    m_Delay = Registration::kFirstDelay;
    m_Gone.clear();
    m_Tasks.after(Registration::kConfirmTime,
                  [this, number = m_LinkNumber]
                  {
                      if (number == m_LinkNumber && m_IsRegistered)
                          dropUnconfirmed();
                  });
    echo();
    if (m_OnRegistered)
        m_OnRegistered();
}

void RegistrationParts::echo()
{
    m_Tasks.after(Registration::kEchoInterval,
                  [this, number = m_LinkNumber]
                  {
                      if (number != m_LinkNumber || !m_IsRegistered)
                          return;
                      CCmdServerEcho command;
                      m_Tasks.ask<CCmdServerEchoReply>(*m_Link, command, Registration::kAnswerTime,
                                                       [this, number](const Reply<CCmdServerEchoReply>& reply)
                                                       {
                                                           if (number != m_LinkNumber || !m_IsRegistered)
                                                               return;
                                                           if (std::holds_alternative<CCmdServerEchoReply>(reply))
                                                               echo();
                                                           else
                                                               m_Link->close();
                                                       });
                  });
}

void RegistrationParts::onLinkEnd()
{
    m_IsRegistered = false;
    for (Server& server : m_Servers)
        server.m_IsConfirmed = false;
    connectLater();
}

void RegistrationParts::connectLater()
{
    zet::Log::warning(L"No registry at %s:%d, next attempt in %d ms", m_Address, static_cast<int>(m_Port),
                      static_cast<int>(m_Delay.count()));
    m_Tasks.after(m_Delay, [this] { connect(); });
    m_Delay = doubled(m_Delay);
}

void RegistrationParts::dropUnconfirmed()
{
    // A callable may stop the registration, but does not change the list.
    for (auto it = m_Servers.begin(); it != m_Servers.end();)
    {
        const auto server = it++;
        if (server->m_IsConfirmed)
            continue;
        remove(server);
        if (m_IsStopped)
            return;
    }
}

void RegistrationParts::add(const CCmdServerRegister& record)
{
    const auto known = findServer(record.m_ServerId);
    if (known != m_Servers.end())
    {
        known->m_IsConfirmed = true;
        if (areEqual(known->m_Record, record))
            return;
        remove(known);
        // By the callable.
        if (m_IsStopped)
            return;
    }
    if (m_Servers.size() >= static_cast<size_t>(Registration::kMostServers))
    {
        if (zet::PeerLog::takesLine())
            zet::Log::warning(L"The server %s is not kept: %d are known", record.m_ServerName,
                              Registration::kMostServers);
        return;
    }
    std::list<Server> added(1);
    copyServer(record, added.front().m_Record);
    m_Places.emplace(record.m_ServerId, added.begin());
    m_Servers.splice(m_Servers.end(), added);
    if (m_OnServer)
        m_OnServer(m_Servers.back().m_Record);
}

void RegistrationParts::remove(ServerPlace server)
{
    endGreeting(server->m_Record.m_ServerId);
    m_Places.erase(server->m_Record.m_ServerId);
    std::list<Server> gone;
    gone.splice(gone.end(), m_Servers, server);
    if (m_OnGone)
        m_OnGone(gone.front().m_Record);
}

RegistrationParts::ServerPlace RegistrationParts::findServer(const zet::Uuid& id)
{
    const auto place = m_Places.find(id);
    return place == m_Places.end() ? m_Servers.end() : place->second;
}

void RegistrationParts::onFade(CCommandSocket& socket, const zet::Uuid& id)
{
    if (!isAnnouncement(socket))
        return;
    if (m_Gone.size() < static_cast<size_t>(Registration::kMostServers))
        m_Gone.insert(id);
    if (const auto server = findServer(id); server != m_Servers.end())
        remove(server);
}

bool RegistrationParts::isAnnouncement(CCommandSocket& socket) const
{
    // A server that is greeted uses the same analyser.
    return &socket == m_Link.get();
}

void RegistrationParts::greet(const zet::Uuid& id)
{
    const auto server = findServer(id);
    if (server == m_Servers.end() || m_IsStopped || m_Greetings.count(id) > 0 || server->m_Record.m_ServerPort == 0)
        return;
    const unsigned int number = ++m_GreetingNumber;
    m_Greetings[id].m_Number = number;
    attempt(id, number, Registration::kFirstDelay);
}

void RegistrationParts::attempt(const zet::Uuid& id, unsigned int number, milliseconds delay)
{
    const auto greeting = m_Greetings.find(id);
    if (greeting == m_Greetings.end() || greeting->second.m_Number != number)
        return;
    const CCmdServerRegister& record = findServer(id)->m_Record;
    const auto socket = CCommandSocket::createInstance(&m_Analyser);
    if (!socket->start(&m_System) || !socket->connect(record.m_ServerAddress[0], record.m_ServerPort, false))
    {
        socket->stop();
        attemptLater(id, number, delay);
        return;
    }
    greeting->second.m_Socket = socket;
    CCmdServerHello hello;
    copyServer(m_Record, hello);
    m_Tasks.ask<CCmdServerHelloReply>(*socket, hello, Registration::kAnswerTime,
                                      [this, id, number, delay](const Reply<CCmdServerHelloReply>& reply)
                                      {
                                          const auto asked = m_Greetings.find(id);
                                          if (asked == m_Greetings.end() || asked->second.m_Number != number)
                                              return;
                                          if (std::holds_alternative<CCmdServerHelloReply>(reply))
                                              return endGreeting(id);
                                          asked->second.m_Socket->close();
                                          asked->second.m_Socket->stop();
                                          asked->second.m_Socket = nullptr;
                                          attemptLater(id, number, delay);
                                      });
}

void RegistrationParts::attemptLater(const zet::Uuid& id, unsigned int number, milliseconds delay)
{
    m_Tasks.after(delay, [this, id, number, delay] { attempt(id, number, doubled(delay)); });
}

void RegistrationParts::endGreeting(const zet::Uuid& id)
{
    const auto greeting = m_Greetings.find(id);
    if (greeting == m_Greetings.end())
        return;
    const auto socket = greeting->second.m_Socket;
    m_Greetings.erase(greeting);
    if (!socket)
        return;
    socket->close();
    socket->stop();
}

void RegistrationParts::onHello(CCommandSocket& socket, const CCmdServerHello& hello)
{
    if (!m_GreetingCheck || !m_GreetingCheck(socket))
    {
        if (zet::PeerLog::takesLine())
            zet::Log::warning(L"A greeting of a peer that may not greet (%s)", socket.getPeerName());
        socket.close();
        return;
    }
    CCmdServerHelloReply reply;
    copyServer(m_Record, reply);
    socket.send(reply);
    if (!m_IsStopped && !hello.m_ServerId.isNull() && !(hello.m_ServerId == m_Record.m_ServerId) &&
        m_Gone.count(hello.m_ServerId) == 0)
        add(hello);
}

} // namespace host::inner
