#include "examples/arena/peers.h"

#include "examples/arena/text.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "host/handlers.h"
#include "host/registration.h"
#include "host/service.h"
#include "transport/framework_client_socket.h"
#include "transport/framework_server_socket.h"

#include <string_view>

namespace arena
{

namespace
{

constexpr wchar_t kThisMachine[] = L"127.0.0.0/8 ::1";

// "10.0.0.1" of "10.0.0.1:8000", "::1" of "[::1]:8000".
zet::String_T<wchar_t> cutPort(const zet::String_T<wchar_t>& name)
{
    std::wstring_view host(name.getBuffer(), static_cast<size_t>(name.getLength()));
    host = host.substr(0, host.rfind(L':'));
    if (host.size() > 1 && host.front() == L'[' && host.back() == L']')
        host = host.substr(1, host.size() - 2);
    return std::wstring(host).c_str();
}

bool parse(const zet::String_T<wchar_t>& text, HostPort& address)
{
    return parseHostPort(zet::StringHelper::wideToUtf8(text).getBuffer(), address);
}

zet::String_T<wchar_t> toText(const HostPort& address)
{
    const std::wstring_view host(address.m_Host.getBuffer(), static_cast<size_t>(address.m_Host.getLength()));
    const bool isBare = host.find(L':') != std::wstring_view::npos && host.front() != L'[';
    return zet::formatText(isBare ? L"[%s]:%d" : L"%s:%d", address.m_Host, static_cast<int>(address.m_Port));
}

bool matches(const zet::AddressFilter::Rule& network, const zet::AddressFilter::Rule& address)
{
    for (int i = 0; i < 16; ++i)
        if ((network.m_Address[i] ^ address.m_Address[i]) & network.m_Mask[i])
            return false;
    return true;
}

} // namespace

Peers::Peers()
{
    set(kThisMachine);
}

bool Peers::set(const wchar_t* networks)
{
    zet::AddressFilter filter;
    if (!filter.addSubnets(zet::AddressFilter::kPermitted, networks) || filter.getRules().empty())
        return false;
    m_Networks = filter;
    return true;
}

bool Peers::contains(const CCommandSocket& socket) const
{
    zet::AddressFilter peer;
    if (!peer.add(zet::AddressFilter::kPermitted, cutPort(socket.getPeerName())))
        return false;
    for (const auto& network : m_Networks.getRules())
        if (matches(network, peer.getRules().front()))
            return true;
    return false;
}

zet::AddressFilter Peers::makeFilter() const
{
    zet::AddressFilter filter = m_Networks;
    filter.addSubnets(zet::AddressFilter::kRejected, L"0.0.0.0/0 ::/0");
    return filter;
}

class PeerOptions::GreetingConnection final : public CFrameworkClientSocket
{
public:
    explicit GreetingConnection(CCmdAnalyserSocket* analyser) : CFrameworkClientSocket(analyser) {}
};

class PeerOptions::GreetingPort final : public CFrameworkServerSocket
{
public:
    explicit GreetingPort(CCmdAnalyserSocket& analyser) : CFrameworkServerSocket(L"", 0), m_Analyser(analyser) {}
    void onAccept() override
    {
        accept(zet::Unknown::Handle_T<GreetingConnection>(new GreetingConnection(&m_Analyser)).get());
    }

private:
    CCmdAnalyserSocket& m_Analyser;
};

struct PeerOptions::Parts
{
    Peers m_Peers;
    CCmdAnalyserSocket m_Analyser;
    host::Handlers m_Handlers{m_Analyser};
    zet::Unknown::Handle_T<GreetingPort> m_Port{new GreetingPort(m_Analyser)};
};

PeerOptions::PeerOptions(host::Service& service) : m_Service(service), m_Parts(std::make_unique<Parts>())
{
    service.option(
        "--peers", m_PeerNetworks,
        "the networks of other servers, which may greet this one, such as \"10.0.0.0/8 127.0.0.1\"; those of "
        "this machine without it");
    service.option("--advertise", m_Advertised,
                   "ADDRESS or HOST:PORT, such as a balancer's, to name to clients; where it listens without it");
    service.option(
        "--greet-at", m_GreetAt,
        "HOST:PORT for greetings of other servers, without TLS and --proxy-from; the port of clients without "
        "it");
}

PeerOptions::~PeerOptions() = default;

bool PeerOptions::begin(host::Registration& registration, const zet::String_T<wchar_t>& host, unsigned short port)
{
    if (!m_PeerNetworks.isEmpty() && !m_Parts->m_Peers.set(m_PeerNetworks))
    {
        zet::Log::error(L"--peers needs networks such as 10.0.0.0/8, with blanks between them");
        return false;
    }
    m_Served = {host, port};
    if (!m_Advertised.isEmpty() && !parse(m_Advertised, m_Served))
        m_Served = {m_Advertised, port};
    m_Greeted = m_Served;
    if (!m_GreetAt.isEmpty())
        return openGreetingPort(registration);
    registration.setGreetingCheck([this](CCommandSocket& socket) { return m_Parts->m_Peers.contains(socket); });
    return true;
}

bool PeerOptions::openGreetingPort(host::Registration& registration)
{
    if (!parse(m_GreetAt, m_Greeted))
    {
        zet::Log::error(L"'%s' is not HOST:PORT of --greet-at", m_GreetAt);
        return false;
    }
    GreetingPort& port = *m_Parts->m_Port;
    port.setAddressFilter(m_Parts->m_Peers.makeFilter());
    if (!registration.acceptGreetings(m_Parts->m_Handlers) || !port.setBindAddress(m_Greeted.m_Host) ||
        !port.start(&m_Service.getSystem()) || !port.listen(m_Greeted.m_Port, 0))
    {
        zet::Log::error(L"Cannot listen on %s", m_GreetAt);
        return false;
    }
    // The port of clients takes no greetings.
    registration.setGreetingCheck([](CCommandSocket& socket)
                                  { return dynamic_cast<GreetingConnection*>(&socket) != nullptr; });
    m_Service.onDrain([this] { m_Parts->m_Port->close(); });
    return true;
}

void PeerOptions::fillAddress(CCmdServerRegister& record) const
{
    record.m_ServerAddress[0] = m_Greeted.m_Host;
    record.m_ServerPort = m_Greeted.m_Port;
    if (!m_GreetAt.isEmpty())
        record.m_ServerAddress[1] = toText(m_Served);
}

HostPort getServed(const CCmdServerRegister& record)
{
    HostPort address{record.m_ServerAddress[0], record.m_ServerPort};
    if (!record.m_ServerAddress[1].isEmpty())
        parse(record.m_ServerAddress[1], address);
    return address;
}

} // namespace arena
