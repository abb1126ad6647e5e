#include "framework/platform/platform.h"

#include "framework/string_helper.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <system_error>
#include <thread>

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace zet::platform
{

namespace
{

long long getNanoseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<long long>(now.tv_sec) * 1000000000 + now.tv_nsec;
}

long long getMilliseconds(clockid_t clock)
{
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<long long>(now.tv_sec) * 1000 + now.tv_nsec / 1000000;
}

// strerror_r() has two forms: GNU's returns the text, which need not be in the buffer; that of POSIX returns a number
// and fills the buffer if it is 0.
[[maybe_unused]] const char* textOf(const char* text, const char*)
{
    return text;
}

[[maybe_unused]] const char* textOf(int result, const char* buffer)
{
    return result == 0 ? buffer : "";
}

// Milliseconds to wait for a console to accept more output.
constexpr int kConsoleWait = 1000;

// Blocks signals for the calling thread during its lifetime. A signal that the thread itself raised meanwhile, such as
// by a write to a pipe without a reader, is discarded.
class SignalBlock
{
public:
    // All signals.
    SignalBlock()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_Before);
    }
    explicit SignalBlock(int signal) : m_Signal(signal)
    {
        sigset_t one;
        sigemptyset(&one);
        sigaddset(&one, signal);
        pthread_sigmask(SIG_BLOCK, &one, &m_Before);
        m_WasPending = isPending();
    }
    ~SignalBlock()
    {
        const int error = errno;
        if (m_Signal && !m_WasPending && isPending())
        {
            sigset_t one;
            sigemptyset(&one);
            sigaddset(&one, m_Signal);
            int taken = 0;
            sigwait(&one, &taken);
        }
        pthread_sigmask(SIG_SETMASK, &m_Before, nullptr);
        errno = error;
    }
    SignalBlock(const SignalBlock&) = delete;
    SignalBlock& operator=(const SignalBlock&) = delete;

private:
    bool isPending() const
    {
        sigset_t pending;
        sigemptyset(&pending);
        sigpending(&pending);
        return sigismember(&pending, m_Signal) == 1;
    }

    int m_Signal = 0;
    bool m_WasPending = false;
    sigset_t m_Before;
};

#ifdef __GLIBC__
// Handles times after 2038, on 32-bit systems if the library is built with a 64-bit time_t.
static_assert(sizeof(time_t) >= 8, "build with _TIME_BITS=64 and _FILE_OFFSET_BITS=64");
#endif

// A path up to and including its last '/'.
String_T<wchar_t> directoryOf(const String_T<wchar_t>& path)
{
    int length = path.getLength();
    while (length > 0 && path[length - 1] != L'/')
        --length;
    return path.getSubString(0, length);
}

String_T<wchar_t> withSlash(String_T<wchar_t> path)
{
    if (!path.isEmpty() && path[path.getLength() - 1] != L'/')
        path += L"/";
    return path;
}

} // namespace

bool fillRandom(void* data, size_t size)
{
    unsigned char* out = static_cast<unsigned char*>(data);
    while (size > 0)
    {
        const ssize_t count = getrandom(out, size, 0);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        out += count;
        size -= static_cast<size_t>(count);
    }
    return true;
}

unsigned long long getMonotonicMilliseconds()
{
    return static_cast<unsigned long long>(getMilliseconds(CLOCK_MONOTONIC));
}

unsigned long long getMonotonicNanoseconds()
{
    return static_cast<unsigned long long>(getNanoseconds(CLOCK_MONOTONIC));
}

long long getCoarseNanoseconds()
{
    // Advances with the system's timer: each 1 to 10 ms.
#ifdef CLOCK_MONOTONIC_COARSE
    return getNanoseconds(CLOCK_MONOTONIC_COARSE);
#else
    return getNanoseconds(CLOCK_MONOTONIC);
#endif
}

long long getCalendarMilliseconds()
{
    return getMilliseconds(CLOCK_REALTIME);
}

long getStandardZoneBias()
{
    // Reading the zone takes a lock and a file access, and ranking compares many dates. So each thread reads it once
    // per value of TZ; a change of the system's own zone takes effect after a restart.
    struct Seen
    {
        bool m_IsThere = false;
        bool m_HasName = false;
        String_T<char> m_Name;
        long m_Bias = 0;
    };
    thread_local Seen seen;
    const char* name = std::getenv("TZ");
    if (!seen.m_IsThere || seen.m_HasName != (name != nullptr) || !(seen.m_Name == name))
    {
        tzset();
        seen.m_Bias = timezone;
        seen.m_Name = name;
        seen.m_HasName = name != nullptr;
        seen.m_IsThere = true;
    }
    return seen.m_Bias;
}

LocalTime getLocalTime()
{
    return getLocalTime(getCalendarMilliseconds());
}

LocalTime getLocalTime(long long calendarMilliseconds)
{
    const time_t seconds = static_cast<time_t>(calendarMilliseconds / 1000);
    tm parts{};
    localtime_r(&seconds, &parts);
    LocalTime local;
    local.m_Year = parts.tm_year + 1900;
    local.m_Month = parts.tm_mon + 1;
    local.m_Day = parts.tm_mday;
    local.m_Hour = parts.tm_hour;
    local.m_Minute = parts.tm_min;
    local.m_Second = parts.tm_sec;
    local.m_Milliseconds = static_cast<int>(calendarMilliseconds % 1000);
    return local;
}

int getLastError()
{
    return errno;
}

String_T<wchar_t> getErrorText(int error)
{
    char buffer[256] = "";
    return StringHelper::utf8ToWide(textOf(strerror_r(error, buffer, sizeof buffer), buffer));
}

String_T<wchar_t> getExecutablePath()
{
    char path[PATH_MAX + 1];
    const ssize_t length = readlink("/proc/self/exe", path, PATH_MAX);
    path[length > 0 ? length : 0] = '\0';
    return StringHelper::utf8ToWide(path);
}

String_T<wchar_t> getLibraryDirectory()
{
    // Any symbol of this library identifies its file; in a static library that is the executable.
    Dl_info info{};
    if (!dladdr(reinterpret_cast<const void*>(&getLibraryDirectory), &info) || !info.dli_fname)
        return String_T<wchar_t>();
    char path[PATH_MAX + 1];
    if (!realpath(info.dli_fname, path))
        return String_T<wchar_t>();
    return directoryOf(StringHelper::utf8ToWide(path));
}

String_T<wchar_t> getModuleFileName(const wchar_t* name)
{
    String_T<wchar_t> stem(name);
    static constexpr wchar_t kEnding[] = L".dll";
    const int length = stem.getLength() - 4;
    if (length > 0 && stem.getSubString(length, 4) == kEnding)
        stem.truncate(length);
    return stem + L".so";
}

void* openModule(const wchar_t* path, String_T<wchar_t>* fault)
{
    void* const module = dlopen(StringHelper::wideToUtf8(path), RTLD_NOW | RTLD_LOCAL);
    const char* const text = module || !fault ? nullptr : dlerror();
    if (text)
        *fault = StringHelper::utf8ToWide(text);
    return module;
}

void* findModuleSymbol(void* module, const char* name)
{
    return dlsym(module, name);
}

void closeModule(void* module)
{
    dlclose(module);
}

bool createDirectory(const wchar_t* path)
{
    return mkdir(StringHelper::wideToUtf8(path), 0777) == 0;
}

bool setCurrentDirectory(const wchar_t* path)
{
    return chdir(StringHelper::wideToUtf8(path)) == 0;
}

String_T<wchar_t> getCurrentDirectory()
{
    char path[PATH_MAX + 1];
    return StringHelper::utf8ToWide(getcwd(path, sizeof path));
}

String_T<wchar_t> getAbsolutePath(const wchar_t* path)
{
    return *path == L'/' ? String_T<wchar_t>(path) : withSlash(getCurrentDirectory()) + path;
}

String_T<wchar_t> getTempDirectory()
{
    const char* place = std::getenv("TMPDIR");
    return withSlash(StringHelper::utf8ToWide(place && *place ? place : "/tmp"));
}

String_T<wchar_t> createTempFile(const wchar_t* directory)
{
    String_T<char> path = StringHelper::wideToUtf8(withSlash(directory)) + "XXXXXX";
    char name[PATH_MAX + 1];
    if (path.getLength() > PATH_MAX)
    {
        errno = ENAMETOOLONG;
        return String_T<wchar_t>();
    }
    std::memcpy(name, path.getBuffer(), static_cast<size_t>(path.getLength()) + 1);
    const int file = mkostemp(name, O_CLOEXEC);
    if (file < 0)
        return String_T<wchar_t>();
    close(file);
    return StringHelper::utf8ToWide(name);
}

bool deleteFile(const wchar_t* path)
{
    return unlink(StringHelper::wideToUtf8(path)) == 0;
}

bool renameFile(const wchar_t* from, const wchar_t* to)
{
    return std::rename(StringHelper::wideToUtf8(from), StringHelper::wideToUtf8(to)) == 0;
}

bool isFile(const wchar_t* path)
{
    struct stat status;
    return stat(StringHelper::wideToUtf8(path), &status) == 0 && S_ISREG(status.st_mode);
}

std::FILE* openFile(const wchar_t* path, const char* mode)
{
    return std::fopen(StringHelper::wideToUtf8(path), (String_T<char>(mode) + "e").getBuffer());
}

std::FILE* openLogFile(const wchar_t* path)
{
    const int handle = open(StringHelper::wideToUtf8(path), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0640);
    std::FILE* const file = handle < 0 ? nullptr : fdopen(handle, "ab");
    if (file)
        std::setvbuf(file, nullptr, _IONBF, 0);
    else if (handle >= 0)
        close(handle);
    return file;
}

unsigned long getProcessId()
{
    return static_cast<unsigned long>(getpid());
}

unsigned long long getWorkingSetSize()
{
    std::FILE* file = std::fopen("/proc/self/statm", "re");
    if (!file)
        return 0;
    unsigned long long whole = 0;
    unsigned long long resident = 0;
    const int fields = std::fscanf(file, "%llu %llu", &whole, &resident);
    std::fclose(file);
    return fields == 2 ? resident * static_cast<unsigned long long>(sysconf(_SC_PAGESIZE)) : 0;
}

unsigned long long getProcessorMilliseconds()
{
    return static_cast<unsigned long long>(getMilliseconds(CLOCK_PROCESS_CPUTIME_ID));
}

bool writeConsole(const wchar_t* text, int length)
{
    const String_T<char> bytes = StringHelper::wideToUtf8(String_T<wchar_t>(text, length));
    const SignalBlock block(SIGPIPE);
    const char* at = bytes.getBuffer();
    size_t left = static_cast<size_t>(bytes.getLength());
    while (left > 0)
    {
        const ssize_t count = ::write(STDERR_FILENO, at, left);
        if (count > 0)
        {
            at += count;
            left -= static_cast<size_t>(count);
            continue;
        }
        if (count < 0 && errno == EINTR)
            continue;
        // Another process has set the console to non-blocking.
        pollfd ready{STDERR_FILENO, POLLOUT, 0};
        if (count < 0 && errno == EAGAIN && poll(&ready, 1, kConsoleWait) > 0)
            continue;
        return false;
    }
    return true;
}

bool startThread(void (*run)(void*), void* argument)
{
    const SignalBlock block;
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

void callAroundFork(void (*before)(), void (*inParent)(), void (*inChild)())
{
    pthread_atfork(before, inParent, inChild);
}

} // namespace zet::platform
