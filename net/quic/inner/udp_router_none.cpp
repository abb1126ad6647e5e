// The module without connections over UDP.
#include "net/quic/inner/udp_router.h"

namespace zet::inner
{

bool UdpRouter::isAvailable()
{
    return false;
}

std::shared_ptr<UdpRouter> UdpRouter::make(UdpServer&, const std::shared_ptr<Reactor>&, DoorHandle&)
{
    return nullptr;
}

} // namespace zet::inner
