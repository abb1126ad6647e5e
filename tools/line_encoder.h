// The bytes of one line of JSON, in the form of what wirelens decode, read and new print.
#pragma once

#include "tools/class_table.h"
#include "tools/object_encoder.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

namespace tools
{

struct EncodedLine
{
    // Null for a command given by its id and payload.
    const ClassInfo* m_Class = nullptr;
    // Of a command: id, addresses and payload.
    CCmdPackager m_Command;
    // Of a record or a message; empty for a command.
    std::string m_Bytes;

    bool isCommand() const { return !m_Class || m_Class->m_Family == Family::kCommand; }
};

// An object has "class" and "fields", and for a command optionally "from" and "target"; "form" chooses the packager of
// a record that has both. An object with "id" and "payload" and without a class is that command. Other members are not
// looked at, but a command with an "error" is refused: its fields are not all that it had. Empty if all is well;
// otherwise what is wrong, and the result is not to be used.
std::string encodeJson(const nlohmann::ordered_json& json, TextWidth width, EncodedLine& result);
// The same for a line of text.
std::string encodeLine(std::string_view line, TextWidth width, EncodedLine& result);
// Whether the line has nothing to encode: it is empty, or one of wirelens decode without a command.
bool isOtherLine(const nlohmann::ordered_json& json);

} // namespace tools
