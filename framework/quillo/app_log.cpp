#include "framework/quillo/app_log.h"

#include <memory>
#include <mutex>

namespace Quillo
{

namespace
{

struct AppLog
{
    std::mutex m_Mutex;
    std::shared_ptr<const AppLogSink> m_Sink;
};

// Never destroyed, like the process's own log.
AppLog& getAppLog()
{
    static AppLog* const appLog = new AppLog;
    return *appLog;
}

} // namespace

void setAppLogSink(AppLogSink sink)
{
    // The old sink is destroyed after the lock is released, or after the line that it is receiving.
    std::shared_ptr<const AppLogSink> next;
    if (sink)
        next = std::make_shared<const AppLogSink>(std::move(sink));
    AppLog& log = getAppLog();
    const std::lock_guard lock(log.m_Mutex);
    log.m_Sink.swap(next);
}

void writeAppLog(const zet::String_T<wchar_t>& line)
{
    AppLog& log = getAppLog();
    std::shared_ptr<const AppLogSink> sink;
    {
        const std::lock_guard lock(log.m_Mutex);
        sink = log.m_Sink;
    }
    if (sink)
        (*sink)(line);
}

} // namespace Quillo
