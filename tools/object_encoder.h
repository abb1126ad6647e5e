// Encodes an object's fields from JSON by its schema, without the class: the reverse of objectJson().
#pragma once

#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"
#include "packaging/wire/schema.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tools
{

// Which of the two written forms a text gets.
enum class TextWidth
{
    k16,
    k32
};

// The form that this build's own Write gives.
constexpr TextWidth kNativeWidth = sizeof(wchar_t) == 4 ? TextWidth::k32 : TextWidth::k16;

// Appends the object's bytes to the packager. A field that the JSON does not have gets its default. Empty if all is
// well; otherwise what is wrong, with the path of the field, such as "m_Items[2].m_Nmu is not a field of FGameItem".
// The packager then holds the fields before it.
std::string encodeObject(const wire::Schema& schema, const nlohmann::ordered_json& fields, TextWidth width,
                         CCmdPackager& packager);
std::string encodeObject(const wire::Schema& schema, const nlohmann::ordered_json& fields, TextWidth width,
                         CDataPackager& packager);

} // namespace tools
