#include "examples/arena/process/processes.h"

#include "examples/arena/process/countdown.h"

#include <cerrno>
#include <climits>
#include <csignal>
#include <deque>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace arena
{

namespace
{

std::string findExecutable()
{
    char path[PATH_MAX + 1];
    const ssize_t length = readlink("/proc/self/exe", path, PATH_MAX);
    return length > 0 ? std::string(path, static_cast<size_t>(length)) : std::string();
}

// Runs in the new process: only functions that are safe between fork and exec.
[[noreturn]] void become(char* const* words, int output, pid_t parent)
{
#ifdef __linux__
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(127);
#else
    static_cast<void>(parent);
#endif
    const int input = open("/dev/null", O_RDONLY | O_CLOEXEC);
    if (input >= 0 && dup2(input, STDIN_FILENO) >= 0 && dup2(output, STDOUT_FILENO) >= 0 &&
        dup2(output, STDERR_FILENO) >= 0)
        execv(words[0], words);
    _exit(127);
}

} // namespace

struct Process::State
{
    pid_t m_Id = -1;
    // The read end of the pipe; -1 after end of file.
    int m_Output = -1;
    // The incomplete line, and the lines not read yet.
    std::string m_Part;
    std::deque<std::string> m_Lines;
    int m_Status = 0;
    bool m_HasEnded = false;
    bool m_IsKilled = false;

    // Reads what arrives within the time; false if nothing did.
    bool take(int milliseconds)
    {
        if (m_Output < 0)
            return false;
        pollfd wanted{m_Output, POLLIN, 0};
        const Countdown time(milliseconds);
        int ready = poll(&wanted, 1, milliseconds);
        while (ready < 0 && errno == EINTR)
            ready = poll(&wanted, 1, time.getLeft());
        if (ready <= 0)
            return false;
        char bytes[4096];
        const ssize_t count = read(m_Output, bytes, sizeof bytes);
        if (count > 0)
        {
            m_Part.append(bytes, static_cast<size_t>(count));
            split();
        }
        else if (count == 0 || errno != EINTR)
        {
            closeOutput();
        }
        return true;
    }
    void split()
    {
        size_t begin = 0;
        for (size_t end; (end = m_Part.find('\n', begin)) != std::string::npos; begin = end + 1)
            m_Lines.push_back(m_Part.substr(begin, end - begin));
        m_Part.erase(0, begin);
    }
    void closeOutput()
    {
        if (m_Output >= 0)
            close(m_Output);
        m_Output = -1;
        if (!m_Part.empty())
            m_Lines.push_back(std::exchange(m_Part, {}));
    }
    void reap()
    {
        while (waitpid(m_Id, &m_Status, 0) < 0 && errno == EINTR)
        {
        }
        m_HasEnded = true;
    }
};

Process::Process() : m_State(std::make_unique<State>()) {}

Process::~Process()
{
    State& state = *m_State;
    if (state.m_Id > 0 && !state.m_HasEnded)
    {
        kill();
        state.reap();
    }
    state.closeOutput();
}

bool Process::start(const std::vector<std::string>& words)
{
    State& state = *m_State;
    std::string executable = findExecutable();
    int ends[2];
    if (executable.empty() || state.m_Id > 0 || pipe2(ends, O_CLOEXEC) != 0)
        return false;
    std::vector<std::string> copies = words;
    std::vector<char*> pointers = {executable.data()};
    for (std::string& word : copies)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);

    const pid_t parent = getpid();
    const pid_t id = fork();
    if (id == 0)
        become(pointers.data(), ends[1], parent);
    close(ends[1]);
    if (id < 0)
    {
        close(ends[0]);
        return false;
    }
    state.m_Id = id;
    state.m_Output = ends[0];
    return true;
}

bool Process::readLine(std::string& line, int milliseconds)
{
    State& state = *m_State;
    const Countdown time(milliseconds);
    while (state.m_Lines.empty())
        if (!state.take(time.getLeft()))
            return false;
    line = std::move(state.m_Lines.front());
    state.m_Lines.pop_front();
    return true;
}

bool Process::isSilent() const
{
    return m_State->m_Output < 0 && m_State->m_Lines.empty();
}

void Process::interrupt()
{
    const State& state = *m_State;
    if (state.m_Id > 0 && !state.m_HasEnded)
        ::kill(state.m_Id, SIGTERM);
}

void Process::kill()
{
    State& state = *m_State;
    if (state.m_Id <= 0 || state.m_HasEnded)
        return;
    // The id is not reused before the process is reaped.
    ::kill(state.m_Id, SIGKILL);
    state.m_IsKilled = true;
}

bool Process::wait(int milliseconds)
{
    State& state = *m_State;
    if (state.m_Id <= 0)
        return false;
    // The pipe closes when the process ends; unlike that end, this can be waited for with a time limit.
    const Countdown time(milliseconds);
    while (state.m_Output >= 0)
        if (!state.take(time.getLeft()))
            return false;
    if (!state.m_HasEnded)
        state.reap();
    return true;
}

int Process::getResult() const
{
    return m_State->m_HasEnded && WIFEXITED(m_State->m_Status) ? WEXITSTATUS(m_State->m_Status) : -1;
}

bool Process::wasKilled() const
{
    return m_State->m_IsKilled && m_State->m_HasEnded && WIFSIGNALED(m_State->m_Status) &&
           WTERMSIG(m_State->m_Status) == SIGKILL;
}

bool isTerminal()
{
    return isatty(STDOUT_FILENO) != 0;
}

} // namespace arena
