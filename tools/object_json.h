// An object's fields as JSON, read from its memory by its schema.
#pragma once

#include "packaging/wire/schema.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace tools
{

// Numbers; booleans; text as UTF-8 strings; identifiers, nodes and raw bytes as lower-case hexadecimal; records as
// objects; lists, arrays, pairs and maps of records as arrays; maps of values as arrays of [key, value]. A float is
// a number that gives the same float back; NaN and infinity are null. A command's head comes first.
nlohmann::ordered_json objectJson(const wire::Schema& schema, const void* object);

// The number in the low bytes of bits, and as JSON, where it may be a boolean.
int64_t numberOf(const wire::Field& field, uint32_t bits);
nlohmann::ordered_json numberJson(const wire::Field& field, uint32_t bits);
// The number that a float is in JSON.
nlohmann::ordered_json floatJson(float value);
// A text in UTF-8, with U+FFFD for each unit that is not a valid character.
std::string utf8Of(const wchar_t* text);
std::string hexOf(const void* data, size_t size);
// The value of a hexadecimal digit, or -1.
int hexDigit(char c);
// Whether the character is white space, which hexadecimal text may contain anywhere.
bool isHexSpace(char c);
// False for an odd number of digits or for any other character; white space is skipped.
bool bytesOfHex(std::string_view hex, std::string& bytes);

} // namespace tools
