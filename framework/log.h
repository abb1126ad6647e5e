// The log of a process: three levels, printf-style wide patterns, and the loaded sinks.
// Every operation may be called from any thread.
//
// Modules write on their own threads, so logging does not wait for a disk or a console; only whistle() may. The queue
// of a module is bounded; lines beyond the bound are lost, counted, and reported when there is space again.
//
// While no sink takes lines, that is, no sink is added and no module is loaded and started, warnings and errors go to
// standard error, on the thread that logs, and messages are lost. A host that wants no log calls
// setStandardError(false).
#pragma once

#include "framework/format.h"
#include "framework/string.h"

#include <functional>

namespace zet
{

// The log of the process. A line goes to all loaded modules and to all sinks. All operations may be called from any
// thread.
class COMMONGROUND_API Log
{
public:
    enum Level
    {
        kMessage,
        kWarning,
        kError
    };
    // Receives one formatted line. Called on the thread that logs, one line at a time, or on a module's thread to
    // report a fault of that module; it blocks the calling thread. A line logged from inside a sink is dropped. A sink
    // must not add or remove sinks.
    using Sink = std::function<void(Level, const String_T<wchar_t>&)>;

    // Log a line of the level in their name, formatted by the rules of framework/format.h. Not inline: code that logs
    // nothing pays for one jump only.
    template <class... Args>
    [[gnu::noinline]] static void message(const wchar_t* pattern, const Args&... args)
    {
        if (isWanted())
            write(kMessage, formatText(pattern, args...));
    }
    template <class... Args>
    [[gnu::noinline]] static void warning(const wchar_t* pattern, const Args&... args)
    {
        if (isWanted(kWarning))
            write(kWarning, formatText(pattern, args...));
    }
    template <class... Args>
    [[gnu::noinline]] static void error(const wchar_t* pattern, const Args&... args)
    {
        if (isWanted(kError))
            write(kError, formatText(pattern, args...));
    }

    // Call with false directly after the report of a serious fault: waits, at most 100 ms and once a second, until the
    // modules that are not stalled have written all lines. Call with true to notify the modules that the fault is over.
    static void whistle(bool on);
    // Waits until the modules have written everything logged before. False after that many milliseconds, and inside a
    // sink.
    static bool flush(unsigned int milliseconds);
    // Lines that modules have lost, for any reason, since the start of the process.
    static unsigned long long getLostLines();

    // Sets a parameter of a log module: "MODULE@NAME=VALUE", such as "FileLog@path=DIR/". Also applies to modules
    // loaded later.
    static void setparam(const wchar_t* text);
    // Starts the loaded modules. Lines logged before start() or after stop() reach only sinks added by addSink. stop()
    // waits until the modules have written all lines, at most 2 seconds.
    static bool start();
    static void stop();

    // Adds a sink of a host or a test, which gets every line, even while the log is not started. Returns its number.
    static int addSink(Sink sink);
    // Removes a sink by its number; other numbers are ignored. When it returns, the sink is not called any more.
    static void removeSink(int number);

    // Whether warnings and errors go to standard error while no sink takes lines; true at first. False is for a process
    // that wants no log at all: its failures are silent then.
    static void setStandardError(bool isUsed);

    // Whether any sink takes lines now.
    static bool isWanted();
    // Whether lines of this level go anywhere now; if not, no line is formatted.
    static bool isWanted(Level level);
    // Logs a formatted line. Dropped inside a sink.
    static void write(Level level, const String_T<wchar_t>& line);
};

} // namespace zet
