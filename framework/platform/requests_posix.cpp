#include "framework/platform/requests.h"

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>

#include <sched.h>
#include <unistd.h>

namespace zet::platform
{

namespace
{

// All that the signal handler uses.
std::atomic<int> s_Ends{0};
std::atomic<bool> s_IsReloadRequested{false};
std::atomic<RecordRequest> s_RecordRequest{RecordRequest::kNone};
std::atomic<void (*)(void*)> s_Wake{nullptr};
std::atomic<void*> s_Argument{nullptr};
std::atomic<int> s_Running{0};
std::atomic<int> s_CodeAtOnce{0};
static_assert(std::atomic<int>::is_always_lock_free && std::atomic<bool>::is_always_lock_free &&
              std::atomic<RecordRequest>::is_always_lock_free && std::atomic<void*>::is_always_lock_free);

constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGUSR2};
constexpr size_t kCount = sizeof kSignals / sizeof *kSignals;
struct sigaction s_Before[kCount];
bool s_IsCounting = false;

void onSignal(int number)
{
    const int error = errno;
    s_Running.fetch_add(1);
    if (number == SIGHUP)
        s_IsReloadRequested = true;
    else if (number == SIGUSR1 || number == SIGUSR2)
        s_RecordRequest = number == SIGUSR1 ? RecordRequest::kStart : RecordRequest::kStop;
    else if (s_Ends.fetch_add(1) > 0)
        _exit(s_CodeAtOnce);
    if (const auto wake = s_Wake.load())
        wake(s_Argument);
    s_Running.fetch_sub(1);
    errno = error;
}

} // namespace

bool beginRequests(void (*wake)(void*), void* argument, int codeAtOnce)
{
    if (s_IsCounting)
        return false;
    s_IsCounting = true;
    s_Ends = 0;
    s_IsReloadRequested = false;
    s_RecordRequest = RecordRequest::kNone;
    s_CodeAtOnce = codeAtOnce;
    s_Argument = argument;
    s_Wake = wake;
    struct sigaction action = {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : kSignals)
        sigaddset(&action.sa_mask, number);
    for (size_t i = 0; i < kCount; ++i)
    {
        sigaction(kSignals[i], nullptr, &s_Before[i]);
        // A shell without job control starts background programs with SIGINT ignored. That is kept.
        if (kSignals[i] != SIGINT || s_Before[i].sa_handler != SIG_IGN)
            sigaction(kSignals[i], &action, nullptr);
    }
    return true;
}

void endRequests()
{
    if (!s_IsCounting)
        return;
    for (size_t i = 0; i < kCount; ++i)
        sigaction(kSignals[i], &s_Before[i], nullptr);
    s_Wake = nullptr;
    // Another thread may be in the handler.
    while (s_Running > 0)
        sched_yield();
    s_IsCounting = false;
}

bool isEndRequested()
{
    return s_Ends.load(std::memory_order_relaxed) > 0;
}

bool takeReloadRequest()
{
    return s_IsReloadRequested.load(std::memory_order_relaxed) && s_IsReloadRequested.exchange(false);
}

RecordRequest takeRecordRequest()
{
    return s_RecordRequest.load(std::memory_order_relaxed) == RecordRequest::kNone
               ? RecordRequest::kNone
               : s_RecordRequest.exchange(RecordRequest::kNone);
}

} // namespace zet::platform
