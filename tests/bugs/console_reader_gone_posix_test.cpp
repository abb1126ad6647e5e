// If standard error was a pipe and its reader ended, the console log's next line ended the process by SIGPIPE. The
// signal is now blocked while the console is written, and the failure is reported once to the other sinks.
#include "framework/log.h"
#include "framework/module.h"
#include "framework/platform/platform.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include <unistd.h>

namespace
{

// Makes standard error a pipe without a reader, with default signal handling.
void loseReader()
{
    int pipe[2];
    if (::pipe(pipe) != 0)
        std::_Exit(1);
    close(pipe[0]);
    dup2(pipe[1], STDERR_FILENO);
    std::signal(SIGPIPE, SIG_DFL);
}

// Whether the process still receives a SIGPIPE that it raises itself.
bool isSignalFree()
{
    sigset_t blocked;
    sigset_t pending;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    sigpending(&pending);
    return sigismember(&blocked, SIGPIPE) == 0 && sigismember(&pending, SIGPIPE) == 0;
}

} // namespace

TEST(Bugs, ProcessOutlivesTheReaderOfItsConsoleLog)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            loseReader();
            int told = 0;
            zet::Log::addSink([&](zet::Log::Level, const zet::String_T<wchar_t>& line)
                              { told += line == L"ConsoleLog: cannot write to the console"; });
            zet::DllModule::createInstance()->load(L"zet_ConsoleLog.dll");
            zet::Log::start();
            for (int i = 0; i < 3; ++i)
            {
                zet::Log::error(L"line %d", i);
                zet::Log::flush(20000);
            }
            zet::Log::stop();
            std::_Exit(told == 1 && isSignalFree() ? 3 : 4);
        },
        testing::ExitedWithCode(3), "");
}

TEST(Bugs, ALineOnAConsoleWithoutReaderRaisesNoSignal)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            loseReader();
            const bool isWritten = zet::platform::writeConsole(L"line\n", 5);
            std::_Exit(!isWritten && isSignalFree() ? 3 : 4);
        },
        testing::ExitedWithCode(3), "");
}
