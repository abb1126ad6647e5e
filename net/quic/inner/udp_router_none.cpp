// The library without connections over UDP: a server cannot get a port.
#include "net/quic/inner/udp_router.h"

#include "framework/log.h"

namespace zet::inner
{

bool UdpRouter::isAvailable()
{
    return false;
}

std::shared_ptr<UdpRouter> UdpRouter::make(UdpServer&, const std::shared_ptr<Reactor>&, DoorHandle&)
{
    Log::error(L"This library was built without connections over UDP");
    return nullptr;
}

} // namespace zet::inner
