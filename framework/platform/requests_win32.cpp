#include "framework/platform/requests.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <atomic>

namespace zet::platform
{

namespace
{

std::atomic<int> s_Ends{0};
std::atomic<void (*)(void*)> s_Wake{nullptr};
std::atomic<void*> s_Argument{nullptr};
std::atomic<int> s_Running{0};
std::atomic<int> s_CodeAtOnce{0};
bool s_IsCounting = false;
// Set while no requests are counted; never closed.
HANDLE s_Ended = nullptr;

// On a thread of the system.
BOOL WINAPI onEvent(DWORD event)
{
    s_Running.fetch_add(1);
    if (s_Ends.fetch_add(1) > 0)
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(s_CodeAtOnce));
    if (const auto wake = s_Wake.load())
        wake(s_Argument);
    s_Running.fetch_sub(1);
    // For these the system ends the process as soon as the handler returns.
    if (event == CTRL_CLOSE_EVENT || event == CTRL_LOGOFF_EVENT || event == CTRL_SHUTDOWN_EVENT)
        WaitForSingleObject(s_Ended, INFINITE);
    return TRUE;
}

} // namespace

bool beginRequests(void (*wake)(void*), void* argument, int codeAtOnce)
{
    if (s_IsCounting)
        return false;
    if (!s_Ended)
        s_Ended = CreateEventW(nullptr, TRUE, TRUE, nullptr);
    if (!s_Ended || !ResetEvent(s_Ended))
        return false;
    s_Ends = 0;
    s_CodeAtOnce = codeAtOnce;
    s_Argument = argument;
    s_Wake = wake;
    s_IsCounting = SetConsoleCtrlHandler(onEvent, TRUE) != 0;
    return s_IsCounting;
}

void endRequests()
{
    if (!s_IsCounting)
        return;
    SetConsoleCtrlHandler(onEvent, FALSE);
    s_Wake = nullptr;
    while (s_Running > 0)
        SwitchToThread();
    SetEvent(s_Ended);
    s_IsCounting = false;
}

bool isEndRequested()
{
    return s_Ends.load(std::memory_order_relaxed) > 0;
}

bool takeReloadRequest()
{
    // No console event means that.
    return false;
}

RecordRequest takeRecordRequest()
{
    return RecordRequest::kNone;
}

} // namespace zet::platform
