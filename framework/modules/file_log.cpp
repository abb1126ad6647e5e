// The log module that writes a file a day: "2013-12-09.log" in the directory of "FileLog@path=DIR/", in UTF-8.
// Without a path it writes nothing.
#include "framework/modules/log_line.h"

#include "framework/log_module.h"
#include "framework/string_helper.h"

#include <cstdio>

namespace zet
{

namespace
{

// Touched by one thread at a time, which the log sees to.
struct FileLog
{
    String_T<wchar_t> m_Directory;
    std::FILE* m_File = nullptr;
    // The day that the file belongs to, also when it could not be opened: that is not tried again with every line.
    int m_Day = 0;
    int m_FlushedSecond = -1;
    bool m_IsStarted = false;
};

FileLog& getFileLog()
{
    static FileLog fileLog;
    return fileLog;
}

void close(FileLog& log)
{
    if (log.m_File)
        std::fclose(log.m_File);
    log.m_File = nullptr;
    log.m_Day = 0;
}

void open(FileLog& log, const platform::LocalTime& time, int day)
{
    close(log);
    log.m_Day = day;
    // Every directory on the way is made; those that stand already refuse, which is as good.
    for (int slash = log.m_Directory.find(L'/', 1); slash > 0; slash = log.m_Directory.find(L'/', slash + 1))
        platform::createDirectory(log.m_Directory.getSubString(0, slash));
    const String_T<wchar_t> name = formatText(L"%04d-%02d-%02d.log", time.m_Year, time.m_Month, time.m_Day);
    log.m_File = platform::openFile(log.m_Directory + name, "ab");
}

void setParam(const wchar_t* name, const wchar_t* value)
{
    FileLog& log = getFileLog();
    if (!(String_T<wchar_t>(name) == L"path"))
        return;
    close(log);
    log.m_Directory = value;
    const int length = log.m_Directory.getLength();
    if (length > 0 && log.m_Directory[length - 1] != L'/')
        log.m_Directory += L"/";
}

void start()
{
    getFileLog().m_IsStarted = true;
}

void stop()
{
    FileLog& log = getFileLog();
    log.m_IsStarted = false;
    close(log);
}

void write(int level, const wchar_t* line, int)
{
    FileLog& log = getFileLog();
    if (!log.m_IsStarted || log.m_Directory.isEmpty())
        return;
    const platform::LocalTime time = platform::getLocalTime();
    const int day = (time.m_Year * 12 + time.m_Month) * 31 + time.m_Day;
    if (day != log.m_Day)
        open(log, time, day);
    if (!log.m_File)
        return;
    const String_T<char> bytes = StringHelper::wideToUtf8(formatLogLine(time, level, line));
    std::fwrite(bytes.getBuffer(), 1, static_cast<size_t>(bytes.getLength()), log.m_File);
    // Messages wait for company for up to a second; what went wrong does not wait.
    if (level != Log::kMessage || time.m_Second != log.m_FlushedSecond)
    {
        std::fflush(log.m_File);
        log.m_FlushedSecond = time.m_Second;
    }
}

void whistle(int on)
{
    FileLog& log = getFileLog();
    if (!on && log.m_File)
        std::fflush(log.m_File);
}

constexpr LogModule kModule = {LogModule::kVersion, L"FileLog", setParam, start, stop, write, whistle};

} // namespace

} // namespace zet

extern "C" ZET_MODULE_EXPORT const zet::LogModule* zet_getLogModule()
{
    return &zet::kModule;
}
