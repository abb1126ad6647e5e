// The prefixes of the lines that the processes print to their standard output, one line per event. The demonstration
// waits for these.
#pragma once

namespace arena::lines
{

// A server of either kind listens; the port follows.
constexpr char kListening[] = "listening on port ";
// A server of either kind ends by itself.
constexpr char kEnded[] = "ended";

// The registry: a server's name, type and address follow.
constexpr char kRegistered[] = "registered ";
constexpr char kUnregistered[] = "unregistered ";
constexpr char kGone[] = "connection lost: ";
// The name and the reason follow.
constexpr char kRefused[] = "refused ";
constexpr char kShuttingDown[] = "ordered to shut down";

// A service: its id follows.
constexpr char kAccepted[] = "registered under id ";
// The registry's reason follows.
constexpr char kRejected[] = "registration refused: ";
constexpr char kRegistryGreeted[] = "greeted the registry: ";
// The name, type and address of another service follow.
constexpr char kNew[] = "new server: ";
constexpr char kFade[] = "server left: ";
constexpr char kGreeted[] = "greeted ";
// Figures follow.
constexpr char kEcho[] = "echo: ";
constexpr char kLeft[] = "left the registry";

// A lookup: the address follows.
constexpr char kFound[] = "found at ";
constexpr char kNone[] = "none";

} // namespace arena::lines
