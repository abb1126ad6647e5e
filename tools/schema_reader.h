// Reads bytes by a schema alone, without the class: to explain a payload, and as a second reader that tests compare
// with the classes' own.
#pragma once

#include "packaging/wire/schema.h"
#include "tools/read_failure.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace tools
{

// One value on the wire.
struct ExplainedValue
{
    size_t m_Offset = 0;
    size_t m_Size = 0;
    // The member's path, such as m_Account.m_ItemList[2].m_Num; a description in parentheses for a value without a
    // member.
    std::string m_Field;
    std::string m_Value;
};

struct Explanation
{
    std::vector<ExplainedValue> m_Values;
    nlohmann::ordered_json m_Json = nlohmann::ordered_json::object();
    // Bytes read; after a failure, those before the value that failed.
    size_t m_Consumed = 0;
    // "needed 4, had 2 at m_Flag1", or empty; and the offset of the bytes that are missing or refused.
    std::string m_Failure;
    size_t m_FailureOffset = 0;
};

// Strict: the first missing value ends it, whatever the class's own quirks allow. With the limits of commands, so does
// a head of another version, and a text or a buffer that is too long.
Explanation explain(const wire::Schema& schema, std::string_view bytes, Limits limits = Limits::kNone);

} // namespace tools
