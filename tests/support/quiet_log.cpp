// Without a sink the log would write warnings and errors to standard error; most tests provoke some, and a fuzz target
// provokes millions.
#include "framework/log.h"

namespace
{

const bool s_IsQuiet = []
{
    zet::Log::setStandardError(false);
    return true;
}();

} // namespace
