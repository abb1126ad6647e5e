// An example of a class: bytes that its Read takes, piece by piece.
#pragma once

#include "tools/class_table.h"

#include <string>
#include <vector>

namespace tools
{

// Some bytes of an example and what they say.
struct SamplePiece
{
    // The bytes, or the first ones of a long piece.
    std::string m_Bytes;
    size_t m_Size = 0;
    // A member's path, or a description in parentheses.
    std::string m_Name;
    std::string m_Value;
    bool m_IsHead = false;
};

// An object with a value of its own in each field and one element in each list; where the class would not read that,
// its default object. A record or an array of many values is one piece. Texts are in the form of 16-bit characters.
std::vector<SamplePiece> sampleOf(const ClassInfo& info);

} // namespace tools
