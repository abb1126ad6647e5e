#include "transport/framework_server_socket.h"

#include "framework/app.h"
#include "framework/inner/make_room.h"
#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/stopwatch.h"
#include "net/inner/guard.h"
#include "transport/address_file.h"

#include <algorithm>

// Ticks a connection, and abandons it where it is down then. One that throws costs the others nothing.
struct CFrameworkServerSocket::ClientSocketTick_Manager_foreach_N
{
    class ClientSocketTick
    {
    public:
        ClientSocketTick(CFrameworkServerSocket& server, unsigned int tick) : m_Server(server), m_Tick(tick) {}
        // False where the connection threw and is to be ticked again: what had come for it is still there.
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
            // Its own close() may be what threw.
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

// Keeps the list of connections as long as it is, and those that go alive, until the outermost walk ends.
class CFrameworkServerSocket::Walk
{
public:
    explicit Walk(CFrameworkServerSocket& server) : m_Server(server) { ++m_Server.m_Walks; }
    ~Walk() { m_Server.endWalk(); }

private:
    CFrameworkServerSocket& m_Server;
};

CFrameworkServerSocket::CFrameworkServerSocket(const zet::String_T<wchar_t>& ip, unsigned short port)
    : m_IP(ip.isEmpty() ? getHostName() : ip), m_Port(port)
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
    TcpServer::onTick(tick);
}

void CFrameworkServerSocket::tickClients(unsigned int tick)
{
    ClientSocketTick_Manager_foreach_N::ClientSocketTick walker(*this, tick);
    const Walk walk(*this);
    // The list keeps its length during a walk.
    const size_t count = m_Walk.size();
    const size_t first = m_First ? static_cast<size_t>(placeOf(std::exchange(m_First, nullptr)) - m_Walk.begin()) : 0;
    const unsigned int time = getLimits().m_TurnTime;
    const int bytes = getLimits().m_TurnInput;
    const int turn = bytes > 0 && hasOthers() ? bytes : zet::TcpStream::kEndlessTurn;
    zet::Stopwatch watch;
    for (size_t i = 0; i < count; ++i)
    {
        const Place& place = m_Walk[(first + i) % count];
        if (place.m_IsGone || (place.m_IsPlain && !*place.m_Bell))
            continue;
        if (time > 0 && watch.getElapsed() >= time)
        {
            m_First = place.m_Client;
            hurry();
            return;
        }
        *place.m_Bell = 0;
        place.m_Client->setTurn(turn);
        if (!walker.onEntry(place.m_Client))
            *place.m_Bell = 1;
    }
}

// Whether somebody may wait while one connection has its turn.
bool CFrameworkServerSocket::hasOthers() const
{
    return m_Walk.size() > 1 || (getSystem() && getSystem()->getTaskCount() > 1);
}

void CFrameworkServerSocket::endWalk()
{
    if (--m_Walks > 0)
        return;
    if (m_Abandoned.empty() && m_Newcomers.empty())
        return;
    removeGone();
    auto abandoned = std::exchange(m_Abandoned, {});
    for (CFrameworkClientSocket* client : std::exchange(m_Newcomers, {}))
    {
        try
        {
            enlist(client);
        }
        catch (const std::bad_alloc&)
        {
            lose(client);
        }
    }
    // The objects go last, when the server is whole again; the room for them stays.
    abandoned.clear();
    if (m_Abandoned.empty())
        m_Abandoned.swap(abandoned);
}

void CFrameworkServerSocket::lose(CFrameworkClientSocket* client)
{
    // What is in no list is never ticked.
    const zet::Unknown::Handle_T<CFrameworkClientSocket> keep = client;
    m_ClientSockets.erase(client);
    zet::inner::report([&] { client->close(); });
}

unsigned char* CFrameworkServerSocket::takeBell()
{
    if (m_FreeBells.empty())
    {
        // For when it is given back.
        zet::inner::makeRoom(m_FreeBells, m_Bells.size() + 1);
        return &m_Bells.emplace_back();
    }
    unsigned char* const bell = m_FreeBells.back();
    m_FreeBells.pop_back();
    return bell;
}

void CFrameworkServerSocket::enlist(CFrameworkClientSocket* client)
{
    if (m_Walks > 0)
    {
        m_Newcomers.push_back(client);
        return;
    }
    // A host may have accepted an object that is still here: it stands in the list once.
    auto place = placeOf(client);
    if (place == m_Walk.end() || place->m_Client != client)
    {
        const auto index = place - m_Walk.begin();
        zet::inner::makeRoom(m_Walk, m_Walk.size() + 1);
        place = m_Walk.insert(m_Walk.begin() + index, {client, takeBell(), !client->HasOwnTick(), false});
    }
    client->setBell(place->m_Bell);
}

void CFrameworkServerSocket::strike(CFrameworkClientSocket* client)
{
    // A host that keeps the connection ticks it itself from now on.
    client->setTurn(zet::TcpStream::kEndlessTurn);
    std::erase(m_Newcomers, client);
    const auto place = placeOf(client);
    if (place == m_Walk.end() || place->m_Client != client)
        return;
    client->setBell(nullptr);
    place->m_IsGone = true;
    if (m_Walks == 0)
        removeGone();
}

void CFrameworkServerSocket::removeGone()
{
    std::erase_if(m_Walk,
                  [this](const Place& place)
                  {
                      if (place.m_IsGone)
                          m_FreeBells.push_back(place.m_Bell);
                      return place.m_IsGone;
                  });
}

std::vector<CFrameworkServerSocket::Place>::iterator
CFrameworkServerSocket::placeOf(const CFrameworkClientSocket* client)
{
    return std::lower_bound(m_Walk.begin(), m_Walk.end(), client,
                            [](const Place& place, const CFrameworkClientSocket* key)
                            { return std::less<>()(place.m_Client, key); });
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
        // For when it is abandoned during a walk.
        zet::inner::makeRoom(m_Abandoned, m_Abandoned.size() + static_cast<size_t>(m_ClientSockets.getSize()) + 1);
        m_ClientSockets.set(client, client);
        enlist(client);
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
    // Within a walk, which keeps the object.
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
    strike(client);
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

void CFrameworkServerSocket::AddRejectAddressFrom(const wchar_t* path)
{
    zet::Log::message(L"Install Reject Address(%s:%d)...(%s)", GetIP(), GetPort(), path);
    const bool isOpen = ReadAddressFile(path,
                                        [this](const AddressRule& rule)
                                        {
                                            const unsigned char(&a)[4] = rule.m_Address;
                                            const unsigned char(&m)[4] = rule.m_Mask;
                                            addRejectAddress(a, m);
                                            zet::Log::message(L"Reject Address: %d.%d.%d.%d & %d.%d.%d.%d", a[0], a[1],
                                                              a[2], a[3], m[0], m[1], m[2], m[3]);
                                        });
    if (!isOpen)
        zet::Log::warning(L"Open file '%s' error，description(%s)", path, zet::getLastErrorString());
}

void CFrameworkServerSocket::AddPermissionAddressFrom(const wchar_t* path)
{
    zet::Log::message(L"安装网络接受地址(%s:%d)...(%s)", GetIP(), GetPort(), path);
    const bool isOpen = ReadAddressFile(path,
                                        [this](const AddressRule& rule)
                                        {
                                            const unsigned char(&a)[4] = rule.m_Address;
                                            const unsigned char(&m)[4] = rule.m_Mask;
                                            addPermissionAddress(a, m);
                                            zet::Log::message(L"网络接受地址 %d.%d.%d.%d & %d.%d.%d.%d", a[0], a[1],
                                                              a[2], a[3], m[0], m[1], m[2], m[3]);
                                        });
    if (!isOpen)
        zet::Log::warning(L"打开文件 '%s' 出错，错误描述(%s)", path, zet::getLastErrorString());
}

const wchar_t* CFrameworkServerSocket::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:50 2019";
}
