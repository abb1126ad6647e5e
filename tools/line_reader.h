// The lines of "wirelens read" and their answers.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace tools
{

// The answer to one line "CLASS cmd|data HEX", with "-" for no bytes: what the class's Read makes of the bytes and what
// its Write then gives, or an object with "error". The class is named as the line names it, whatever bytes those are.
nlohmann::ordered_json answerLine(const std::string& line);

// An answer as one line without its end. What is no UTF-8 comes out as U+FFFD.
std::string printedLine(const nlohmann::ordered_json& json);

} // namespace tools
