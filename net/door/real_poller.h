// Readiness by the operating system's own means. The functions are in a file per platform.
#pragma once

#include "net/door/poller.h"

#include <memory>

namespace zet::inner
{

// Throws std::system_error where the system has none to give.
std::unique_ptr<Poller> makeRealPoller();

} // namespace zet::inner
