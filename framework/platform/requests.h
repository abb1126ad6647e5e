// What an operator asks of the process: to end, to reload, to record or not to. By signals on POSIX systems, by console
// events on Windows.
#pragma once

#include "framework/export.h"

namespace zet::platform
{

// Starts to count requests: SIGTERM and SIGINT to end, SIGHUP to reload, SIGUSR1 to start a recording and SIGUSR2 to
// stop it; on Windows the events of the console to end.
// After each one, wake(argument) is called, within a signal handler or on another thread, so it must be safe in both.
// The second request to end ends the process at once with the code, without destructors. A SIGINT that is ignored
// already stays ignored. False if counting or not available.
COMMONGROUND_API bool beginRequests(void (*wake)(void*), void* argument, int codeAtOnce);
// Restores what a signal did before. wake is not running and not called after it. Requests before the next
// beginRequests() are forgotten.
COMMONGROUND_API void endRequests();

COMMONGROUND_API bool isEndRequested();
// Whether a reload was requested since the last call.
COMMONGROUND_API bool takeReloadRequest();
// The last one since the last call.
enum class RecordRequest : unsigned char
{
    kNone,
    kStart,
    kStop
};
COMMONGROUND_API RecordRequest takeRecordRequest();

} // namespace zet::platform
