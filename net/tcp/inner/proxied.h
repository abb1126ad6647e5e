// The connections of a port that a proxy has opened and whose peers are not known yet.
#pragma once

#include "net/address_filter.h"
#include "net/end_cause.h"
#include "net/inner/proxy_header.h"
#include "net/inner/watched.h"
#include "net/limits.h"

#include <list>
#include <vector>

namespace zet::inner
{

// Reads the header of each connection, and no byte after it, so that TLS or the first packet is still in the socket.
// Belongs to the server's thread. Clear it before the reactor of its connections is released.
class Proxied final
{
public:
    // A connection whose header is complete.
    struct Known
    {
        DoorHandle m_Handle;
        Endpoint m_Peer;
        bool m_IsPrepared;
    };
    // A connection that is refused; the reason is null where the text of the cause is enough.
    struct Refused
    {
        Endpoint m_Proxy;
        EndCause m_Cause;
        const wchar_t* m_Reason;
    };

    explicit Proxied(AddressFilter trusted);
    ~Proxied();
    Proxied(const Proxied&) = delete;
    Proxied& operator=(const Proxied&) = delete;

    // The permitted networks are those of the proxies.
    AddressFilter& trusted() { return m_Trusted; }
    int getCount() const { return static_cast<int>(m_Waiting.size() + m_Known.size()); }

    // Waits for the header of a connection and owns its handle from then on. isPrepared is returned with it. False, and
    // the handle stays with the caller, if the system does not watch it. Throws std::bad_alloc and changes nothing
    // then.
    bool await(Reactor& reactor, DoorHandle& handle, const Endpoint& proxy, bool isPrepared);
    // Reads what has arrived, and closes connections that are refused and those whose time is over. Returns them, until
    // the next call.
    const std::vector<Refused>& read(const NetLimits& limits);
    bool hasKnown() const { return !m_Known.empty(); }
    // The earliest known one. REQUIRES: hasKnown().
    Known take();
    // Sets moment to the tick at which read() has to be called even without input. False if no connection waits.
    bool getDeadline(const NetLimits& limits, unsigned int& moment) const;
    // Closes all connections.
    void clear();

private:
    struct Waiting;
    using Place = std::list<Waiting>::iterator;

    void readOne(Place place);
    void refuse(Place place, EndCause cause, const wchar_t* reason);

    AddressFilter m_Trusted;
    // In the order in which they were accepted.
    std::list<Waiting> m_Waiting;
    // Those with input.
    std::vector<Place> m_Readable;
    std::vector<Refused> m_Refused;
    // Those whose header is complete, which are not watched any more.
    std::list<Waiting> m_Known;
};

} // namespace zet::inner
