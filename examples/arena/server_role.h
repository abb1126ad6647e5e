// What all server roles share: the options --port, --host, --name and --registry and those of peers.h, the line with
// the port, and the registration.
#pragma once

#include "examples/arena/address.h"
#include "examples/arena/peers.h"
#include "examples/arena/protocol/server_types.h"
#include "framework/string.h"
#include "host/handlers.h"
#include "host/service.h"

#include <functional>
#include <memory>

namespace arena
{

using Address = HostPort;

// "127.0.0.1:8000" or "[::1]:8000". False, and nothing changed, for any other text.
bool parseAddress(const zet::String_T<wchar_t>& text, Address& address);

class ServerRole
{
public:
    // Adds the options and the page, which shows the name given here. The service is not owned; construct it before
    // run().
    ServerRole(host::Service& service, ServerType type, const wchar_t* name);
    ~ServerRole();
    ServerRole(const ServerRole&) = delete;
    ServerRole& operator=(const ServerRole&) = delete;

    // Before run(): other servers may greet this one on the port of these handlers.
    bool acceptGreetings(host::Handlers& handlers);

    // In onStart(): starts the server, listens on --host and --port, prints the port, and registers at --registry.
    // False, and logged, if the port cannot be opened or the registry has no valid address.
    bool serve(CFrameworkServerSocket& server);
    // In onStart(): prints how many games, players ... are there, as "arena_open_KIND" of the figures.
    void reportOpen(const char* kind, std::function<size_t()> count);
    // The first server of this type that the registry knows; false if it knows none.
    bool find(ServerType type, Address& address) const;

    const zet::String_T<wchar_t>& getName() const { return m_Name; }
    // The address on which it listens.
    const zet::String_T<wchar_t>& getHost() const { return m_Host; }
    // The port on which it listens.
    unsigned short getPort() const { return m_Port; }
    // Where clients reach it.
    const Address& getServed() const { return m_Peers.getServed(); }
    bool hasRegistry() const { return !m_Registry.isEmpty(); }

private:
    struct Parts;

    bool enrol();

    host::Service& m_Service;
    const ServerType m_Type;
    unsigned short m_Port = 0;
    zet::String_T<wchar_t> m_Host = L"127.0.0.1";
    zet::String_T<wchar_t> m_Name;
    zet::String_T<wchar_t> m_Registry;
    PeerOptions m_Peers;
    const std::unique_ptr<Parts> m_Parts;
};

} // namespace arena
