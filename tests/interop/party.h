// One of two sides of a conversation over the loopback: what it sends, and how it checks what it receives.
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

// The side's thread, its expectations, and the faults found. Ends at the latest after its time limit.
class Party : public zet::System
{
public:
    Party(const char* name, Width peer, const std::string& goldenFolder);

    void onTick(unsigned int tick) override;
    // Prints the line, and counts a fault if the condition is false.
    void check(bool fact, const std::string& line);
    // Everything has been sent: only the end of the connection remains.
    void expectEnd() { m_IsFinished = true; }
    // Everything has been sent and received.
    void finish();
    // 0 if the conversation ended without a fault.
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
    // Whether a received command has that content.
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

// Both ends of the connection: they send all texts, in tunnels and plainly, and receive the other's.
class Speaker : public CFrameworkClientSocket
{
public:
    explicit Speaker(Party& party);
    void onTick(unsigned int tick) override;

protected:
    static void installTexts(CCmdAnalyserSocket& analyser);
    // All texts of the other side have arrived by now, or never will.
    void checkAllHeard();
    template <class Tunnel>
    void recite(bool (*wrap)(CCmdHead*, Tunnel*));
    void openTunnel(const zet::Buffer& frame);

    Party& m_Party;

private:
    void onText(const CCmdServerRegisterFail& command);

    // The texts received by the handler: each twice, from its tunnel and plainly, except refused ones.
    std::vector<const Text*> m_Expected;
    size_t m_Heard = 0;
    // The number of tunnels received.
    size_t m_Frames = 0;
};

// The server: answers a registration, a greeting and a login, then sends its texts.
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

// The client: requests all of these in order.
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
