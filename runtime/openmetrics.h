// The figures of a server for scrapers that read OpenMetrics.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

class SystemCmdInfo;

// The figures of SystemCmdInfo's JSON document and the lines that the process's log has lost or left out, in the
// OpenMetrics text format, UTF-8, closed by "# EOF". Units are base units: bytes and seconds. Sockets whose names
// become one in UTF-8 are one there, with the sum of their rates.
COMMONGROUND_API zet::String_T<char> convertToOpenMetrics(const SystemCmdInfo& info);
