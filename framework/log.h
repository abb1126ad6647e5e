// The log of a process: three levels, printf-style wide patterns, and whatever sinks are loaded.
// Every operation may be called from any thread.
//
// Modules write on threads of their own, so logging does not wait for a disk or a console; whistle() may, as told
// there. What waits for a module is bounded; lines beyond that are lost, counted, and reported when there is room
// again.
#pragma once

#include "framework/format.h"
#include "framework/string.h"

#include <functional>

namespace zet
{

class COMMONGROUND_API Log
{
public:
    enum Level
    {
        kMessage,
        kWarning,
        kError
    };
    // Takes one finished line. Called on the thread that logs, one line at a time, or on a module's thread for what
    // stands in that module's way; it holds whoever logs. A line that is logged from inside a sink is dropped, and a
    // sink adds and removes no sinks.
    using Sink = std::function<void(Level, const String_T<wchar_t>&)>;

    // Not inline: what has nothing to say pays one jump.
    template <class... Args>
    [[gnu::cold, gnu::noinline]] static void message(const wchar_t* pattern, const Args&... args)
    {
        if (isWanted())
            write(kMessage, formatText(pattern, args...));
    }
    template <class... Args>
    [[gnu::cold, gnu::noinline]] static void warning(const wchar_t* pattern, const Args&... args)
    {
        if (isWanted())
            write(kWarning, formatText(pattern, args...));
    }
    template <class... Args>
    [[gnu::cold, gnu::noinline]] static void error(const wchar_t* pattern, const Args&... args)
    {
        if (isWanted())
            write(kError, formatText(pattern, args...));
    }

    // Called with false right behind the report of a serious fault. It waits, once a second and 100 ms at most, until
    // the modules that do not stand still have put out all lines. With true it tells them that the fault is over.
    static void whistle(bool on);
    // Waits until the modules have put out what was logged before. False where that takes longer than so many
    // milliseconds, and inside a sink.
    static bool flush(unsigned int milliseconds);
    // Lines that modules have lost since the start of the process, whatever the reason.
    static unsigned long long getLostLines();

    // "FileLog@path=DIR/" and the like: the name of a log module, what to set, its value. Kept for modules loaded
    // later.
    static void setparam(const wchar_t* text);
    // Opens the loaded sinks. Lines logged before start() or behind stop() reach only sinks added by addSink. stop()
    // waits until the modules have put out all lines, 2 seconds at most.
    static bool start();
    static void stop();

    // Adds a sink of the host's or a test's own, which gets every line, started or not; returns its number.
    static int addSink(Sink sink);
    static void removeSink(int number);

    // Whether anything takes lines now; if not, no pattern is filled.
    static bool isWanted();
    static void write(Level level, const String_T<wchar_t>& line);
};

} // namespace zet
