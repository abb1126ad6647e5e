// The queue of one log module, and the thread that empties it.
#pragma once

#include "framework/log.h"
#include "framework/log_module.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace zet::inner
{

// Any thread may post. The module is called on its own thread, one call at a time and in the order of posting, so a
// stalled disk or console blocks no thread that logs. The queue is bounded: lines beyond the bound are lost, counted,
// and reported once there is space again. An object lives until the process ends.
class LogMailbox
{
public:
    // The maximum number of waiting lines, and of units of their texts.
    static constexpr size_t kMaxLines = 8192;
    static constexpr size_t kMaxUnits = size_t{1} << 20;

    // Passes a mailbox's report about its module to the other sinks. Called on the module's thread.
    using Report = void (*)(const LogMailbox& from, Log::Level level, const String_T<wchar_t>& text);

    LogMailbox(const LogModule& module, Report report);
    LogMailbox(const LogMailbox&) = delete;
    LogMailbox& operator=(const LogMailbox&) = delete;

    const LogModule& getModule() const { return m_Module; }

    void postParam(const String_T<wchar_t>& name, const String_T<wchar_t>& value);
    void postStart();
    void postStop();
    void postWhistle(bool on);
    // time is when the line was logged, in milliseconds since 1970 UTC.
    void postLine(long long time, Log::Level level, const String_T<wchar_t>& text);

    // Waits until everything posted before is done; false on a timeout. Does not wait if called on the module's own
    // thread.
    bool waitUntilDone(unsigned int milliseconds);
    // Whether the module has done nothing since a wait timed out.
    bool isStalled();
    // Lines not written, for any reason, since the start of the process.
    unsigned long long getLostLines() const { return m_AllLost.load(std::memory_order_relaxed); }

    // Called around fork(): the child does not inherit the module's thread and starts its own. A module that is inside
    // a call at that moment is lost to the child.
    void beginFork();
    void endFork(bool isChild);

private:
    struct Entry
    {
        enum Kind
        {
            kParam,
            kStart,
            kStop,
            kWhistle,
            kLine
        };

        Kind m_Kind = kLine;
        // A level, or the argument of a whistle.
        int m_Number = 0;
        long long m_Time = 0;
        String_T<wchar_t> m_Text;
        String_T<wchar_t> m_Value;
    };

    struct Signals
    {
        std::condition_variable m_HasWork;
        std::condition_variable m_IsDone;
        // The synchronization objects of the process that this one was forked from. They still count waiters of that
        // process, so they are never destroyed.
        Signals* m_OfParent = nullptr;
    };

    void post(Entry&& entry);
    void addEntry(Entry&& entry);
    void run();
    void handOver(unsigned long long lost);
    void call(const Entry& entry);
    void writeLine(long long time, Log::Level level, const String_T<wchar_t>& text);
    void flush();
    void tell(Log::Level level, const String_T<wchar_t>& text);
    void lose(unsigned long long lines);

    const LogModule& m_Module;
    const Report m_Report;

    std::mutex m_Mutex;
    // A pointer, since a forked process needs new ones.
    std::unique_ptr<Signals> m_Signals = std::make_unique<Signals>();
    std::vector<Entry> m_Waiting;
    // Of the lines that wait or are being written.
    size_t m_Lines = 0;
    size_t m_Units = 0;
    unsigned long long m_Posted = 0;
    unsigned long long m_Done = 0;
    // The value of m_Done when a wait timed out.
    unsigned long long m_StalledAt = 0;
    bool m_WasInVain = false;
    // Lines dropped for lack of space since the last report.
    unsigned long long m_Lost = 0;
    bool m_HasThread = false;
    bool m_WasIdle = true;
    bool m_IsOutOfReach = false;

    // Used by the module's thread only.
    std::vector<Entry> m_Batch;
    bool m_IsStarted = false;
    bool m_IsFailing = false;
    // Lines passed to the module since its last flush, and lines lost since it began to fail.
    unsigned long long m_Unflushed = 0;
    unsigned long long m_LostToFailure = 0;

    std::atomic<std::thread::id> m_ThreadId;
    std::atomic<unsigned long long> m_AllLost{0};
};

} // namespace zet::inner
