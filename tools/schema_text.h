// A class and its schema as text.
#pragma once

#include "tools/class_table.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tools
{

// Fields in wire order with their types, defaults and quirk words, then the smallest size.
std::string schemaText(const ClassInfo& info);

// What people call the type of a field: "list of int".
std::string typeOf(const wire::Field& field);
// The default of a field, of those that a default-constructed object has as JSON; empty if no member keeps the field.
std::string defaultText(const wire::Field& field, const nlohmann::ordered_json& defaults);
// Whether the member's default differs between processes.
bool isMadeAtLoad(const wire::Field& field);

// "0x120d"; "cmd data"; "command", "record" or "message".
std::string idText(const ClassInfo& info);
std::string formsOf(const ClassInfo& info);
const char* familyName(Family family);

} // namespace tools
