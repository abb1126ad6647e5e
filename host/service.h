// A server process in one call: its log, command line, signals, drain and service manager.
//
//   host::Service service(L"zone", "Runs a zone of the game.");
//   unsigned short port = 8000;
//   service.option("--port", port, "the port to listen on");
//   service.onStart([&] { ...; service.serve(*server); return server->start(&service.getSystem()) && ...; });
//   return service.run(argc, argv);
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "framework/system.h"
#include "framework/unknown.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

class CCommandSocket;
class CFrameworkClientSocket;
class CFrameworkServerSocket;
class UdpClientSocket;
class UdpServerSocket;

namespace zet
{
class TcpServer;
class TlsContext;
} // namespace zet

namespace host
{

class Metrics;
class Questions;
class Recording;

// The exit codes of a service.
enum ExitCode : int
{
    kExitGood = 0,
    // It could not start; the log says why.
    kExitFailed = 1,
    // The command line is not valid; standard error says why.
    kExitUsage = 2,
    // A second request to end came before the first one was carried out.
    kExitAtOnce = 3
};

// A variable that an option sets. A bool is a switch without a value.
using OptionTarget = std::variant<bool*, int*, unsigned short*, zet::String_T<wchar_t>*>;

namespace inner
{
struct ServiceParts;
}

// run() reads the command line, starts the log (console, and files in "log/NAME/" in the folder of the executable) and
// ticks the System of the service until the process is to end. At most one service of a process runs.
//
// SIGNALS: SIGTERM and SIGINT (on Windows Ctrl+C, Ctrl+Break, the closing of the console, log-off and shutdown) begin
// the drain; a second one ends the process at once with kExitAtOnce and without a further log line. SIGHUP reopens the
// log files and calls what onReload() was given. SIGUSR1 starts a recording of what the sockets carry, to the file of
// --record or else to recording.pcapng in the log folder, and SIGUSR2 stops it. Signals are noticed between ticks; of
// SIGUSR1 and SIGUSR2 between two ticks, the last one counts.
//
// DRAIN: the servers accept no further connection. The System goes on with its ticks, so commands that arrive are
// handled, and open questions get their answers. A connection is closed when everything received on it was handled and
// answered and every answer has left; when no connection is left, or after the drain time, the service ends. Answered
// is what isAnswered() of its server says; without it, every connection counts as answered while no question of await()
// is open and no onBusy() returns true.
//
// A service manager that sets NOTIFY_SOCKET, such as systemd with Type=notify, gets each state. If it watches the
// process (WATCHDOG_USEC), ticks that do not end let it restart the process.
//
// THREADS: all of it belongs to the thread that constructs it and calls run(); beginDrain() too.
// Exceptions from callables are logged; one from onStart() or onReload() counts as false.
class COMMONGROUND_API Service
{
public:
    static constexpr std::chrono::milliseconds kDefaultDrainTime{10000};
    static constexpr int kNoHttp = -1;

    // The name is that of the System and of the log folder; about is the sentence of the help text, in UTF-8. The type
    // is CMyServiceSystem's. Loads the log modules.
    Service(const wchar_t* name, const char* about, unsigned char serverType = 0);
    // Everything started in its System must have stopped, or be held by handles.
    ~Service();
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    // Before run(). An option of the command line, "--port 8000" or "--port=8000". The variable's value is the default;
    // it must live until run() returns. --help, --log-folder, --drain-time, --http-port, --proxy-from, --record,
    // --record-size and --record-files exist already.
    template <class T>
    void option(const char* name, T& value, const char* help)
    {
        addOption(name, &value, help);
    }

    // Before run(). Called when the log is started, before the first tick: creates and starts what the service serves.
    // False, or an exception, ends the service with kExitFailed.
    void onStart(std::function<bool()> start);
    // Called, in order, for each request to reload. False is logged as a failed reload; the process goes on.
    void onReload(std::function<bool()> reload);
    // Called when the drain begins, before the servers stop accepting, for example to inform peers.
    void onDrain(std::function<void()> drain);
    // Called at the end, after the last tick and before the tasks of the System stop. The log is stopped already.
    void onStop(std::function<void()> stop);

    // The server is drained at the end; for each request to reload, that of TCP reads its address files again. Not
    // owned; it must live until run() returns. isAnswered: whether nothing that arrived on a connection still waits for
    // an answer of the host. With --proxy-from the server of TCP gets its networks by TcpServer::expectProxyHeader().
    void serve(CFrameworkServerSocket& server, std::function<bool(CFrameworkClientSocket&)> isAnswered = {});
    void serve(UdpServerSocket& server, std::function<bool(UdpClientSocket&)> isAnswered = {});
    // The drain waits while one of these questions is open, or while the callable returns true. As above, not owned.
    void await(const Questions& questions);
    void onBusy(std::function<bool()> isBusy);

    // Each request to reload calls TlsContext::reload(), so handshakes that begin later use the renewed certificates.
    // The service holds the context; the host gives it to its servers.
    void useTls(zet::TlsContext& context);

    // The whole drain takes no longer. Before run(); --drain-time has milliseconds, too.
    void setDrainTime(std::chrono::milliseconds time);
    // Whether the service is started, does not drain, and every callable of addReadyCheck() returns true.
    bool isReady() const;
    void addReadyCheck(std::function<bool()> isReady);
    bool isDraining() const;

    // Before run(); --http-port changes it, too. With a port (0 for a free one, which the log names) an HTTP server on
    // 127.0.0.1 answers GET and HEAD in the System: /metrics with the figures of getMetrics(), /healthz as long as
    // ticks happen, /readyz with 200 or 503 by isReady(). It has no password: whoever has access to this machine can
    // read them. A request whose field Host names neither localhost nor 127.0.0.1 nor [::1] gets 421, so that a page of
    // a foreign site cannot read them in a browser on this machine.
    void setHttpPort(int port);
    // Before run(). Requests may name this host too, such as the one that a proxy on this machine passes on: a name or
    // an address (of IPv6 in brackets) without a port.
    void allowHttpHost(const char* name);
    // Before run(). The HTTP server answers this path, such as "/" or "/page.js", with the text, of a type such as
    // "text/html; charset=utf-8". None is copied: all must live until run() returns. The paths named above and /events
    // stay the server's. Browsers let the page load from and ask this server only, and run no script in its HTML text.
    void addPage(std::string_view path, std::string_view type, std::string_view text);
    // Before run(). The HTTP server's /events (text/event-stream) sends what the callable returns, UTF-8 such as JSON,
    // in an event of this name: to each client at first, and then with each change. It is called every 250 ms, on the
    // thread of the System, while there is a client, and never without one. A text above 64 KiB is not sent, and logged
    // once. At most 8 clients; one that does not read misses changes and is closed after 10 s.
    void addEvent(const char* name, std::function<std::string()> text);
    // Off unless there is an HTTP port or the host calls setOn(true) before run(). While on, ticks are measured.
    Metrics& getMetrics() const;

    // What --record, SIGUSR1 and SIGUSR2 start and stop, for a host with another way to ask for it.
    Recording& getRecording() const;

    // Does what the first SIGTERM does.
    void beginDrain();

    // Returns an ExitCode for main() to return. A service runs once.
    int run(int count, char** words);

    // The System that run() ticks; hosts start their servers and tasks in it.
    zet::System& getSystem() const;

private:
    class Frame;

    void addOption(const char* name, OptionTarget target, const char* help);
    // "usage: zone [OPTION...]", about, and a line for each option. UTF-8.
    zet::String_T<char> getHelp() const;

    const std::unique_ptr<inner::ServiceParts> m_Parts;
    const zet::Unknown::Handle_T<Frame> m_Frame;
};

} // namespace host
