// A class and its schema as text.
#pragma once

#include "tools/class_table.h"

#include <string>

namespace tools
{

// Fields in wire order with their types, defaults and quirk words, then the smallest size.
std::string schemaText(const ClassInfo& info);

// "0x120d"; "cmd data"; "command", "record" or "message".
std::string idText(const ClassInfo& info);
std::string formsOf(const ClassInfo& info);
const char* familyName(Family family);

} // namespace tools
