// The figures of a server in the OpenMetrics format.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

class SystemCmdInfo;

// The figures of SystemCmdInfo's JSON document and the numbers of lost and omitted log lines, in the OpenMetrics text
// format, UTF-8, ending with "# EOF". Units are base units: bytes and seconds. Sockets whose names are equal in UTF-8
// are merged, with the sum of their rates.
COMMONGROUND_API zet::String_T<char> convertToOpenMetrics(const SystemCmdInfo& info);
