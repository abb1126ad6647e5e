#include "transport/framework_server_socket.h"

#include "framework/app.h"
#include "framework/inner/make_room.h"
#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/stopwatch.h"
#include "net/inner/guard.h"
#include "net/tcp/inner/ready_list.h"
#include "transport/address_file.h"

#include <algorithm>
#include <optional>

// Ticks a connection, and abandons it if it is down then. Exceptions do not affect the other connections.
struct CFrameworkServerSocket::ClientSocketTick_Manager_foreach_N
{
    class ClientSocketTick
    {
    public:
        ClientSocketTick(CFrameworkServerSocket& server, unsigned int tick) : m_Server(server), m_Tick(tick) {}
        // False if the connection threw and has to be ticked again: its input is still there.
        bool onEntry(CFrameworkClientSocket* client)
        {
            const bool isWhole = zet::inner::guard(L"a connection", client,
                                                   [&]
                                                   {
                                                       if (!client->isInvalid())
                                                           client->onTick(m_Tick);
                                                   });
            const auto state = client->getConnectionState();
            if (state == zet::TcpConnection::kConnecting || state == zet::TcpConnection::kEstablished)
                return isWhole;
            // Its close() may have thrown.
            if (!isWhole)
                client->CCommandSocket::close();
            m_Server.abandonGuarded(client);
            return true;
        }

    private:
        CFrameworkServerSocket& m_Server;
        unsigned int m_Tick;
    };
};

// Closes and abandons a connection.
struct CFrameworkServerSocket::ClientSocketClose_Manager_foreach_N
{
    class ClientSocketClose : public ClientSockets::Walker
    {
    public:
        explicit ClientSocketClose(CFrameworkServerSocket& server) : m_Server(server) {}
        bool onEntry(CFrameworkClientSocket* const& key, zet::Unknown::Handle_T<CFrameworkClientSocket>&) override
        {
            if (!key->isInvalid() && !zet::inner::guard(L"a connection", key, [&] { key->close(); }))
                key->CCommandSocket::close();
            m_Server.abandonGuarded(key);
            return true;
        }

    private:
        CFrameworkServerSocket& m_Server;
    };
};

// Keeps abandoned connections alive until the outermost walk ends.
class CFrameworkServerSocket::Walk
{
public:
    explicit Walk(CFrameworkServerSocket& server) : m_Server(server) { ++m_Server.m_Walks; }
    ~Walk() { m_Server.endWalk(); }

private:
    CFrameworkServerSocket& m_Server;
};

CFrameworkServerSocket::CFrameworkServerSocket(const zet::String_T<wchar_t>& ip, unsigned short port)
    : m_IP(ip.isEmpty() ? getHostName() : ip), m_Port(port), m_Ready(std::make_unique<zet::inner::ReadyList>())
{
}

CFrameworkServerSocket::~CFrameworkServerSocket()
{
    CFrameworkServerSocket::close();
}

void CFrameworkServerSocket::onTick(unsigned int tick)
{
    look();
    tickClients(tick);
    flushOutsideTick();
    TcpServer::onTick(tick);
    // Accepted now, or threw: their next turn is in the next tick.
    if (m_Ready->isPressing() && getSystem())
        getSystem()->tickBy(tick + zet::System::kTickInterval);
}

void CFrameworkServerSocket::tickClients(unsigned int tick)
{
    ClientSocketTick_Manager_foreach_N::ClientSocketTick walker(*this, tick);
    const Walk walk(*this);
    const unsigned int time = getLimits().m_TurnTime;
    const int bytes = getLimits().m_TurnInput;
    const int turn = bytes > 0 && hasOthers() ? bytes : zet::TcpStream::kEndlessTurn;
    // One connection alone needs no clock.
    std::optional<zet::Stopwatch> watch;
    bool isFirst = true;
    m_Ready->begin(std::exchange(m_First, nullptr));
    while (zet::TcpConnection* const next = m_Ready->peek())
    {
        // Only accept() adds to the list.
        auto* const client = static_cast<CFrameworkClientSocket*>(next);
        if (watch && !watch->isBelow(time))
        {
            m_First = client;
            hurry();
            break;
        }
        m_Ready->take();
        if (time > 0 && !watch && (!isFirst || m_Ready->peek()))
            watch.emplace();
        isFirst = false;
        client->setTurn(turn);
        if (!walker.onEntry(client))
            m_Ready->add(*client);
    }
    m_Ready->end();
}

// Whether another connection or task may wait while one connection has its turn.
bool CFrameworkServerSocket::hasOthers() const
{
    return m_ClientSockets.getSize() > 1 || (getSystem() && getSystem()->getTaskCount() > 1);
}

void CFrameworkServerSocket::endWalk()
{
    if (--m_Walks > 0 || m_Abandoned.empty())
        return;
    // The objects are released last, when the server is consistent; the memory of the list stays.
    auto abandoned = std::exchange(m_Abandoned, {});
    abandoned.clear();
    if (m_Abandoned.empty())
        m_Abandoned.swap(abandoned);
}

void CFrameworkServerSocket::lose(CFrameworkClientSocket* client)
{
    // It is in no list, so it would never be ticked.
    const zet::Unknown::Handle_T<CFrameworkClientSocket> keep = client;
    m_ClientSockets.erase(client);
    m_Ready->leave(*client);
    zet::inner::report([&] { client->close(); });
}

void CFrameworkServerSocket::close()
{
    const Walk walk(*this);
    ClientSocketClose_Manager_foreach_N::ClientSocketClose walker(*this);
    m_ClientSockets.foreach(walker);
    TcpServer::close();
}

bool CFrameworkServerSocket::listen(unsigned short port, int backlog)
{
    return TcpServer::listen(port, backlog);
}

bool CFrameworkServerSocket::accept(zet::TcpConnection* connection)
{
    auto* const client = dynamic_cast<CFrameworkClientSocket*>(connection);
    if (!client || !TcpServer::accept(connection))
        return false;
    if (zet::System* system = getSystem())
        connection->bindRunThreadId(system->getRunThreadId());
    try
    {
        // Abandon() during a walk must not allocate.
        zet::inner::makeRoom(m_Abandoned, m_Abandoned.size() + static_cast<size_t>(m_ClientSockets.getSize()) + 1);
        m_ClientSockets.set(client, client);
        m_Ready->enter(*client, client->HasOwnTick());
    }
    catch (const std::bad_alloc&)
    {
        lose(client);
        throw;
    }
    return true;
}

void CFrameworkServerSocket::abandonGuarded(CFrameworkClientSocket* client)
{
    // Called within a walk, which keeps the object.
    if (!zet::inner::guard(L"Abandon()", client, [&] { Abandon(client); }))
        CFrameworkServerSocket::Abandon(client);
}

void CFrameworkServerSocket::Abandon(zet::TcpConnection* connection)
{
    auto* const client = dynamic_cast<CFrameworkClientSocket*>(connection);
    if (!client)
        return;
    const auto* const held = m_ClientSockets.find(client);
    const zet::Unknown::Handle_T<CFrameworkClientSocket> keep =
        held ? *held : zet::Unknown::Handle_T<CFrameworkClientSocket>();
    RemoveFrameworkSocket(client);
    if (!keep)
        return;
    // A host that keeps the connection ticks it from now on.
    client->setTurn(zet::TcpStream::kEndlessTurn);
    m_Ready->leave(*client);
    if (m_Walks > 0)
        m_Abandoned.push_back(keep);
    m_ClientSockets.erase(client);
}

zet::Unknown::Handle_T<CFrameworkClientSocket> CFrameworkServerSocket::GetFrameworkSocket(zet::uuid_node_t node)
{
    const auto* const held = m_FrameworkSockets.find(node);
    return held ? *held : zet::Unknown::Handle_T<CFrameworkClientSocket>();
}

void CFrameworkServerSocket::SetFrameworkSocket(CFrameworkClientSocket* client)
{
    if (client->GetPeerServerId().isNull() || !client->m_RegisteredId.isNull())
        return;
    client->m_RegisteredId = client->GetPeerServerId();
    m_FrameworkSockets.set(client->m_RegisteredId.m_Node, client);
}

void CFrameworkServerSocket::RemoveFrameworkSocket(CFrameworkClientSocket* client)
{
    if (client->m_RegisteredId.isNull())
        return;
    m_FrameworkSockets.erase(client->m_RegisteredId.m_Node);
    client->m_RegisteredId = zet::Uuid();
}

// Adds the rules of a file to the list, and logs each by this pattern unless it is null.
static bool addRules(zet::AddressFilter& filter, zet::AddressFilter::List list, const wchar_t* path,
                     const wchar_t* pattern)
{
    const auto take = [&](const AddressRule& rule)
    {
        const unsigned char(&a)[4] = rule.m_Address;
        const unsigned char(&m)[4] = rule.m_Mask;
        filter.add(list, a, m, true);
        if (pattern)
            zet::Log::message(pattern, a[0], a[1], a[2], a[3], m[0], m[1], m[2], m[3]);
    };
    return ReadAddressFile(path, take);
}

void CFrameworkServerSocket::AddRejectAddressFrom(const wchar_t* path)
{
    zet::Log::message(L"Install Reject Address(%s:%d)...(%s)", GetIP(), GetPort(), path);
    zet::AddressFilter filter = getAddressFilter();
    m_AddressFiles.emplace_back(zet::AddressFilter::kRejected, path);
    if (!addRules(filter, zet::AddressFilter::kRejected, path, L"Reject Address: %d.%d.%d.%d & %d.%d.%d.%d"))
        warnOfFile(zet::AddressFilter::kRejected, path);
    setAddressFilter(std::move(filter));
}

void CFrameworkServerSocket::AddPermissionAddressFrom(const wchar_t* path)
{
    zet::Log::message(L"安装网络接受地址(%s:%d)...(%s)", GetIP(), GetPort(), path);
    zet::AddressFilter filter = getAddressFilter();
    m_AddressFiles.emplace_back(zet::AddressFilter::kPermitted, path);
    if (!addRules(filter, zet::AddressFilter::kPermitted, path, L"网络接受地址 %d.%d.%d.%d & %d.%d.%d.%d"))
        warnOfFile(zet::AddressFilter::kPermitted, path);
    setAddressFilter(std::move(filter));
}

bool CFrameworkServerSocket::ReloadAddressFiles()
{
    if (m_AddressFiles.empty())
        return true;
    zet::AddressFilter filter = getAddressFilter();
    filter.removeFromFiles();
    for (const auto& [list, path] : m_AddressFiles)
    {
        if (!addRules(filter, list, path, nullptr))
        {
            warnOfFile(list, path);
            return false;
        }
    }
    filter.takeFileHits(getAddressFilter());
    zet::Log::message(L"Address files of %s:%d are read again; rules: %u", GetIP(), GetPort(),
                      static_cast<unsigned int>(filter.getRules().size()));
    setAddressFilter(std::move(filter));
    return true;
}

// Called when the operating system's error is still set.
void CFrameworkServerSocket::warnOfFile(zet::AddressFilter::List list, const wchar_t* path) const
{
    if (list == zet::AddressFilter::kRejected)
        zet::Log::warning(L"Open file '%s' error，description(%s)", path, zet::getLastErrorString());
    else
        zet::Log::warning(L"打开文件 '%s' 出错，错误描述(%s)", path, zet::getLastErrorString());
}

const wchar_t* CFrameworkServerSocket::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:50 2019";
}
