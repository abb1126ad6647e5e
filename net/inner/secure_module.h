// The part of the library that needs GnuTLS and ngtcp2: TLS, and connections over UDP.
#pragma once

#include "framework/export.h"

#include <memory>

namespace zet
{
class UdpServer;
}

namespace zet::inner
{

class DoorHandle;
class Reactor;
class TlsLayer;
class TlsStore;
class UdpRouter;

// A module of its own, a file in the library's folder, which is loaded when it is first needed: GnuTLS, ngtcp2 and the
// eight libraries that they bring make the start of a program more than twice as long. THREADS: any.
class SecureModule
{
public:
    // The first call loads it, and it stays until the process ends. Null if the library was built without it, or if it
    // cannot be loaded, which is logged once.
    COMMONGROUND_API static SecureModule* get();

    virtual std::unique_ptr<TlsStore> makeStore() = 0;
    virtual std::unique_ptr<TlsLayer> makeLayer() = 0;
    // Whether it was built with connections over UDP.
    virtual bool hasUdp() const = 0;
    // Makes a router on a bound socket and takes over the handle. Null, and the caller keeps the handle, if the router
    // cannot start. Needs connections over UDP.
    virtual std::shared_ptr<UdpRouter> makeRouter(UdpServer& server, const std::shared_ptr<Reactor>& reactor,
                                                  DoorHandle& handle) = 0;

protected:
    ~SecureModule() = default;
};

// The module's entry point.
constexpr char kSecureModuleEntryName[] = "zet_getSecureModule";
using SecureModuleEntry = SecureModule* (*)();

} // namespace zet::inner
