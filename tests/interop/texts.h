// The texts that two sides send each other, their bytes as either width writes them, and what either width reads.
#pragma once

#include "framework/string.h"
#include "tests/support/golden.h"

#include <string>
#include <vector>

namespace interop
{

using golden::Width;

struct Text
{
    std::string m_Name;
    std::u32string m_Characters;
};

// Of 0, 1, 63, 64, 499 and 500 characters of the basic plane, and one with a character above it.
const std::vector<Text>& texts();

// A text as this side's program holds it.
zet::String_T<wchar_t> nativeText(const Text& text);

// The bytes on the wire, built here independently: count, units, and the zero tail of the 32-bit form.
std::string wireForm(const Text& text, Width writer);

// Whether a command that holds the text reaches its handler: a reader of commands takes counts up to 1,000.
bool isTaken(const Text& text, Width writer);
// What the reader then has, one value per wide character.
std::u32string readValues(const Text& text, Width writer, Width reader);

std::u32string valuesOf(const zet::String_T<wchar_t>& text);

} // namespace interop
