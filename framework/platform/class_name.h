// The name of a class as it is written in its source.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <typeinfo>

namespace zet::platform
{

// "CCmdServerEcho", "arena::Service". Allocates; for logs and tables.
COMMONGROUND_API String_T<wchar_t> getClassName(const std::type_info& type);

} // namespace zet::platform
