#include "framework/log.h"

#include "framework/log_module.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace zet
{

namespace
{

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
    std::vector<const LogModule*> m_Modules;
    std::vector<Param> m_Params;
    int m_LastNumber = 0;
    bool m_IsStarted = false;
    std::atomic<bool> m_IsWanted{false};

    void updateWanted()
    {
        m_IsWanted.store(!m_Own.empty() || (m_IsStarted && !m_Modules.empty()), std::memory_order_relaxed);
    }
};

// Made by its first user and never destroyed: globals of any file may log while they go.
Sinks& getSinks()
{
    static Sinks* const sinks = new Sinks;
    return *sinks;
}

// Set while this thread is inside a sink, where a further line could only wait for itself.
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

} // namespace

void Log::whistle(bool on)
{
    if (isInSink())
        return;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    const SinkScope scope;
    if (sinks.m_IsStarted)
        for (const LogModule* module : sinks.m_Modules)
            module->m_Whistle(on);
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
    const SinkScope scope;
    for (const LogModule* module : sinks.m_Modules)
        if (param.m_Module == module->m_Name)
            module->m_SetParam(param.m_Name, param.m_Value);
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
    const SinkScope scope;
    if (!sinks.m_IsStarted)
    {
        sinks.m_IsStarted = true;
        for (const LogModule* module : sinks.m_Modules)
            module->m_Start();
    }
    sinks.updateWanted();
    return true;
}

void Log::stop()
{
    if (isInSink())
        return;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    const SinkScope scope;
    if (sinks.m_IsStarted)
    {
        sinks.m_IsStarted = false;
        for (const LogModule* module : sinks.m_Modules)
            module->m_Stop();
    }
    sinks.updateWanted();
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
    // The sink dies behind the lock: it may hold objects that log when they go.
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

bool Log::isWanted()
{
    return getSinks().m_IsWanted.load(std::memory_order_relaxed);
}

void Log::write(Level level, const String_T<wchar_t>& line)
{
    if (isInSink())
        return;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    const SinkScope scope;
    for (const NumberedSink& own : sinks.m_Own)
        own.m_Sink(level, line);
    if (sinks.m_IsStarted)
        for (const LogModule* module : sinks.m_Modules)
            module->m_Write(level, line.getBuffer(), line.getLength());
}

bool registerLogModule(const LogModule* module)
{
    if (!module || module->m_Version != LogModule::kVersion || isInSink())
        return false;
    Sinks& sinks = getSinks();
    const std::lock_guard lock(sinks.m_Mutex);
    const SinkScope scope;
    for (const LogModule* known : sinks.m_Modules)
        if (known == module)
            return true;
    for (const Param& param : sinks.m_Params)
        if (param.m_Module == module->m_Name)
            module->m_SetParam(param.m_Name, param.m_Value);
    if (sinks.m_IsStarted)
        module->m_Start();
    sinks.m_Modules.push_back(module);
    sinks.updateWanted();
    return true;
}

} // namespace zet
