// What the library costs before the first line of a program: the processor time of `hello`, which sends one command to
// itself, over that of a program that does nothing. Both lie beside this program.
#include "bench/support/processes.h"
#include "bench/support/rounds.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <climits>
#include <string>

namespace
{

constexpr int kRounds = 101;

std::string folder()
{
    char path[PATH_MAX];
    const ssize_t size = readlink("/proc/self/exe", path, sizeof path);
    bench::need(size > 0, "the folder of the programs");
    const std::string whole(path, static_cast<size_t>(size));
    return whole.substr(0, whole.rfind('/') + 1);
}

double secondsOf(const timeval& time)
{
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

// The processor time of a run of the program.
double secondsOfRun(const std::string& program)
{
    char* arguments[] = {const_cast<char*>(program.c_str()), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    if (posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ) != 0)
        bench::fail(program.c_str());
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage usage{};
    bench::need(wait4(child, &status, 0, &usage) == child && status == 0, program.c_str());
    return secondsOf(usage.ru_utime) + secondsOf(usage.ru_stime);
}

} // namespace

int main(int argc, char** argv)
{
    bench::start(argc, argv);
    bench::pinToOne();
    const std::string hello = folder() + "hello";
    const std::string empty = folder() + "empty_program";
    bench::Row row{"the start of hello over an empty program", "us", {}, {}, {}};
    for (int round = 0; round < kRounds; ++round)
    {
        const double bare = secondsOfRun(empty);
        row.m_Own.push_back((secondsOfRun(hello) - bare) * 1e6);
    }
    bench::print(row);
    return 0;
}
