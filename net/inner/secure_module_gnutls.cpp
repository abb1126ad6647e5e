// The module zet_Secure.
#include "net/inner/secure_module.h"

#include "net/quic/inner/udp_router.h"
#include "net/tls/inner/layer_gnutls.h"
#include "net/tls/inner/store_gnutls.h"

namespace zet::inner
{

namespace
{

class GnuTlsModule final : public SecureModule
{
public:
    std::unique_ptr<TlsStore> makeStore() override { return std::make_unique<GnuTlsStore>(); }
    std::unique_ptr<TlsLayer> makeLayer() override { return std::make_unique<GnuTlsLayer>(); }
    bool hasUdp() const override { return UdpRouter::isAvailable(); }
    std::shared_ptr<UdpRouter> makeRouter(UdpServer& server, const std::shared_ptr<Reactor>& reactor,
                                          DoorHandle& handle) override
    {
        return UdpRouter::make(server, reactor, handle);
    }
};

} // namespace

} // namespace zet::inner

extern "C" ZET_MODULE_EXPORT zet::inner::SecureModule* zet_getSecureModule()
{
    static zet::inner::GnuTlsModule s_Module;
    return &s_Module;
}
