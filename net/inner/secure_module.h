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

// A module of its own, the file zet_Secure beside the library, which is loaded when it is first needed: with those two
// and the eight libraries that they bring, a program would take more than twice as long to start. THREADS: any.
class SecureModule
{
public:
    // Null if the file is not there, belongs to another version of the library, or cannot be loaded; the next call
    // tries again. What is loaded stays until the process ends.
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

// The module's entry point, and its type: null for another version of the library, whose classes may differ.
constexpr char kSecureModuleEntryName[] = "zet_getSecureModule";
using SecureModuleEntry = SecureModule* (*)(const char* version);

} // namespace zet::inner
