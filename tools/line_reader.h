// The input lines of "wirelens read" and their results.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace tools
{

// The result for one line "CLASS cmd|data HEX", with "-" for no bytes: the result of the class's Read for the bytes and
// of its Write afterwards, or an object with "error". "class" is the name in the line, whatever its bytes.
nlohmann::ordered_json answerLine(const std::string& line);

// A result as one line without its end. Invalid UTF-8 becomes U+FFFD.
std::string printedLine(const nlohmann::ordered_json& json);

} // namespace tools
