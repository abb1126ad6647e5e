// Counts the system calls of this process.
#pragma once

#include <functional>

namespace bench
{

// The calls of work in a child process that is traced. Below 0 where tracing is not allowed.
long countCalls(const std::function<void()>& before, const std::function<void()>& work);

} // namespace bench
