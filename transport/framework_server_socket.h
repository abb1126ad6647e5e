// One TCP port and all connections that were accepted on it.
#pragma once

#include "framework/dictionary.h"
#include "net/tcp/server.h"
#include "transport/framework_client_socket.h"

#include <memory>
#include <utility>
#include <vector>

namespace zet::inner
{
class ReadyList;
} // namespace zet::inner

// Owns its connections, ticks them from its own tick and abandons those that have ended. A host derives from it and
// accepts a socket of its own in onAccept(). Everything belongs to the thread of the server's System, including the
// accepted connections. A handler may close any connection, or the server itself. An exception from an override of one
// connection is logged and does not affect the others: that connection is ticked again in the next tick, or abandoned
// if it is down.
class COMMONGROUND_API CFrameworkServerSocket : public zet::TcpServer
{
public:
    using ClientSockets = zet::Dictionary<CFrameworkClientSocket*, zet::Unknown::Handle_T<CFrameworkClientSocket>>;
    using FrameworkSockets = zet::Dictionary<zet::uuid_node_t, zet::Unknown::Handle_T<CFrameworkClientSocket>>;

    // The address of this server for logs and for the host. listen() does not use it: it listens on all addresses of
    // this machine unless setBindAddress() was called. An empty ip is replaced by the name of this machine.
    CFrameworkServerSocket(const zet::String_T<wchar_t>& ip, unsigned short port);
    // Calls close() of this class.
    ~CFrameworkServerSocket() override;

    // Ticks each connection and abandons those that are down, then accepts pending connections.
    void onTick(unsigned int tick) override;
    // Closes and abandons each connection and stops listening.
    void close() override;
    // Listens on this port; GetPort() still returns the constructor's.
    bool listen(unsigned short port, int backlog) override;
    // Accepts the next pending connection into a CFrameworkClientSocket, which the server holds from then on. False
    // changes nothing; an object of another class is refused.
    bool accept(zet::TcpConnection* connection) override;
    // Removes the connection from both dictionaries. Within a tick the object lives until the end of the tick.
    virtual void Abandon(zet::TcpConnection* connection);

    // What the constructor was given.
    const zet::String_T<wchar_t>& GetIP() const { return m_IP; }
    unsigned short GetPort() const { return m_Port; }
    // The number of connections that the server holds.
    int GetClientCount() const { return m_ClientSockets.getSize(); }
    // For lookups and walks. Only the operations of this class change the dictionaries: a walker may call Abandon(),
    // but not erase().
    ClientSockets* GetAllClientSocket() const { return &m_ClientSockets; }
    FrameworkSockets* GetAllFrameworkSocket() const { return &m_FrameworkSockets; }
    // Null for an unknown key.
    zet::Unknown::Handle_T<CFrameworkClientSocket> GetFrameworkSocket(zet::uuid_node_t node);
    // Registers a connection once, if its peer's id is known. Of two peers with one key the later one is found; when
    // the earlier one ends, neither is.
    void SetFrameworkSocket(CFrameworkClientSocket* client);
    // Ends the registration of a connection; no effect on one that is not registered.
    void RemoveFrameworkSocket(CFrameworkClientSocket* client);

    // Adds the rules of a file to the present ones. If the file does not open, that is a warning.
    void AddRejectAddressFrom(const wchar_t* path);
    void AddPermissionAddressFrom(const wchar_t* path);
    // Reads all files that these two calls were given again and replaces their rules at once; rules added by other
    // calls stay, and a rule that was there before keeps its hits. If a file does not open, that is a warning, and the
    // rules stay as they are: false.
    bool ReloadAddressFiles();

    const wchar_t* getClassName() const override { return L"CFrameworkServerSocket"; }
    const wchar_t* getClassTimestamp() const override;

protected:
    zet::String_T<wchar_t> m_IP;
    unsigned short m_Port;
    // Mutable, since a dictionary records the walks over it.
    mutable ClientSockets m_ClientSockets;
    mutable FrameworkSockets m_FrameworkSockets;

private:
    class Walk;
    struct ClientSocketTick_Manager_foreach_N;
    struct ClientSocketClose_Manager_foreach_N;

    void tickClients(unsigned int tick);
    void abandonGuarded(CFrameworkClientSocket* client);
    void endWalk();
    // Closes a connection that could not be kept for lack of memory.
    void lose(CFrameworkClientSocket* client);
    bool hasOthers() const;
    void warnOfFile(zet::AddressFilter::List list, const wchar_t* path) const;

    // The connections of m_ClientSockets whose tick has something to do, in the same order; and those whose class
    // overrides onTick().
    const std::unique_ptr<zet::inner::ReadyList> m_Ready;
    // In the order in which they were added.
    std::vector<std::pair<zet::AddressFilter::List, zet::String_T<wchar_t>>> m_AddressFiles;
    // Connections abandoned during a walk.
    std::vector<zet::Unknown::Handle_T<CFrameworkClientSocket>> m_Abandoned;
    // The first connection of the next tick's walk if time ended the last one; compared, never dereferenced.
    const CFrameworkClientSocket* m_First = nullptr;
    int m_Walks = 0;
};
