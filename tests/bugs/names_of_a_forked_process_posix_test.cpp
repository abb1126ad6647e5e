// After fork() a child took over the parent's count of resolver threads, but not the threads: if all of them were busy,
// no host name was ever resolved in the child. The queue's lock could also be held by a thread that did not exist.
#include "tests/support/stuck_lookups.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

// The thread sanitizer does not support threads in a forked process.
#if !defined(__SANITIZE_THREAD__)

namespace
{

using test::StuckLookups;

// 0 when the child's lookup is answered.
int lookUpInTheChild()
{
    std::atomic<bool> isFound{false};
    const auto asker = std::make_shared<int>(0);
    zet::inner::resolveApart(
        "some.test", [&](auto&& found) { isFound = !found.empty(); }, asker, &StuckLookups::answerAtOnce);
    return test::eventually([&] { return isFound.load(); }) ? 0 : 1;
}

TEST(Bugs, AForkedProcessResolvesNames)
{
    const StuckLookups stuck;
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0)
        _exit(lookUpInTheChild());
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}

} // namespace

#endif
