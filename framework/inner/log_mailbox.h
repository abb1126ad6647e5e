// What waits for one log module, and the thread that hands it over.
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

// Any thread may post. The module is called on a thread of its own, one call at a time and in the order of posting, so
// a stalled disk or console blocks no thread that logs. What waits is bounded: lines beyond it are lost, counted, and
// reported once there is room again. An object lives to the end of the process.
class LogMailbox
{
public:
    // Lines that wait at most, and units of their texts.
    static constexpr size_t kMaxLines = 8192;
    static constexpr size_t kMaxUnits = size_t{1} << 20;

    // Takes what a mailbox has to say about its module to the other sinks. Called on the module's thread.
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

    // Waits until all that was posted before is done; false where that takes longer. Never waits on the module's own
    // thread.
    bool waitUntilDone(unsigned int milliseconds);
    // Whether nothing was done since a wait was in vain.
    bool isStalled();
    // Lines that were not written, whatever the reason, since the start of the process.
    unsigned long long getLostLines() const { return m_AllLost.load(std::memory_order_relaxed); }

    // Around fork(): the module's thread is not there in the child, which makes one of its own. A module that stands in
    // the middle of a call at that moment is lost to the child.
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
        // A level, or whether a whistle is on.
        int m_Number = 0;
        long long m_Time = 0;
        String_T<wchar_t> m_Text;
        String_T<wchar_t> m_Value;
    };

    struct Signals
    {
        std::condition_variable m_HasWork;
        std::condition_variable m_IsDone;
        // Those of the process that this one was forked from. They still count who waits there, and are left alone.
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
    // By pointer, since a forked process needs new ones.
    std::unique_ptr<Signals> m_Signals = std::make_unique<Signals>();
    std::vector<Entry> m_Waiting;
    // Of the lines that wait or are being handed over.
    size_t m_Lines = 0;
    size_t m_Units = 0;
    unsigned long long m_Posted = 0;
    unsigned long long m_Done = 0;
    // What m_Done was when a wait was in vain.
    unsigned long long m_StalledAt = 0;
    bool m_WasInVain = false;
    // Lines without room since the last report.
    unsigned long long m_Lost = 0;
    bool m_HasThread = false;
    bool m_WasIdle = true;
    bool m_IsOutOfReach = false;

    // Of the module's thread alone.
    std::vector<Entry> m_Batch;
    bool m_IsStarted = false;
    bool m_IsFailing = false;
    // Lines given to the module since its last flush, and lines lost since it began to fail.
    unsigned long long m_Unflushed = 0;
    unsigned long long m_LostToFailure = 0;

    std::atomic<std::thread::id> m_ThreadId;
    std::atomic<unsigned long long> m_AllLost{0};
};

} // namespace zet::inner
