// What the commands with connections share: the connection to a peer, the loop, the lines of what arrives.
#pragma once

#include "framework/system.h"
#include "net/tls/context.h"
#include "packaging/cmd_packager.h"
#include "tools/host_port.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace CLI
{
class App;
}

namespace wirelens
{

// How commands travel to a peer.
struct Transport
{
    bool m_Udp = false;
    bool m_Tls = false;
    // Files of authorities; without any, those of the operating system are trusted.
    std::vector<std::string> m_Trust;
    std::vector<std::string> m_Revocations;
    // The name that the certificate must contain, instead of the host's.
    std::string m_ServerName;
    // This side's own, if the server asks for it.
    std::string m_Certificate;
    std::string m_Key;
};

void addTransport(CLI::App& command, Transport& transport);
// The positional argument TARGET or the like: HOST:PORT.
void addHostPort(CLI::App& command, const std::string& name, const std::string& hostOfPort, tools::HostPort& target);

// A connection to a peer. Belongs to the thread of its System, and ends before it.
class Link
{
public:
    struct Events
    {
        std::function<void()> m_Established;
        std::function<void(const CCmdPackager& command)> m_Command;
        // Once. The library logs the cause.
        std::function<void()> m_Ended;
    };

    virtual ~Link() = default;
    // Queues the command, also while connecting. False if the connection has ended.
    virtual bool send(const CCmdPackager& command) = 0;
    // Whether the peer reads too slowly for more.
    virtual bool isFull() const = 0;
    // Bytes that have not left yet.
    virtual size_t getOutputSize() const = 0;
    virtual void close() = 0;

    // Begins to connect. Null, and reported, if that fails at once.
    static std::unique_ptr<Link> connect(zet::System& system, const tools::HostPort& target, const Transport& transport,
                                         Events events);
};

// The context for the certificate of a server and its key; null, and reported, if they are not valid.
zet::Unknown::Handle_T<zet::TlsContext> serverContext(const std::string& certificate, const std::string& key);

// Ticks the system until the step, called after each tick, gives an exit code.
int runLoop(zet::System& system, const std::function<std::optional<int>()>& step);

// From then on SIGINT and SIGTERM make isInterrupted() true instead of ending the program.
void catchInterrupts();
bool isInterrupted();

// Prints the line of decode for a command: first the members, such as "\"direction\":\"to_server\",", if any. The
// line is visible at once.
void printCommand(std::string_view members, const CCmdPackager& command);

std::string narrowed(const zet::String_T<wchar_t>& text);

} // namespace wirelens
