// The text of a float on the wire: what "%f" prints and scans, exactly, without the C locale and without printf.
#pragma once

#include "framework/export.h"

namespace wire
{

// Characters that the longest text takes: a sign, 39 digits, a point and six decimals, with space to spare.
constexpr int kFloatTextRoom = 64;

// Prints the value as "%f" does in the C locale, without a terminator; text has kFloatTextRoom characters.
// Returns the length.
COMMONGROUND_API int printFloat(float value, char* text);

// Scans the text as "%f" does, up to its first zero or length characters. False, with the value unchanged, if
// nothing parses.
COMMONGROUND_API bool scanFloat(const char* text, int length, float& value);

} // namespace wire
