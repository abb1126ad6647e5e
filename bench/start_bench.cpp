// What the library costs before the first line of a program: the start of `hello` and of a program that does nothing,
// from the fork to the end, on one core. Both lie beside this program.
#include "bench/support/processes.h"
#include "bench/support/rounds.h"

#include <fcntl.h>
#include <spawn.h>
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

double secondsOfStart(const std::string& program)
{
    return bench::secondsOf(
        [&]
        {
            char* arguments[] = {const_cast<char*>(program.c_str()), nullptr};
            posix_spawn_file_actions_t actions;
            posix_spawn_file_actions_init(&actions);
            posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
            pid_t child = -1;
            if (posix_spawn(&child, program.c_str(), &actions, nullptr, arguments, environ) != 0)
                bench::fail(program.c_str());
            posix_spawn_file_actions_destroy(&actions);
            bench::finish(child);
        });
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
        const double bare = secondsOfStart(empty);
        row.m_Own.push_back((secondsOfStart(hello) - bare) * 1e6);
    }
    bench::print(row);
    return 0;
}
