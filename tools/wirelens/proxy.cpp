// wirelens proxy: passes the bytes of connections on unchanged, and shows the commands in them.
#include "framework/string_helper.h"
#include "framework/time.h"
#include "net/tcp/server.h"
#include "tools/capture/capture_decoder.h"
#include "tools/capture/packet_finder.h"
#include "tools/capture/session_message.h"
#include "tools/frame_reader.h"
#include "tools/wirelens/live.h"
#include "tools/wirelens/options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <chrono>
#include <iostream>
#include <list>

namespace wirelens
{

namespace
{

struct ProxyOptions
{
    tools::HostPort m_Listen;
    tools::HostPort m_Target;
};

using Handle = zet::Unknown::Handle_T<zet::TcpConnection>;

// Bytes that one side may receive in one tick.
constexpr int kTurn = 0x40000;

int64_t microseconds()
{
    return std::chrono::duration_cast<std::chrono::microseconds>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

// Prints the commands that one side of a connection sends. The bytes do not depend on it: what is not a command is
// reported and skipped.
class Shown final : public tools::FinderSink
{
public:
    Shown(const char* direction, const std::string& connection) : m_Direction(direction), m_Connection(connection) {}

    void add(std::string_view bytes) { m_Finder.onBytes(bytes); }
    void finish() { m_Finder.finish(); }

    void onFrame(const CCmdPackager& frame, uint64_t offset, const NetPacketView* message) override
    {
        tools::JsonText members = start(offset);
        members.put(',');
        if (message)
            tools::addSessionMessage(members, *message);
        printCommand(members.view(), frame);
    }
    void onMessage(std::string_view className, uint64_t offset, uint64_t size) override
    {
        tools::JsonText members = start(offset);
        members.put(',');
        tools::addSessionMessage(members, className, size);
        std::cout << '{' << members.view() << '}' << std::endl;
    }
    void onNotice(const std::string& what, uint64_t offset, uint64_t skipped) override
    {
        tools::JsonText members = start(offset);
        members.put(",\"skipped\":");
        members.addInteger(static_cast<long long>(skipped));
        members.put(",\"notice\":");
        members.addText(what);
        std::cout << '{' << members.view() << '}' << std::endl;
    }
    void onLoss(uint64_t) override {}

private:
    // What every line begins with.
    tools::JsonText start(uint64_t offset) const
    {
        tools::JsonText members;
        members.put("\"time\":\"");
        members.put(tools::timeText(microseconds()));
        members.put("\",\"connection\":");
        members.addText(m_Connection);
        members.put(",\"direction\":\"");
        members.put(std::string_view(m_Direction));
        members.put("\",\"offset\":");
        members.addInteger(static_cast<long long>(offset));
        return members;
    }

    const char* m_Direction;
    const std::string& m_Connection;
    tools::PacketFinder m_Finder{*this};
};

// A client's connection and the one to the target that was made for it.
class Pair
{
public:
    Pair(zet::System& system, Handle client, const ProxyOptions& options)
        : m_Client(std::move(client)), m_Target(new zet::TcpConnection),
          m_Name(narrowed(m_Client->getPeerName()) + "-" + options.m_Target.m_Host + ":" +
                 std::to_string(options.m_Target.m_Port))
    {
        m_IsOver = !m_Client->start(&system) || !m_Target->start(&system) ||
                   !m_Target->connect(zet::StringHelper::utf8ToWide(options.m_Target.m_Host.c_str()).getBuffer(),
                                      options.m_Target.m_Port, true);
    }
    ~Pair()
    {
        m_ToServer.finish();
        m_ToClient.finish();
        for (zet::TcpConnection* const side : {m_Client.get(), m_Target.get()})
        {
            side->close();
            side->stop();
        }
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    // Passes on what has arrived. False once the pair is over.
    bool pass()
    {
        if (m_IsOver)
            return false;
        pass(*m_Client, *m_Target, m_ToServer, m_ClientEnded);
        pass(*m_Target, *m_Client, m_ToClient, m_TargetEnded);
        // The other side gets all that the ended one has sent first.
        if (m_ClientEnded && m_TargetEnded)
            return false;
        if (m_ClientEnded)
            return m_Target->getOutputSize() > 0;
        return !m_TargetEnded || m_Client->getOutputSize() > 0;
    }

private:
    static void pass(zet::TcpConnection& from, zet::TcpConnection& to, Shown& shown, bool& isEnded)
    {
        char bytes[0x4000];
        for (int left = kTurn; left > 0 && !isEnded && !to.isOutputHigh();)
        {
            const int got = from.receive(bytes, sizeof bytes);
            isEnded = got < 0;
            if (got <= 0)
                return;
            left -= got;
            shown.add({bytes, static_cast<size_t>(got)});
            // A side that has ended takes no more. What it sent before still goes to the other one, until its own
            // receive() reports the end.
            static_cast<void>(to.send(bytes, got));
        }
    }

    Handle m_Client;
    Handle m_Target;
    const std::string m_Name;
    Shown m_ToServer{"to_server", m_Name};
    Shown m_ToClient{"to_client", m_Name};
    bool m_ClientEnded = false;
    bool m_TargetEnded = false;
    bool m_IsOver = false;
};

class Proxy final : public zet::TcpServer
{
public:
    Proxy(zet::System& system, const ProxyOptions& options) : m_System(system), m_Options(options) {}

    void onAccept() override
    {
        const Handle client(new zet::TcpConnection);
        if (accept(client.get()))
            m_Pairs.emplace_back(m_System, client, m_Options);
    }
    void passAll()
    {
        m_Pairs.remove_if([](Pair& pair) { return !pair.pass(); });
    }

private:
    zet::System& m_System;
    const ProxyOptions& m_Options;
    std::list<Pair> m_Pairs;
};

int runProxy(const ProxyOptions& options)
{
    catchInterrupts();
    zet::System system;
    const zet::Unknown::Handle_T<Proxy> proxy(new Proxy(system, options));
    const auto address = zet::StringHelper::utf8ToWide(options.m_Listen.m_Host.c_str());
    if (!proxy->setBindAddress(address.getBuffer()))
    {
        std::cerr << "wirelens: " << options.m_Listen.m_Host << " is not an address\n";
        return 2;
    }
    if (!proxy->start(&system) || !proxy->listen(options.m_Listen.m_Port, 0))
        return 1;
    std::cerr << "wirelens: listening on port " << proxy->getPort() << std::endl;
    return runLoop(system,
                   [&]() -> std::optional<int>
                   {
                       proxy->passAll();
                       return isInterrupted() ? std::optional<int>(0) : std::nullopt;
                   });
}

} // namespace

void addProxy(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<ProxyOptions>();
    CLI::App* const command = addCommand(
        app, "proxy", "between clients and a server over TCP: passes all on and shows the commands",
        "LISTEN is a port, of 127.0.0.1, or ADDRESS:PORT; port 0 takes a free one, which is printed. TARGET is "
        "HOST:PORT.\n"
        "Each connection to LISTEN gets one to TARGET. All bytes are passed on unchanged, whatever they are, and a\n"
        "connection that ends also ends the other one. Prints each command as soon as it has passed, as decode does "
        "for\n"
        "a capture; after bytes that are not a packet a line has a \"notice\", and the next plausible packet is "
        "searched.\n"
        "Runs until it is interrupted.");
    addHostPort(*command, "LISTEN", "127.0.0.1", options->m_Listen);
    addHostPort(*command, "TARGET", "", options->m_Target);
    command->callback([options, &chosen] { chosen = [options] { return runProxy(*options); }; });
}

} // namespace wirelens
