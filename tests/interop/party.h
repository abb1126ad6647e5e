// One of two sides of a conversation over the loopback: what it says, and how it checks what it hears.
#pragma once

#include "commands/login.h"
#include "commands/registry.h"
#include "commands/zone_tunnel.h"
#include "dispatch/analyser_socket.h"
#include "framework/system.h"
#include "tests/interop/texts.h"
#include "transport/framework_client_socket.h"

#include <string>
#include <vector>

namespace interop
{

// The side's thread, what it expects of the other, and the faults that it found. Ends at the latest with its time.
class Party : public zet::System
{
public:
    Party(const char* name, Width peer, const std::string& goldenFolder);

    void onTick(unsigned int tick) override;
    // Says the line, and counts a fault where the fact does not hold.
    void check(bool fact, const std::string& line);
    // All has been said: what is left is the end of the connection.
    void expectEnd() { m_IsFinished = true; }
    // All has been said and heard.
    void finish();
    // 0 where the conversation went to its end without a fault.
    int getResult() const { return m_IsFinished && m_Faults == 0 ? 0 : 1; }
    void say(const std::string& line) const;

    // A command with the content of its golden vector "full".
    template <class Command>
    Command golden(const char* className) const
    {
        Command command;
        fill(command, className);
        return command;
    }
    // Whether a command that came has that content.
    void checkGolden(const CCmdHead& command, const char* className);

    Width getPeer() const { return m_Peer; }
    CCmdAnalyserSocket& getAnalyser() { return m_Analyser; }

private:
    void fill(CCmdHead& command, const char* className) const;

    std::string m_Name;
    Width m_Peer;
    golden::Book m_Book;
    CCmdAnalyserSocket m_Analyser;
    int m_Faults = 0;
    bool m_IsFinished = false;
    unsigned int m_End = 0;
};

// What both ends of the connection do: they recite all texts, in tunnels and plainly, and hear the other's.
class Speaker : public CFrameworkClientSocket
{
public:
    explicit Speaker(Party& party);
    void onTick(unsigned int tick) override;

protected:
    static void installTexts(CCmdAnalyserSocket& analyser);
    // Everything that the other recites has come by now, or never will.
    void checkAllHeard();
    template <class Tunnel>
    void recite(bool (*wrap)(CCmdHead*, Tunnel*));
    void openTunnel(const zet::Buffer& frame);

    Party& m_Party;

private:
    void onText(const CCmdServerRegisterFail& command);

    // What comes to the handler, as texts: each twice, from its tunnel and plainly, but for those that are refused.
    std::vector<const Text*> m_Expected;
    size_t m_Heard = 0;
    // How many tunnels have come.
    size_t m_Frames = 0;
};

// The server: answers a registration, a greeting and a login, then recites.
class Host : public Speaker
{
public:
    explicit Host(Party& party) : Speaker(party) {}
    static void install(CCmdAnalyserSocket& analyser);

private:
    void onRegister(const CCmdServerRegister& command);
    void onHello(const CCmdServerHello& command);
    void onLogin(const CCmdLogin& command);
    void onLogout(const CCmdLogout& command);
    void onTunnel(const CCmdGZ_clientToServer& command);
    void onEcho(const CCmdServerEcho& command);
};

// The client: asks for all of that, one after the other.
class Visitor : public Speaker
{
public:
    explicit Visitor(Party& party) : Speaker(party) {}
    static void install(CCmdAnalyserSocket& analyser);
    bool begin();

private:
    void onRegistered(const CCmdServerRegisterSuccess& command);
    void onHello(const CCmdServerHelloReply& command);
    void onLogin(const CCmdLoginSuccess& command);
    void onTunnel(const CCmdGZ_serverToClient& command);
    void onEcho(const CCmdServerEchoReply& command);
};

} // namespace interop
