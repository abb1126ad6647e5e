// The executable of the process and operating-system errors.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

namespace zet
{

// The directory of the executable with a closing '/', such as "D:/svr/"; "./" if the system does not report it.
COMMONGROUND_API String_T<wchar_t> getAppPath();
// The text of the calling thread's last operating-system error, and that of an error number.
COMMONGROUND_API String_T<wchar_t> getLastErrorString();
COMMONGROUND_API String_T<wchar_t> getErrorString(int error);

} // namespace zet
