// Reads bytes by a schema as the class itself does, with all that the class does not test: names the field at which its
// Read fails, without the class.
#pragma once

#include "packaging/wire/schema.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tools
{

// The limits of the packager that the bytes are read by.
enum class Limits
{
    kNone,
    kOfCommands
};

// The value at which a reading ends early.
struct ReadFailure
{
    // The path of the value, such as m_Account.m_ItemList[2].m_Num, and the place of the innermost element within it,
    // or -1. A description in parentheses stands for a value without a member.
    std::string m_Field;
    int m_Element = -1;
    // Of the bytes that are missing or refused.
    size_t m_Offset = 0;
    // Bytes; both 0 if bytes are refused, not missing.
    int64_t m_Needed = 0;
    size_t m_Had = 0;
    // "needed 4, had 2", or what is refused.
    std::string m_What;
};

// "1001 units, more than 1000".
std::string tooMany(int64_t count, const char* what, int64_t most);
// The place of the innermost element in a path, or -1.
int elementOf(const std::string& path);

struct ClassReading
{
    // The result of the class's Read and the read pointer after it.
    bool m_Read = false;
    size_t m_Consumed = 0;
    // Only of a failed reading.
    ReadFailure m_Failure;
};

ClassReading readAsClass(const wire::Schema& schema, std::string_view bytes, Limits limits);

} // namespace tools
