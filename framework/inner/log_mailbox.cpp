#include "framework/inner/log_mailbox.h"

#include "framework/inner/log_time.h"
#include "framework/platform/platform.h"

#include <chrono>
#include <utility>

namespace zet::inner
{

namespace
{

// How long a fork waits for a module's running call to end.
constexpr std::chrono::milliseconds kForkWait{100};

} // namespace

LogMailbox::LogMailbox(const LogModule& module, Report report) : m_Module(module), m_Report(report) {}

void LogMailbox::postParam(const String_T<wchar_t>& name, const String_T<wchar_t>& value)
{
    Entry entry;
    entry.m_Kind = Entry::kParam;
    entry.m_Text = name;
    entry.m_Value = value;
    post(std::move(entry));
}

void LogMailbox::postStart()
{
    Entry entry;
    entry.m_Kind = Entry::kStart;
    post(std::move(entry));
}

void LogMailbox::postStop()
{
    Entry entry;
    entry.m_Kind = Entry::kStop;
    post(std::move(entry));
}

void LogMailbox::postWhistle(bool on)
{
    Entry entry;
    entry.m_Kind = Entry::kWhistle;
    entry.m_Number = on;
    const std::lock_guard lock(m_Mutex);
    // A second one directly after the first adds nothing, and these entries are not bounded like lines.
    const bool isRepeated =
        !m_Waiting.empty() && m_Waiting.back().m_Kind == Entry::kWhistle && m_Waiting.back().m_Number == entry.m_Number;
    if (!isRepeated && !m_IsOutOfReach)
        addEntry(std::move(entry));
}

void LogMailbox::postLine(long long time, Log::Level level, const String_T<wchar_t>& text)
{
    const std::lock_guard lock(m_Mutex);
    const size_t units = static_cast<size_t>(text.getLength());
    const bool isFull = m_Lines >= kMaxLines || (m_Lines > 0 && m_Units + units > kMaxUnits);
    if (isFull || m_IsOutOfReach)
    {
        ++m_Lost;
        lose(1);
        return;
    }
    try
    {
        Entry entry;
        entry.m_Number = level;
        entry.m_Time = time;
        entry.m_Text = text;
        addEntry(std::move(entry));
    }
    catch (...)
    {
        // No memory. The thread that logs must not fail for that.
        ++m_Lost;
        lose(1);
    }
}

void LogMailbox::post(Entry&& entry)
{
    const std::lock_guard lock(m_Mutex);
    if (!m_IsOutOfReach)
        addEntry(std::move(entry));
}

void LogMailbox::addEntry(Entry&& entry)
{
    const bool isLine = entry.m_Kind == Entry::kLine;
    const size_t units = static_cast<size_t>(entry.m_Text.getLength());
    m_Waiting.push_back(std::move(entry));
    ++m_Posted;
    // Counted as soon as it waits, even if no thread can be started.
    if (isLine)
    {
        ++m_Lines;
        m_Units += units;
    }
    // If no thread can be started now, the next entry tries again.
    if (!m_HasThread)
        m_HasThread = platform::startThread([](void* self) { static_cast<LogMailbox*>(self)->run(); }, this);
    m_Signals->m_HasWork.notify_all();
}

bool LogMailbox::waitUntilDone(unsigned int milliseconds)
{
    if (m_ThreadId.load(std::memory_order_relaxed) == std::this_thread::get_id())
        return false;
    std::unique_lock lock(m_Mutex);
    const unsigned long long last = m_Posted;
    const bool isDone = m_Signals->m_IsDone.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                                     [this, last] { return m_Done >= last; });
    m_WasInVain = !isDone;
    m_StalledAt = m_Done;
    return isDone;
}

bool LogMailbox::isStalled()
{
    const std::lock_guard lock(m_Mutex);
    return m_WasInVain && m_Done == m_StalledAt;
}

void LogMailbox::run()
{
    m_ThreadId.store(std::this_thread::get_id(), std::memory_order_relaxed);
    std::unique_lock lock(m_Mutex);
    for (;;)
    {
        if (m_Waiting.empty() && !m_IsStarted)
        {
            m_HasThread = false;
            m_ThreadId.store(std::thread::id(), std::memory_order_relaxed);
            return;
        }
        m_Signals->m_HasWork.wait(lock, [this] { return !m_Waiting.empty(); });
        m_Batch.swap(m_Waiting);
        const unsigned long long lost = std::exchange(m_Lost, 0);
        lock.unlock();
        handOver(lost);
        lock.lock();
        for (const Entry& entry : m_Batch)
        {
            if (entry.m_Kind != Entry::kLine)
                continue;
            --m_Lines;
            m_Units -= static_cast<size_t>(entry.m_Text.getLength());
        }
        m_Done += m_Batch.size();
        m_Batch.clear();
        m_Signals->m_IsDone.notify_all();
    }
}

void LogMailbox::handOver(unsigned long long lost)
{
    for (const Entry& entry : m_Batch)
    {
        try
        {
            call(entry);
        }
        catch (...)
        {
            // An exception from a module loses at most this line.
            if (entry.m_Kind == Entry::kLine)
                lose(1);
        }
    }
    try
    {
        if (lost > 0 && m_IsStarted)
            tell(Log::kWarning,
                 formatText(L"%s lost %llu lines: they came faster than it could write them", m_Module.m_Name, lost));
        flush();
    }
    catch (...)
    {
        // No memory for the report.
    }
}

void LogMailbox::call(const Entry& entry)
{
    // A module writes its lines before it changes to another file or stops.
    if (entry.m_Kind != Entry::kLine)
        flush();
    switch (entry.m_Kind)
    {
    case Entry::kParam:
        m_Module.m_SetParam(entry.m_Text, entry.m_Value);
        break;
    case Entry::kStart:
        m_IsStarted = true;
        m_IsFailing = false;
        m_LostToFailure = 0;
        m_Module.m_Start();
        break;
    case Entry::kStop:
        m_IsStarted = false;
        m_Module.m_Stop();
        break;
    case Entry::kWhistle:
        m_Module.m_Whistle(entry.m_Number);
        break;
    case Entry::kLine:
        writeLine(entry.m_Time, static_cast<Log::Level>(entry.m_Number), entry.m_Text);
        break;
    }
}

void LogMailbox::writeLine(long long time, Log::Level level, const String_T<wchar_t>& text)
{
    m_Module.m_Write(time, level, text.getBuffer(), text.getLength());
    ++m_Unflushed;
}

void LogMailbox::flush()
{
    if (m_Unflushed == 0)
        return;
    const unsigned long long lines = std::exchange(m_Unflushed, 0);
    const wchar_t* const failure = m_Module.m_Flush();
    if (failure)
    {
        lose(lines);
        m_LostToFailure += lines;
        if (!std::exchange(m_IsFailing, true))
            m_Report(*this, Log::kError, formatText(L"%s: %s", m_Module.m_Name, failure));
    }
    else if (std::exchange(m_IsFailing, false))
    {
        tell(Log::kWarning,
             formatText(L"%s writes again: %llu lines are lost", m_Module.m_Name, std::exchange(m_LostToFailure, 0)));
        m_Unflushed = 0;
        m_Module.m_Flush();
    }
}

void LogMailbox::tell(Log::Level level, const String_T<wchar_t>& text)
{
    writeLine(getLogTime(), level, text);
    m_Report(*this, level, text);
}

void LogMailbox::lose(unsigned long long lines)
{
    m_AllLost.fetch_add(lines, std::memory_order_relaxed);
}

void LogMailbox::beginFork()
{
    std::unique_lock lock(m_Mutex);
    m_WasIdle = m_Signals->m_IsDone.wait_for(lock, kForkWait, [this] { return m_Done == m_Posted; });
    lock.release();
}

void LogMailbox::endFork(bool isChild)
{
    const std::unique_lock lock(m_Mutex, std::adopt_lock);
    if (!isChild)
        return;
    // The parent writes the waiting lines.
    auto signals = std::make_unique<Signals>();
    signals->m_OfParent = m_Signals.release();
    m_Signals = std::move(signals);
    m_Waiting.clear();
    m_Lines = 0;
    m_Units = 0;
    m_Lost = 0;
    m_Done = m_Posted;
    m_HasThread = false;
    m_ThreadId.store(std::thread::id(), std::memory_order_relaxed);
    m_IsOutOfReach = m_IsOutOfReach || !m_WasIdle;
}

} // namespace zet::inner
