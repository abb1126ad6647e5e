// One TCP port and all connections that were accepted on it.
#pragma once

#include "framework/dictionary.h"
#include "net/tcp/server.h"
#include "transport/framework_client_socket.h"

#include <memory>
#include <vector>

namespace zet::inner
{
class ReadyList;
} // namespace zet::inner

// Owns its connections, ticks them from its own tick and lets go of those that have ended. A host derives from it and
// accepts a socket of its own in onAccept(). Everything belongs to the thread of the server's System, the accepted
// connections too. A handler may close any connection, or the server itself. What an override of one connection throws
// is logged and costs the others nothing: that connection has its next turn with the next tick, or, where it is down,
// is abandoned.
class COMMONGROUND_API CFrameworkServerSocket : public zet::TcpServer
{
public:
    using ClientSockets = zet::Dictionary<CFrameworkClientSocket*, zet::Unknown::Handle_T<CFrameworkClientSocket>>;
    using FrameworkSockets = zet::Dictionary<zet::uuid_node_t, zet::Unknown::Handle_T<CFrameworkClientSocket>>;

    // The address by which the host knows this server, for logs and for telling others: listen() does not go by it, and
    // takes all addresses of this machine until setBindAddress() says otherwise. An empty ip stands for the name of
    // this machine.
    CFrameworkServerSocket(const zet::String_T<wchar_t>& ip, unsigned short port);
    // Closes as close() does.
    ~CFrameworkServerSocket() override;

    // Ticks each connection and abandons those that are down, then accepts who has come.
    void onTick(unsigned int tick) override;
    // Closes and abandons each connection and stops listening.
    void close() override;
    // Listens on the port given here; GetPort() stays what the constructor was told.
    bool listen(unsigned short port, int backlog) override;
    // Takes the next connection that has come on, as a CFrameworkClientSocket; an object of another class is refused.
    // The server holds it from then on. False changes nothing.
    bool accept(zet::TcpConnection* connection) override;
    // Drops the connection out of both dictionaries. Within a tick the object lives until the tick's end.
    virtual void Abandon(zet::TcpConnection* connection);

    const zet::String_T<wchar_t>& GetIP() const { return m_IP; }
    unsigned short GetPort() const { return m_Port; }
    int GetClientCount() const { return m_ClientSockets.getSize(); }
    // For looking up and for walks. Connections come and go by the operations of this class alone: a walker may call
    // Abandon(), but not erase().
    ClientSockets* GetAllClientSocket() const { return &m_ClientSockets; }
    FrameworkSockets* GetAllFrameworkSocket() const { return &m_FrameworkSockets; }
    // Null where nobody has registered under the key.
    zet::Unknown::Handle_T<CFrameworkClientSocket> GetFrameworkSocket(zet::uuid_node_t node);
    // Registers a connection whose peer has told its id, once. Of two peers with one key the later one is found; when
    // the earlier one ends, neither is.
    void SetFrameworkSocket(CFrameworkClientSocket* client);
    void RemoveFrameworkSocket(CFrameworkClientSocket* client);

    // Adds the rules of a file to those there are. A file that does not open costs a warning.
    void AddRejectAddressFrom(const wchar_t* path);
    void AddPermissionAddressFrom(const wchar_t* path);

    const wchar_t* getClassName() const override { return L"CFrameworkServerSocket"; }
    const wchar_t* getClassTimestamp() const override;

protected:
    zet::String_T<wchar_t> m_IP;
    unsigned short m_Port;
    // A walk is entered in the dictionary for as long as it lasts.
    mutable ClientSockets m_ClientSockets;
    mutable FrameworkSockets m_FrameworkSockets;

private:
    class Walk;
    struct ClientSocketTick_Manager_foreach_N;
    struct ClientSocketClose_Manager_foreach_N;

    void tickClients(unsigned int tick);
    void abandonGuarded(CFrameworkClientSocket* client);
    void endWalk();
    // Closes a connection that there was no memory to keep.
    void lose(CFrameworkClientSocket* client);
    bool hasOthers() const;

    // Those of m_ClientSockets whose tick would find something to do, in the same order; and those whose class has a
    // tick of its own.
    const std::unique_ptr<zet::inner::ReadyList> m_Ready;
    // Connections abandoned during a walk.
    std::vector<zet::Unknown::Handle_T<CFrameworkClientSocket>> m_Abandoned;
    // Who is first in the next tick's walk, where the present one was cut short; compared, never used.
    const CFrameworkClientSocket* m_First = nullptr;
    int m_Walks = 0;
};
