// The processes of a benchmark and the core that they share.
#pragma once

#include <sys/types.h>

#include <functional>

namespace bench
{

// Pins this process and those that it starts from now on. Says so on the standard error if the system refuses.
void pinTo(int core);
// The last core: the system's own work is mostly on the first.
void pinToOne();
void unpin();

// Runs work in a child process, which leaves with 1 if work returns false; finish() waits for its end, and ends this
// process if the child failed.
pid_t inChild(const std::function<bool()>& work);
void finish(pid_t child);
// Waits for its end, whatever it is.
void reap(pid_t child);

[[noreturn]] void fail(const char* what);
inline void need(bool isGood, const char* what)
{
    if (!isGood)
        fail(what);
}

} // namespace bench
