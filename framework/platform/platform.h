// The library's interface to the operating system. Nothing else in framework/ calls it or tests for it.
// Paths are wide texts with '/' as the separator on every platform.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <cstddef>
#include <cstdio>

namespace zet::platform
{

// Fills with unpredictable bytes; false if the system has none.
COMMONGROUND_API bool fillRandom(void* data, size_t size);

// Overwrites a secret with zeros; the compiler does not remove these writes.
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

// Milliseconds of a monotonic clock.
COMMONGROUND_API unsigned long long getMonotonicMilliseconds();
// The same clock in nanoseconds, as fine as the system has it.
COMMONGROUND_API unsigned long long getMonotonicNanoseconds();
// Nanoseconds from a start of its own; cheaper to read, but up to kCoarseLag milliseconds behind.
COMMONGROUND_API long long getCoarseNanoseconds();
inline constexpr int kCoarseLag = 32;
// Milliseconds since 1970-01-01 00:00:00 UTC.
COMMONGROUND_API long long getCalendarMilliseconds();
// Seconds that the zone's standard time is behind UTC. A change of TZ takes effect with the next call.
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
// Local time including daylight saving: now, and at a moment in milliseconds since 1970 UTC.
COMMONGROUND_API LocalTime getLocalTime();
COMMONGROUND_API LocalTime getLocalTime(long long calendarMilliseconds);

// The error number of the calling thread's last failure, and the text of an error number.
COMMONGROUND_API int getLastError();
COMMONGROUND_API String_T<wchar_t> getErrorText(int error);

// The path of the executable; empty if the system does not report it.
COMMONGROUND_API String_T<wchar_t> getExecutablePath();
// The directory that this library was loaded from, with a closing '/'; empty if the system does not report it.
COMMONGROUND_API String_T<wchar_t> getLibraryDirectory();

// Loadable modules. The file of "zet_Name.dll" may have another name on another platform.
COMMONGROUND_API String_T<wchar_t> getModuleFileName(const wchar_t* name);
// fault, unless it is null, gets what the system says if the module cannot be opened.
COMMONGROUND_API void* openModule(const wchar_t* path, String_T<wchar_t>* fault = nullptr);
COMMONGROUND_API void* findModuleSymbol(void* module, const char* name);
COMMONGROUND_API void closeModule(void* module);

// Separators in a path passed by a host.
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
// The absolute form of a path, by the current directory; the path need not exist.
COMMONGROUND_API String_T<wchar_t> getAbsolutePath(const wchar_t* path);
// The system's directory for temporary files, with a closing '/'.
COMMONGROUND_API String_T<wchar_t> getTempDirectory();
// Creates an empty file with a new name in a directory and returns its path.
COMMONGROUND_API String_T<wchar_t> createTempFile(const wchar_t* directory);
COMMONGROUND_API bool deleteFile(const wchar_t* path);
// Replaces a file of the new name.
COMMONGROUND_API bool renameFile(const wchar_t* from, const wchar_t* to);
// Whether the path names a file: no directory, device or pipe.
COMMONGROUND_API bool isFile(const wchar_t* path);
// Programs that this process starts do not inherit a file opened here.
COMMONGROUND_API std::FILE* openFile(const wchar_t* path, const char* mode);
// Opens a file for appending, unbuffered. A new file is accessible to its owner and the owner's group only.
COMMONGROUND_API std::FILE* openLogFile(const wchar_t* path);

// The id of this process. A forked process has another one than its parent.
COMMONGROUND_API unsigned long getProcessId();

// Bytes of the process in physical memory; 0 if the system does not report it.
COMMONGROUND_API unsigned long long getWorkingSetSize();
// Milliseconds of processor time that all threads of the process have used.
COMMONGROUND_API unsigned long long getProcessorMilliseconds();

// Writes a text to the console of the process unchanged; as UTF-8 if output is redirected. False if a part was not
// written. A closed reader raises no signal.
COMMONGROUND_API bool writeConsole(const wchar_t* text, int length);

// Runs a function on a detached thread that receives no signals. False if no thread can be started.
COMMONGROUND_API bool startThread(void (*run)(void*), void* argument);
// Registers functions to be called before each fork(), and after it in the parent and in the child. Does nothing where
// processes do not fork.
COMMONGROUND_API void callAroundFork(void (*before)(), void (*inParent)(), void (*inChild)());

} // namespace zet::platform
