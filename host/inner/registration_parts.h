// The connections and the known servers of a Registration.
#pragma once

#include "host/registration.h"
#include "host/tasks.h"

#include <list>
#include <map>
#include <set>

namespace host::inner
{

// Held by its Registration only; the handler of greetings refers to it weakly.
class RegistrationParts final
{
public:
    explicit RegistrationParts(zet::System& system);
    ~RegistrationParts();
    RegistrationParts(const RegistrationParts&) = delete;
    RegistrationParts& operator=(const RegistrationParts&) = delete;

    void setRecord(const CCmdServerRegister& record);
    bool start(const wchar_t* address, unsigned short port);
    void stop();
    void onHello(CCommandSocket& socket, const CCmdServerHello& hello);

    // Of this server.
    CCmdServerRegister m_Record;
    Registration::ServerCall m_OnServer;
    Registration::ServerCall m_OnGone;
    std::function<void()> m_OnShutdown;
    std::function<void()> m_OnRegistered;
    Registration::GreetingCheck m_GreetingCheck;
    bool m_IsRegistered = false;

    struct Server
    {
        CCmdServerRegister m_Record;
        // Announced or greeted since the present registration.
        bool m_IsConfirmed = true;
    };
    // A list, so that the records keep their places.
    std::list<Server> m_Servers;

private:
    class Link;
    using LinkHandle = zet::Unknown::Handle_T<Link>;
    using ServerPlace = std::list<Server>::iterator;

    void connect();
    void enrol();
    void onEnrolled();
    void onLinkEnd();
    void closeLink();
    void connectLater();
    void echo();
    // The servers that were not confirmed by now are gone.
    void dropUnconfirmed();

    void add(const CCmdServerRegister& record);
    ServerPlace findServer(const zet::Uuid& id);
    // Removes it and calls onGone().
    void remove(ServerPlace server);
    // The registry has reported the end of the server.
    void onFade(CCommandSocket& socket, const zet::Uuid& id);
    bool isAnnouncement(CCommandSocket& socket) const;
    // Begins to greet a known server, unless that has begun already.
    void greet(const zet::Uuid& id);
    // One attempt of the greeting with this number, if it has not been ended.
    void attempt(const zet::Uuid& id, unsigned int number, std::chrono::milliseconds delay);
    // Calls attempt() after the delay.
    void attemptLater(const zet::Uuid& id, unsigned int number, std::chrono::milliseconds delay);
    void endGreeting(const zet::Uuid& id);

    zet::System& m_System;
    zet::String_T<wchar_t> m_Address;
    unsigned short m_Port = 0;
    bool m_IsStarted = false;
    bool m_IsStopped = false;
    std::chrono::milliseconds m_Delay = Registration::kFirstDelay;
    // Incremented with each link, so that a late timer does nothing.
    unsigned int m_LinkNumber = 0;
    // The places in m_Servers.
    std::map<zet::Uuid, ServerPlace> m_Places;
    // The servers of which the registry has reported the end since the present registration. A greeting that one had
    // sent before does not bring it back.
    std::set<zet::Uuid> m_Gone;

    CCmdAnalyserSocket m_Analyser;
    Handlers m_Handlers;
    Questions m_Questions;
    LinkHandle m_Link;
    struct Greeting
    {
        // Not used again, so that a late answer or timer of an ended greeting does nothing.
        unsigned int m_Number = 0;
        // Null between two attempts.
        zet::Unknown::Handle_T<CCommandSocket> m_Socket;
    };
    // By the id of the other server, which is a known one.
    std::map<zet::Uuid, Greeting> m_Greetings;
    unsigned int m_GreetingNumber = 0;
    Tasks m_Tasks;
};

} // namespace host::inner
