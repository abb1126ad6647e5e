#include "bench/support/call_count.h"

#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>

namespace bench
{

long countCalls(const std::function<void()>& before, const std::function<void()>& work)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0)
    {
        before();
        if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
            _exit(1);
        // The stops before and after what is counted.
        raise(SIGUSR1);
        work();
        raise(SIGUSR2);
        _exit(0);
    }
    long stops = 0;
    bool isCounting = false;
    for (int status = 0; waitpid(child, &status, 0) == child;)
    {
        if (!WIFSTOPPED(status))
            return -1;
        const int signal = WSTOPSIG(status);
        if (signal == SIGUSR2)
            break;
        if (signal == SIGUSR1)
        {
            isCounting = true;
            ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
        }
        else if (isCounting && signal == (SIGTRAP | 0x80))
        {
            ++stops;
        }
        const bool isPassed = signal != SIGUSR1 && signal != (SIGTRAP | 0x80);
        ptrace(PTRACE_SYSCALL, child, nullptr, isPassed ? signal : 0);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    // Two stops a call; raise() itself ends one call and makes up to three (process, thread, signal).
    constexpr long kOfRaise = 4;
    return stops / 2 > kOfRaise ? stops / 2 - kOfRaise : stops / 2;
}

} // namespace bench
