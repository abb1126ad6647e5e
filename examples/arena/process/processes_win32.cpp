#include "examples/arena/process/processes.h"

#include "examples/arena/process/countdown.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

namespace arena
{

namespace
{

// The exit code of a killed process.
constexpr UINT kKilled = 0xC0DE;

std::wstring wideOf(const std::string& text)
{
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

// Quotes an argument so that the new process parses it back: in quotes, with a backslash before each quote, and with
// backslashes before a quote doubled.
std::wstring quoted(const std::wstring& word)
{
    std::wstring out = L"\"";
    size_t backslashes = 0;
    for (const wchar_t c : word)
    {
        if (c == L'"')
            out.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        out += c;
    }
    out.append(backslashes, L'\\');
    return out + L'"';
}

std::wstring findExecutable()
{
    std::wstring path(32768, L'\0');
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    path.resize(length < path.size() ? length : 0);
    return path;
}

// Ends its processes with this one: the last handle of the job closes when this process ends.
HANDLE ownJob()
{
    static const HANDLE job = []
    {
        const HANDLE made = CreateJobObjectW(nullptr, nullptr);
        JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
        limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
        if (made)
            SetInformationJobObject(made, JobObjectExtendedLimitInformation, &limits, sizeof limits);
        return made;
    }();
    return job;
}

void closeHandle(HANDLE& handle)
{
    if (handle)
        CloseHandle(std::exchange(handle, nullptr));
}

} // namespace

// A read from a pipe has no time limit, so a thread reads and queues the lines here.
struct Process::State
{
    HANDLE m_Process = nullptr;
    HANDLE m_Output = nullptr;
    DWORD m_Result = 0;
    bool m_HasEnded = false;
    bool m_IsKilled = false;
    std::thread m_Reader;

    // Guards the members below.
    std::mutex m_Mutex;
    std::condition_variable m_Change;
    std::deque<std::string> m_Lines;
    bool m_IsAtEnd = true;

    void readAll()
    {
        std::string part;
        char bytes[4096];
        DWORD count = 0;
        while (ReadFile(m_Output, bytes, sizeof bytes, &count, nullptr) && count > 0)
        {
            part.append(bytes, count);
            size_t begin = 0;
            const std::lock_guard lock(m_Mutex);
            for (size_t end; (end = part.find('\n', begin)) != std::string::npos; begin = end + 1)
                m_Lines.push_back(withoutReturn(part.substr(begin, end - begin)));
            part.erase(0, begin);
            m_Change.notify_all();
        }
        const std::lock_guard lock(m_Mutex);
        if (!part.empty())
            m_Lines.push_back(withoutReturn(std::move(part)));
        m_IsAtEnd = true;
        m_Change.notify_all();
    }
    static std::string withoutReturn(std::string line)
    {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        return line;
    }
    void reap()
    {
        WaitForSingleObject(m_Process, INFINITE);
        GetExitCodeProcess(m_Process, &m_Result);
        m_HasEnded = true;
    }
};

Process::Process() : m_State(std::make_unique<State>()) {}

Process::~Process()
{
    State& state = *m_State;
    if (state.m_Process && !state.m_HasEnded)
    {
        kill();
        state.reap();
    }
    if (state.m_Reader.joinable())
        state.m_Reader.join();
    closeHandle(state.m_Output);
    closeHandle(state.m_Process);
}

bool Process::start(const std::vector<std::string>& words)
{
    State& state = *m_State;
    const std::wstring executable = findExecutable();
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    HANDLE output = nullptr;
    if (executable.empty() || state.m_Process || !CreatePipe(&state.m_Output, &output, &inherited, 0))
        return false;
    // The child must not inherit our end.
    SetHandleInformation(state.m_Output, HANDLE_FLAG_INHERIT, 0);
    HANDLE input =
        CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited, OPEN_EXISTING, 0, nullptr);
    std::wstring line = quoted(executable);
    for (const std::string& word : words)
        line += L' ' + quoted(wideOf(word));

    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = input;
    startup.hStdOutput = output;
    startup.hStdError = output;
    PROCESS_INFORMATION made{};
    // Suspended until it belongs to the job, so that it can never outlive this process.
    const bool isMade = CreateProcessW(executable.c_str(), line.data(), nullptr, nullptr, TRUE,
                                       CREATE_SUSPENDED | CREATE_NO_WINDOW, nullptr, nullptr, &startup, &made) != 0;
    closeHandle(input);
    closeHandle(output);
    if (!isMade)
    {
        closeHandle(state.m_Output);
        return false;
    }
    AssignProcessToJobObject(ownJob(), made.hProcess);
    ResumeThread(made.hThread);
    closeHandle(made.hThread);
    state.m_Process = made.hProcess;
    state.m_IsAtEnd = false;
    state.m_Reader = std::thread([&state] { state.readAll(); });
    return true;
}

bool Process::readLine(std::string& line, int milliseconds)
{
    State& state = *m_State;
    std::unique_lock lock(state.m_Mutex);
    state.m_Change.wait_for(lock, std::chrono::milliseconds(milliseconds),
                            [&] { return !state.m_Lines.empty() || state.m_IsAtEnd; });
    if (state.m_Lines.empty())
        return false;
    line = std::move(state.m_Lines.front());
    state.m_Lines.pop_front();
    return true;
}

bool Process::isSilent() const
{
    const std::lock_guard lock(m_State->m_Mutex);
    return m_State->m_IsAtEnd && m_State->m_Lines.empty();
}

void Process::interrupt()
{
    kill();
}

void Process::kill()
{
    State& state = *m_State;
    // The open handle prevents reuse of the id. Fails for a process that has ended by itself.
    if (state.m_Process && !state.m_HasEnded && TerminateProcess(state.m_Process, kKilled))
        state.m_IsKilled = true;
}

bool Process::wait(int milliseconds)
{
    State& state = *m_State;
    if (!state.m_Process)
        return false;
    const Countdown time(milliseconds);
    {
        std::unique_lock lock(state.m_Mutex);
        if (!state.m_Change.wait_for(lock, std::chrono::milliseconds(milliseconds), [&] { return state.m_IsAtEnd; }))
            return false;
    }
    if (!state.m_HasEnded && WaitForSingleObject(state.m_Process, static_cast<DWORD>(std::max(time.getLeft(), 0))) != 0)
        return false;
    if (!state.m_HasEnded)
        state.reap();
    return true;
}

int Process::getResult() const
{
    return m_State->m_HasEnded && !wasKilled() ? static_cast<int>(m_State->m_Result) : -1;
}

bool Process::wasKilled() const
{
    return m_State->m_IsKilled && m_State->m_HasEnded && m_State->m_Result == kKilled;
}

bool isTerminal()
{
    // Older consoles print the sequences of the table as text.
    return false;
}

} // namespace arena
