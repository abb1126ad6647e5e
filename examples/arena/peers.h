// Servers of one platform on several machines: what a server names to others, and who may greet it as a server.
#pragma once

#include "commands/registry.h"
#include "examples/arena/address.h"
#include "net/address_filter.h"

#include <memory>

namespace host
{
class Handlers;
class Registration;
class Service;
} // namespace host
class CCommandSocket;

namespace arena
{

// A list of networks with blanks between them.
class Peers
{
public:
    // Those of this machine.
    Peers();
    // "10.0.0.0/8 2001:db8::/32", instead of those before. False, and nothing changed, if one is not valid.
    bool set(const wchar_t* networks);
    bool contains(const CCommandSocket& socket) const;
    // Rejects all other addresses.
    zet::AddressFilter makeFilter() const;

private:
    zet::AddressFilter m_Networks;
};

// The options --peers, --advertise and --greet-at. Construct it before run(); it must live until run() returns.
class PeerOptions
{
public:
    explicit PeerOptions(host::Service& service);
    ~PeerOptions();
    PeerOptions(const PeerOptions&) = delete;
    PeerOptions& operator=(const PeerOptions&) = delete;

    // In onStart(), once the server listens on this address: reads the options and opens the port of --greet-at. False,
    // and logged, if an option is not valid or the port cannot be opened.
    bool begin(host::Registration& registration, const zet::String_T<wchar_t>& host, unsigned short port);
    // Where clients reach this server.
    const HostPort& getServed() const { return m_Served; }
    // The addresses and the port of a record.
    void fillAddress(CCmdServerRegister& record) const;

private:
    class GreetingPort;
    class GreetingConnection;
    struct Parts;

    bool openGreetingPort(host::Registration& registration);

    host::Service& m_Service;
    zet::String_T<wchar_t> m_PeerNetworks;
    zet::String_T<wchar_t> m_Advertised;
    zet::String_T<wchar_t> m_GreetAt;
    HostPort m_Served;
    // Where other servers greet this one.
    HostPort m_Greeted;
    std::unique_ptr<Parts> m_Parts;
};

// Where clients reach the server of a record: a server with a port for greetings has it as HOST:PORT in the second
// address, since the first address and the port are where servers greet it.
HostPort getServed(const CCmdServerRegister& record);

} // namespace arena
