// What the library asks of the operating system. Nothing else in framework/ calls it or tests for it.
// Paths are wide texts with '/' between their parts on every platform.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

#include <cstddef>
#include <cstdio>

namespace zet::platform
{

// Unpredictable bytes; false when the system has none to give.
COMMONGROUND_API bool fillRandom(void* data, size_t size);

// Overwrites a secret with zeros, which the compiler keeps even where the memory is not read again.
inline void wipe(void* data, size_t size)
{
    for (volatile unsigned char* place = static_cast<unsigned char*>(data); size > 0; --size)
        *place++ = 0;
}
template <class T>
void wipe(String_T<T>& text)
{
    const int length = text.getLength();
    wipe(text.resizeForOverwrite(length), static_cast<size_t>(length) * sizeof(T));
    text.clear();
}

// Milliseconds of a clock that nobody sets.
COMMONGROUND_API unsigned long long getMonotonicMilliseconds();
// Milliseconds since 1970-01-01 00:00:00 UTC.
COMMONGROUND_API long long getCalendarMilliseconds();
// Seconds that the zone's standard time is behind UTC. A change of the environment's zone shows with the next call.
COMMONGROUND_API long getStandardZoneBias();

struct LocalTime
{
    int m_Year = 0;
    int m_Month = 0;
    int m_Day = 0;
    int m_Hour = 0;
    int m_Minute = 0;
    int m_Second = 0;
    int m_Milliseconds = 0;
};
// What a clock on the wall shows, daylight saving included: now, and at a moment in milliseconds since 1970 UTC.
COMMONGROUND_API LocalTime getLocalTime();
COMMONGROUND_API LocalTime getLocalTime(long long calendarMilliseconds);

// The number of the calling thread's last failure, and a number's text.
COMMONGROUND_API int getLastError();
COMMONGROUND_API String_T<wchar_t> getErrorText(int error);

// Where the executable lies, its own name included; empty when the system does not tell.
COMMONGROUND_API String_T<wchar_t> getExecutablePath();
// The directory that this library was loaded from, with a closing '/'; empty when the system does not tell.
COMMONGROUND_API String_T<wchar_t> getLibraryDirectory();

// Loadable modules. The file of "zet_Name.dll" may be called otherwise on another platform.
COMMONGROUND_API String_T<wchar_t> getModuleFileName(const wchar_t* name);
COMMONGROUND_API void* openModule(const wchar_t* path);
COMMONGROUND_API void* findModuleSymbol(void* module, const char* name);
COMMONGROUND_API void closeModule(void* module);

// What parts the names of a path that a host hands in.
#ifdef _WIN32
inline constexpr wchar_t kPathSeparators[] = L"/\\";
#else
inline constexpr wchar_t kPathSeparators[] = L"/";
#endif

// Files and directories. Each returns false, or null, or the empty text on failure and leaves the reason to
// getLastError.
COMMONGROUND_API bool createDirectory(const wchar_t* path);
COMMONGROUND_API bool setCurrentDirectory(const wchar_t* path);
COMMONGROUND_API String_T<wchar_t> getCurrentDirectory();
// A path as it is from the root, by the present directory; it need not name anything that is there.
COMMONGROUND_API String_T<wchar_t> getAbsolutePath(const wchar_t* path);
// The system's place for temporary files, with a closing '/'.
COMMONGROUND_API String_T<wchar_t> getTempDirectory();
// Makes an empty file with a new name in a directory and returns its path.
COMMONGROUND_API String_T<wchar_t> createTempFile(const wchar_t* directory);
COMMONGROUND_API bool deleteFile(const wchar_t* path);
// Programs that this process starts do not inherit a file that is opened here.
COMMONGROUND_API std::FILE* openFile(const wchar_t* path, const char* mode);
// Opens a file for writing at its end, without a buffer. A new one is for its owner and its owner's group alone.
COMMONGROUND_API std::FILE* openLogFile(const wchar_t* path);

// The number of this process. A forked process has another one than its parent.
COMMONGROUND_API unsigned long getProcessId();

// Bytes of the process that lie in physical memory now; 0 when the system does not tell.
COMMONGROUND_API unsigned long long getWorkingSetSize();

// One text to the console of the process, as it is; where output is redirected it goes out as UTF-8. False where it did
// not go out whole. A reader that is gone raises no signal.
COMMONGROUND_API bool writeConsole(const wchar_t* text, int length);

// Runs a function on a detached thread that receives no signals. False if no thread can be started.
COMMONGROUND_API bool startThread(void (*run)(void*), void* argument);
// Has functions called around each fork() from now on: before it, and behind it in the parent and in the child. Does
// nothing where processes do not fork.
COMMONGROUND_API void callAroundFork(void (*before)(), void (*inParent)(), void (*inChild)());

} // namespace zet::platform
