// Reads classes and fields of a schema document.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace tools
{

// A text of an object; "" if it has none of that name.
std::string textOf(const nlohmann::ordered_json& json, const char* name);
// Whether a field has the word.
bool hasWord(const nlohmann::ordered_json& field, std::string_view word);
// A type for people: "list of FGameItem".
std::string typeText(const nlohmann::ordered_json& json);
// What identifies a field within its class: its name, or what it is.
std::string labelOf(const nlohmann::ordered_json& field);
// Whether a reader goes on where the field is missing.
bool mayBeMissing(const nlohmann::ordered_json& field);

} // namespace tools
