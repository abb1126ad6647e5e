#include "framework/platform/platform.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

// The memory functions exported by the kernel library itself.
#define PSAPI_VERSION 2
#include <bcrypt.h>
#include <psapi.h>

#include <thread>

namespace zet::platform
{

namespace
{

// The longest path that the system's wide functions return, with its terminator.
constexpr DWORD kMaxPath = 32768;

// The system counts units of 100 ns since 1601.
constexpr long long kMillisecondsTo1970 = 11644473600000LL;

String_T<wchar_t> withForwardSlashes(const wchar_t* path, DWORD length)
{
    String_T<wchar_t> text;
    wchar_t* out = text.resizeForOverwrite(static_cast<int>(length));
    for (DWORD i = 0; i < length; ++i)
        out[i] = path[i] == L'\\' ? L'/' : path[i];
    return text;
}

String_T<wchar_t> getModulePath(HMODULE module)
{
    String_T<wchar_t> path;
    const DWORD length = GetModuleFileNameW(module, path.resizeForOverwrite(kMaxPath - 1), kMaxPath);
    // A full buffer means that the path was truncated.
    return length < kMaxPath ? withForwardSlashes(path.getBuffer(), length) : String_T<wchar_t>();
}

unsigned long long toNumber(DWORD high, DWORD low)
{
    return static_cast<unsigned long long>(high) << 32 | low;
}

} // namespace

bool fillRandom(void* data, size_t size)
{
    return BCryptGenRandom(nullptr, static_cast<PUCHAR>(data), static_cast<ULONG>(size),
                           BCRYPT_USE_SYSTEM_PREFERRED_RNG) >= 0;
}

unsigned long long getMonotonicMilliseconds()
{
    return getMonotonicNanoseconds() / 1000000;
}

unsigned long long getMonotonicNanoseconds()
{
    constexpr long long kPerSecond = 1000000000;
    LARGE_INTEGER frequency;
    LARGE_INTEGER now;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    // Whole seconds separate from the rest, so that the product stays within 64 bits.
    const long long seconds = now.QuadPart / frequency.QuadPart;
    const long long rest = now.QuadPart % frequency.QuadPart;
    return static_cast<unsigned long long>(seconds * kPerSecond + rest * kPerSecond / frequency.QuadPart);
}

long long getCoarseNanoseconds()
{
    // Advances with the system's timer: each 10 to 16 ms.
    return static_cast<long long>(GetTickCount64()) * 1000000;
}

long long getCalendarMilliseconds()
{
    FILETIME time;
    GetSystemTimeAsFileTime(&time);
    const unsigned long long units = toNumber(time.dwHighDateTime, time.dwLowDateTime);
    return static_cast<long long>(units / 10000) - kMillisecondsTo1970;
}

long getStandardZoneBias()
{
    TIME_ZONE_INFORMATION zone{};
    if (GetTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID)
        return 0;
    return static_cast<long>(zone.Bias + zone.StandardBias) * 60;
}

LocalTime getLocalTime()
{
    return getLocalTime(getCalendarMilliseconds());
}

LocalTime getLocalTime(long long calendarMilliseconds)
{
    const unsigned long long units =
        static_cast<unsigned long long>(calendarMilliseconds + kMillisecondsTo1970) * 10000;
    const FILETIME time{static_cast<DWORD>(units), static_cast<DWORD>(units >> 32)};
    SYSTEMTIME utc{};
    SYSTEMTIME shown{};
    FileTimeToSystemTime(&time, &utc);
    SystemTimeToTzSpecificLocalTime(nullptr, &utc, &shown);
    LocalTime local;
    local.m_Year = shown.wYear;
    local.m_Month = shown.wMonth;
    local.m_Day = shown.wDay;
    local.m_Hour = shown.wHour;
    local.m_Minute = shown.wMinute;
    local.m_Second = shown.wSecond;
    local.m_Milliseconds = shown.wMilliseconds;
    return local;
}

int getLastError()
{
    return static_cast<int>(::GetLastError());
}

String_T<wchar_t> getErrorText(int error)
{
    String_T<wchar_t> text;
    constexpr DWORD kUnits = 512;
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
                       nullptr, static_cast<DWORD>(error), 0, text.resizeForOverwrite(kUnits - 1), kUnits, nullptr);
    text.truncate(static_cast<int>(length));
    return text.trim();
}

String_T<wchar_t> getExecutablePath()
{
    return getModulePath(nullptr);
}

String_T<wchar_t> getLibraryDirectory()
{
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCWSTR>(&getLibraryDirectory), &module))
        return String_T<wchar_t>();
    const String_T<wchar_t> path = getModulePath(module);
    int length = path.getLength();
    while (length > 0 && path[length - 1] != L'/')
        --length;
    return path.getSubString(0, length);
}

String_T<wchar_t> getModuleFileName(const wchar_t* name)
{
    return String_T<wchar_t>(name);
}

void* openModule(const wchar_t* path, String_T<wchar_t>* fault)
{
    const HMODULE module = LoadLibraryW(path);
    if (!module && fault)
        *fault = getErrorText(getLastError());
    return module;
}

void* findModuleSymbol(void* module, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void closeModule(void* module)
{
    FreeLibrary(static_cast<HMODULE>(module));
}

bool createDirectory(const wchar_t* path)
{
    return CreateDirectoryW(path, nullptr) != 0;
}

bool setCurrentDirectory(const wchar_t* path)
{
    return SetCurrentDirectoryW(path) != 0;
}

String_T<wchar_t> getCurrentDirectory()
{
    String_T<wchar_t> path;
    const DWORD length = GetCurrentDirectoryW(kMaxPath, path.resizeForOverwrite(kMaxPath - 1));
    return length < kMaxPath ? withForwardSlashes(path.getBuffer(), length) : String_T<wchar_t>();
}

String_T<wchar_t> getAbsolutePath(const wchar_t* path)
{
    String_T<wchar_t> whole;
    const DWORD length = GetFullPathNameW(path, kMaxPath, whole.resizeForOverwrite(kMaxPath - 1), nullptr);
    return length < kMaxPath ? withForwardSlashes(whole.getBuffer(), length) : String_T<wchar_t>();
}

String_T<wchar_t> getTempDirectory()
{
    wchar_t path[MAX_PATH + 1];
    const DWORD length = GetTempPathW(MAX_PATH + 1, path);
    return length <= MAX_PATH ? withForwardSlashes(path, length) : String_T<wchar_t>();
}

String_T<wchar_t> createTempFile(const wchar_t* directory)
{
    // Windows refuses a longer path; Wine writes past the end of the buffer.
    constexpr size_t kMaxDirectory = MAX_PATH - 14;
    wchar_t path[MAX_PATH + 1] = L"";
    if (wcslen(directory) > kMaxDirectory || !GetTempFileNameW(directory, L"", 0, path))
        return String_T<wchar_t>();
    return withForwardSlashes(path, static_cast<DWORD>(wcslen(path)));
}

bool deleteFile(const wchar_t* path)
{
    return DeleteFileW(path) != 0;
}

bool renameFile(const wchar_t* from, const wchar_t* to)
{
    return MoveFileExW(from, to, MOVEFILE_REPLACE_EXISTING) != 0;
}

bool isFile(const wchar_t* path)
{
    // A directory cannot be opened without FILE_FLAG_BACKUP_SEMANTICS, and a device is of no disk.
    const HANDLE file = CreateFileW(path, FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    const bool isOnDisk = GetFileType(file) == FILE_TYPE_DISK;
    CloseHandle(file);
    return isOnDisk;
}

std::FILE* openFile(const wchar_t* path, const char* mode)
{
    String_T<wchar_t> wideMode;
    for (; *mode; ++mode)
    {
        const wchar_t unit[] = {static_cast<wchar_t>(*mode), L'\0'};
        wideMode += unit;
    }
    wideMode += L"N";
    return _wfopen(path, wideMode);
}

std::FILE* openLogFile(const wchar_t* path)
{
    std::FILE* const file = openFile(path, "ab");
    if (file)
        std::setvbuf(file, nullptr, _IONBF, 0);
    return file;
}

unsigned long getProcessId()
{
    return GetCurrentProcessId();
}

unsigned long long getWorkingSetSize()
{
    PROCESS_MEMORY_COUNTERS counters{};
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.WorkingSetSize : 0;
}

unsigned long long getProcessorMilliseconds()
{
    FILETIME begin{};
    FILETIME end{};
    FILETIME kernel{};
    FILETIME user{};
    if (!GetProcessTimes(GetCurrentProcess(), &begin, &end, &kernel, &user))
        return 0;
    // In units of 100 ns.
    const auto units = [](const FILETIME& time)
    { return static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime; };
    return (units(kernel) + units(user)) / 10000;
}

bool writeConsole(const wchar_t* text, int length)
{
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    DWORD written = 0;
    if (GetConsoleMode(console, &mode))
        return WriteConsoleW(console, text, static_cast<DWORD>(length), &written, nullptr) != 0;
    String_T<char> bytes;
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, length, nullptr, 0, nullptr, nullptr);
    WideCharToMultiByte(CP_UTF8, 0, text, length, bytes.resizeForOverwrite(size), size, nullptr, nullptr);
    return WriteFile(console, bytes.getBuffer(), static_cast<DWORD>(size), &written, nullptr) != 0;
}

bool startThread(void (*run)(void*), void* argument)
{
    try
    {
        std::thread(run, argument).detach();
        return true;
    }
    catch (const std::exception&)
    {
        return false;
    }
}

void callAroundFork(void (*)(), void (*)(), void (*)()) {}

} // namespace zet::platform
