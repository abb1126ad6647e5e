// The clock of getTimeTick() in nanoseconds, for what milliseconds are too coarse for.
#pragma once

#include "framework/export.h"

namespace zet::inner
{

// Monotonic; does not wrap. With a test clock they are its milliseconds. Any thread.
COMMONGROUND_API unsigned long long getNanoseconds();

} // namespace zet::inner
