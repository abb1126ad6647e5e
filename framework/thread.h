// Threads by number, and a plain lock.
#pragma once

#include "framework/platform/export.h"

#include <mutex>

namespace zet
{

class COMMONGROUND_API Thread
{
public:
    // A number for the calling thread, never 0, never given twice in a process.
    static unsigned long getCurrentThreadId();
};

using Mutex = std::mutex;

} // namespace zet
