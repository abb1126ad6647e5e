#include "bench/support/processes.h"

#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace bench
{

namespace
{

int cores()
{
    return static_cast<int>(sysconf(_SC_NPROCESSORS_ONLN));
}

void runOn(int first, int last)
{
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int core = first; core <= last; ++core)
        CPU_SET(static_cast<size_t>(core), &set);
    if (sched_setaffinity(0, sizeof set, &set) != 0)
        std::perror("sched_setaffinity");
}

} // namespace

void pinTo(int core)
{
    runOn(core, core);
}

void pinToOne()
{
    pinTo(cores() - 1);
}

void unpin()
{
    runOn(0, cores() - 1);
}

pid_t inChild(const std::function<bool()>& work)
{
    std::fflush(stdout);
    const pid_t child = fork();
    if (child != 0)
        return child;
    const bool isGood = work();
    std::fflush(stdout);
    _exit(isGood ? 0 : 1);
}

void finish(pid_t child)
{
    int status = 0;
    if (waitpid(child, &status, 0) != child || status != 0)
        fail("the other end failed");
}

void reap(pid_t child)
{
    waitpid(child, nullptr, 0);
}

void fail(const char* what)
{
    std::perror(what);
    std::exit(1);
}

} // namespace bench
