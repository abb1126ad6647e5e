// The log module that writes one UTF-8 file per day: "2013-12-09.log" in the directory of "FileLog@path=DIR/".
// Without a path it writes nothing.
#include "framework/modules/log_line.h"

#include "framework/log_module.h"
#include "framework/string_helper.h"

#include <cstdio>

namespace zet
{

namespace
{

// Used by the module's thread only. Never destroyed, since that thread may outlive the process's globals.
struct FileLog
{
    String_T<wchar_t> m_Directory;
    std::FILE* m_File = nullptr;
    // The day of the open file.
    int m_Day = 0;
    // Lines buffered since the last flush, and their common day.
    String_T<wchar_t> m_Text;
    platform::LocalTime m_TextTime;
    // Whether the last write stopped in the middle of a line.
    bool m_IsCut = false;
    // The fault since the last flush, and the result of the last flush.
    String_T<wchar_t> m_Failure;
    String_T<wchar_t> m_Said;
};

// Buffered lines of that many units are written without waiting for the flush.
constexpr int kMostGathered = 65536;

FileLog& getFileLog()
{
    static FileLog* const fileLog = new FileLog;
    return *fileLog;
}

int dayOf(const platform::LocalTime& time)
{
    return (time.m_Year * 12 + time.m_Month) * 31 + time.m_Day;
}

void close(FileLog& log)
{
    if (log.m_File)
        std::fclose(log.m_File);
    log.m_File = nullptr;
}

void fail(FileLog& log, const String_T<wchar_t>& path)
{
    log.m_Failure = formatText(L"cannot write %s: %s", path, platform::getErrorText(platform::getLastError()));
    close(log);
}

// Writes the buffered lines. A file that could not be opened or written is tried again each time, that is once per
// batch of lines.
void putOut(FileLog& log)
{
    if (log.m_Text.isEmpty())
        return;
    const String_T<char> bytes = StringHelper::wideToUtf8((log.m_IsCut ? L"\n" : L"") + log.m_Text);
    log.m_Text = String_T<wchar_t>();
    if (log.m_Directory.isEmpty())
        return;
    const platform::LocalTime& time = log.m_TextTime;
    const String_T<wchar_t> path =
        log.m_Directory + formatText(L"%04d-%02d-%02d.log", time.m_Year, time.m_Month, time.m_Day);
    if (log.m_Day != dayOf(time))
        close(log);
    if (!log.m_File)
    {
        // Creates every directory of the path; failure for an existing one is ignored.
        for (int slash = log.m_Directory.find(L'/', 1); slash > 0; slash = log.m_Directory.find(L'/', slash + 1))
            platform::createDirectory(log.m_Directory.getSubString(0, slash));
        log.m_File = platform::openLogFile(path);
        log.m_Day = dayOf(time);
    }
    if (!log.m_File)
    {
        fail(log, path);
        return;
    }
    const size_t size = static_cast<size_t>(bytes.getLength());
    const size_t written = std::fwrite(bytes.getBuffer(), 1, size, log.m_File);
    if (written != size)
        fail(log, path);
    if (written > 0)
        log.m_IsCut = written != size;
}

void setParam(const wchar_t* name, const wchar_t* value)
{
    FileLog& log = getFileLog();
    if (!(String_T<wchar_t>(name) == L"path"))
        return;
    close(log);
    log.m_IsCut = false;
    log.m_Directory = value;
    const int length = log.m_Directory.getLength();
    if (length > 0 && log.m_Directory[length - 1] != L'/')
        log.m_Directory += L"/";
}

void start() {}

void stop()
{
    close(getFileLog());
}

void write(long long time, int level, const wchar_t* line, int length)
{
    FileLog& log = getFileLog();
    const platform::LocalTime local = platform::getLocalTime(time);
    if (log.m_Text.getLength() > kMostGathered || dayOf(local) != dayOf(log.m_TextTime))
        putOut(log);
    log.m_TextTime = local;
    log.m_Text += formatLogLine(local, level, line, length);
}

void whistle(int) {}

const wchar_t* flush()
{
    FileLog& log = getFileLog();
    putOut(log);
    log.m_Said = log.m_Failure;
    log.m_Failure = String_T<wchar_t>();
    return log.m_Said.isEmpty() ? nullptr : log.m_Said.getBuffer();
}

constexpr LogModule kModule = {LogModule::kVersion, L"FileLog", setParam, start, stop, write, whistle, flush};

} // namespace

} // namespace zet

extern "C" ZET_MODULE_EXPORT const zet::LogModule* zet_getLogModule()
{
    return &zet::kModule;
}
