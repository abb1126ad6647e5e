#include "framework/log.h"

#include "framework/inner/log_mailbox.h"
#include "framework/inner/log_time.h"
#include "framework/log_module.h"
#include "framework/modules/log_line.h"
#include "framework/platform/platform.h"

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <vector>

namespace zet
{

namespace
{

using inner::LogMailbox;

// Milliseconds that stop() and whistle() wait for the modules.
constexpr unsigned int kStopWait = 2000;
constexpr unsigned int kExitWait = 1000;
constexpr unsigned int kWhistleWait = 100;
constexpr unsigned long long kWhistleInterval = 1000;

struct NumberedSink
{
    int m_Number;
    Log::Sink m_Sink;
};

struct Param
{
    String_T<wchar_t> m_Module;
    String_T<wchar_t> m_Name;
    String_T<wchar_t> m_Value;
};

struct Sinks
{
    std::mutex m_Mutex;
    std::vector<NumberedSink> m_Own;
    // Never removed, and never destroyed.
    std::vector<LogMailbox*> m_Modules;
    std::vector<Param> m_Params;
    int m_LastNumber = 0;
    bool m_IsStarted = false;
    bool m_UsesStandardError = true;
    std::atomic<bool> m_IsWanted{false};
    // Whether warnings and errors go anywhere: to a sink, or to standard error.
    std::atomic<bool> m_AreFaultsWanted{true};

    void updateWanted()
    {
        const bool isWanted = !m_Own.empty() || (m_IsStarted && !m_Modules.empty());
        m_IsWanted.store(isWanted, std::memory_order_relaxed);
        m_AreFaultsWanted.store(isWanted || m_UsesStandardError, std::memory_order_relaxed);
    }
};

// Created by its first user and never destroyed: destructors of globals may log.
Sinks& getSinks()
{
    static Sinks* const sinks = new Sinks;
    return *sinks;
}

// Set while this thread is inside a sink, where another line would deadlock.
bool& isInSink()
{
    thread_local bool inSink = false;
    return inSink;
}

class SinkScope
{
public:
    SinkScope() { isInSink() = true; }
    ~SinkScope() { isInSink() = false; }
    SinkScope(const SinkScope&) = delete;
    SinkScope& operator=(const SinkScope&) = delete;
};

// All modules at this moment.
std::vector<LogMailbox*> getModules()
{
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    return sinks.m_Modules;
}

// Waits for all modules together.
bool waitForModules(const std::vector<LogMailbox*>& modules, unsigned int milliseconds)
{
    const unsigned long long begin = platform::getMonotonicMilliseconds();
    bool isDone = true;
    for (LogMailbox* module : modules)
    {
        const unsigned long long gone = platform::getMonotonicMilliseconds() - begin;
        isDone &= module->waitUntilDone(gone < milliseconds ? milliseconds - static_cast<unsigned int>(gone) : 0);
    }
    return isDone;
}

void writeStandardError(Log::Level level, const String_T<wchar_t>& text)
{
    const String_T<wchar_t> line = formatLogLine(inner::getLogTime(), level, text, text.getLength());
    platform::writeConsole(line.getBuffer(), line.getLength());
}

// A module's report about itself goes to all other sinks, or to standard error if there is no other sink.
void reportFromModule(const LogMailbox& from, Log::Level level, const String_T<wchar_t>& text)
{
    bool isTold = false;
    {
        Sinks& sinks = getSinks();
        const std::lock_guard lock(sinks.m_Mutex);
        const SinkScope scope;
        for (const NumberedSink& own : sinks.m_Own)
        {
            own.m_Sink(level, text);
            isTold = true;
        }
        for (LogMailbox* module : sinks.m_Modules)
        {
            if (!sinks.m_IsStarted || module == &from)
                continue;
            module->postLine(inner::getLogTime(), level, text);
            isTold = true;
        }
    }
    if (!isTold)
        writeStandardError(level, text);
}

// The thread that forks holds these locks from the first call to the second. A sink that forks already holds the log's
// lock; its child process must not use the log.
void beginFork()
{
    if (isInSink())
        return;
    getSinks().m_Mutex.lock();
    for (LogMailbox* module : getSinks().m_Modules)
        module->beginFork();
}

void endFork(bool isChild)
{
    if (isInSink())
        return;
    for (LogMailbox* module : getSinks().m_Modules)
        module->endFork(isChild);
    getSinks().m_Mutex.unlock();
}

} // namespace

void Log::whistle(bool on)
{
    static std::atomic<unsigned long long> lastWait{0};
    if (isInSink())
        return;
    std::vector<LogMailbox*> modules;
    {
        Sinks& sinks = getSinks();
        const std::lock_guard lock(sinks.m_Mutex);
        if (!sinks.m_IsStarted)
            return;
        for (LogMailbox* module : sinks.m_Modules)
        {
            // If one wait timed out, another one would too.
            if (!module->isStalled())
                modules.push_back(module);
            module->postWhistle(on);
        }
    }
    // A peer can cause faults quickly, so at most one call a second waits.
    const unsigned long long now = platform::getMonotonicMilliseconds();
    unsigned long long last = lastWait.load(std::memory_order_relaxed);
    if (!on && now - last >= kWhistleInterval && lastWait.compare_exchange_strong(last, now))
        waitForModules(modules, kWhistleWait);
}

bool Log::flush(unsigned int milliseconds)
{
    return !isInSink() && waitForModules(getModules(), milliseconds);
}

unsigned long long Log::getLostLines()
{
    if (isInSink())
        return 0;
    unsigned long long lost = 0;
    for (const LogMailbox* module : getModules())
        lost += module->getLostLines();
    return lost;
}

void Log::setparam(const wchar_t* text)
{
    const String_T<wchar_t> whole(text);
    const int at = whole.find(L'@', 0);
    const int equals = whole.find(L'=', at + 1);
    if (at < 0 || equals < 0)
        return;
    Param param;
    param.m_Module = whole.getSubString(0, at);
    param.m_Name = whole.getSubString(at + 1, equals - at - 1);
    param.m_Value = whole.getSubString(equals + 1, whole.getLength() - equals - 1);

    if (isInSink())
        return;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    for (LogMailbox* module : sinks.m_Modules)
        if (param.m_Module == module->getModule().m_Name)
            module->postParam(param.m_Name, param.m_Value);
    for (Param& kept : sinks.m_Params)
    {
        if (kept.m_Module == param.m_Module && kept.m_Name == param.m_Name)
        {
            kept.m_Value = param.m_Value;
            return;
        }
    }
    sinks.m_Params.push_back(std::move(param));
}

bool Log::start()
{
    if (isInSink())
        return false;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    if (!sinks.m_IsStarted)
    {
        sinks.m_IsStarted = true;
        for (LogMailbox* module : sinks.m_Modules)
            module->postStart();
    }
    sinks.updateWanted();
    return true;
}

void Log::stop()
{
    if (isInSink())
        return;
    std::vector<LogMailbox*> modules;
    {
        Sinks& sinks = getSinks();
        const std::lock_guard lock(sinks.m_Mutex);
        if (!sinks.m_IsStarted)
            return;
        sinks.m_IsStarted = false;
        sinks.updateWanted();
        modules = sinks.m_Modules;
        for (LogMailbox* module : modules)
            module->postStop();
    }
    // After the lock is released: a module takes it to report.
    waitForModules(modules, kStopWait);
}

int Log::addSink(Sink sink)
{
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    sinks.m_Own.push_back({++sinks.m_LastNumber, std::move(sink)});
    sinks.updateWanted();
    return sinks.m_LastNumber;
}

void Log::removeSink(int number)
{
    // The sink is destroyed after the lock is released: it may own objects whose destructors log.
    Sink removed;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    for (size_t i = 0; i < sinks.m_Own.size(); ++i)
    {
        if (sinks.m_Own[i].m_Number != number)
            continue;
        removed.swap(sinks.m_Own[i].m_Sink);
        sinks.m_Own.erase(sinks.m_Own.begin() + static_cast<std::ptrdiff_t>(i));
        break;
    }
    sinks.updateWanted();
}

void Log::setStandardError(bool isUsed)
{
    if (isInSink())
        return;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    sinks.m_UsesStandardError = isUsed;
    sinks.updateWanted();
}

bool Log::isWanted()
{
    return getSinks().m_IsWanted.load(std::memory_order_relaxed);
}

bool Log::isWanted(Level level)
{
    const Sinks& sinks = getSinks();
    return (level == kMessage ? sinks.m_IsWanted : sinks.m_AreFaultsWanted).load(std::memory_order_relaxed);
}

void Log::write(Level level, const String_T<wchar_t>& line)
{
    if (isInSink())
        return;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    const SinkScope scope;
    if (!sinks.m_IsWanted.load(std::memory_order_relaxed))
    {
        if (level != kMessage && sinks.m_UsesStandardError)
            writeStandardError(level, line);
        return;
    }
    for (const NumberedSink& own : sinks.m_Own)
        own.m_Sink(level, line);
    if (!sinks.m_IsStarted)
        return;
    const long long time = inner::getLogTime();
    for (LogMailbox* module : sinks.m_Modules)
        module->postLine(time, level, line);
}

bool registerLogModule(const LogModule* module)
{
    if (!module || module->m_Version != LogModule::kVersion || isInSink())
        return false;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    for (const LogMailbox* known : sinks.m_Modules)
        if (&known->getModule() == module)
            return true;
    if (sinks.m_Modules.empty())
    {
        platform::callAroundFork([] { beginFork(); }, [] { endFork(false); }, [] { endFork(true); });
        std::atexit([] { waitForModules(getModules(), kExitWait); });
    }
    LogMailbox* const mailbox = new LogMailbox(*module, reportFromModule);
    sinks.m_Modules.push_back(mailbox);
    for (const Param& param : sinks.m_Params)
        if (param.m_Module == module->m_Name)
            mailbox->postParam(param.m_Name, param.m_Value);
    if (sinks.m_IsStarted)
        mailbox->postStart();
    sinks.updateWanted();
    return true;
}

} // namespace zet
