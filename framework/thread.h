// Thread numbers, and a plain lock.
#pragma once

#include "framework/export.h"

#include <mutex>

namespace zet
{

// Numbers of threads.
class COMMONGROUND_API Thread
{
public:
    // The number of the calling thread: never 0, unique in the process.
    static unsigned long getCurrentThreadId();
};

using Mutex = std::mutex;

} // namespace zet
