// Keeps a server registered with the registry of its platform, and knows the other servers.
//
//   host::Registration registration(service.getSystem());
//   registration.onServer([&](const CCmdServerRegister& server) { ... });
//   registration.acceptGreetings(handlers); // of the server's own port
//   service.onStart([&] { ...; registration.setRecord(record); return registration.start(L"10.0.0.1", 8000); });
//   service.onDrain([&] { registration.stop(); });
#pragma once

#include "commands/registry.h"
#include "host/handlers.h"

#include <chrono>
#include <functional>
#include <memory>

namespace zet
{
class System;
}

namespace host
{

namespace inner
{
class RegistrationParts;
}

// Connects to the registry, sends CCmdServerRegister, and then an echo every 10 s. If the connection ends, an answer is
// missing for 10 s or the registry refuses, it connects again: after 1 s, then after twice the time each, at most 30 s.
//
// The registry announces new servers to those that are registered, but does not inform a new server of the others. So
// each server greets a new one: it connects to the first address and the port of its record, sends its own record with
// CCmdServerHello and ends the connection after CCmdServerHelloReply. A new server therefore learns of the others by
// their greetings, on its own port: see acceptGreetings(). A greeting that fails is repeated like a connect.
//
// While there is no registry the known servers stay known. Of those that are not announced and do not greet within 60 s
// after the next registration onGone() is called.
//
// LIFETIME: destroy it before its System. The Handlers of acceptGreetings() may be destroyed before or after.
// THREADS: all of it belongs to the thread of the System. Callables are called from its ticks; one may call stop(), but
// not destroy this object.
class COMMONGROUND_API Registration
{
public:
    using ServerCall = std::function<void(const CCmdServerRegister&)>;
    using GreetingCheck = std::function<bool(CCommandSocket&)>;

    static constexpr std::chrono::milliseconds kFirstDelay{1000};
    static constexpr std::chrono::milliseconds kLongestDelay{30000};
    static constexpr std::chrono::milliseconds kEchoInterval{10000};
    // The time limit of each answer, with connecting.
    static constexpr std::chrono::milliseconds kAnswerTime{10000};
    static constexpr std::chrono::milliseconds kConfirmTime{60000};
    // Known servers; further ones are logged and not kept.
    static constexpr int kMostServers = 10000;

    // The System is not owned; call it on its thread.
    explicit Registration(zet::System& system);
    // Calls stop().
    ~Registration();
    Registration(const Registration&) = delete;
    Registration& operator=(const Registration&) = delete;

    // The data of this server; the id of the command and its head are not taken. Other servers greet it at
    // m_ServerAddress[0] and m_ServerPort. An m_ServerId of zero is replaced by a new id. A later call counts from the
    // next registration on.
    void setRecord(const CCmdServerRegister& record);
    const CCmdServerRegister& getRecord() const;

    // Called once for each other server that is found, and again if its record changes, after onGone() with the old
    // one.
    void onServer(ServerCall call);
    void onGone(ServerCall call);
    // The registry orders its servers to shut down.
    void onShutdown(std::function<void()> call);
    // Called after each registration, also after one that follows a lost connection.
    void onRegistered(std::function<void()> call);

    // Answers the greetings of other servers on a port of this one: installs CCmdServerHello. False in the cases of
    // Handlers::on().
    bool acceptGreetings(Handlers& handlers);
    // Which peers may greet. A greeting can name any address as that of a server, so players must not be among them. At
    // first, peers on this machine (127.0.0.0/8, ::1). The connection of another peer that greets is closed.
    // An empty check refuses all.
    //
    // Behind a TCP balancer on the same machine, unless TcpServer::expectProxyHeader() is used, every player has an
    // address of this machine, and so may greet by default. A server there needs a check that accepts only addresses of
    // the other servers and none of this machine, or that returns false always.
    void setGreetingCheck(GreetingCheck check);

    // Begins to connect; once. False, and logged, if it was called before or there is no record.
    bool start(const wchar_t* address, unsigned short port);
    // Unregisters and closes the connection; there is no further attempt and no further call. The known servers stay.
    void stop();

    // Whether the registry has accepted the registration of the present connection.
    bool isRegistered() const;
    // The first known server of a type, or null. Valid until onGone() was called for it.
    const CCmdServerRegister* find(unsigned char type) const;
    // Each known server, in the order in which they were found.
    void forEach(const ServerCall& call) const;
    int getCount() const;

private:
    const std::shared_ptr<inner::RegistrationParts> m_Parts;
};

} // namespace host
