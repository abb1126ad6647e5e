// The script of wirelens serve: which answers a command gets.
#pragma once

#include "tools/line_encoder.h"
#include "tools/line_filter.h"

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tools
{

// An array of rules. Of the rules that fit a command the first one counts:
//   [{"class": "CCmdServerEcho", "if": ["m_Data > 5"],
//     "answers": [{"class": "CCmdServerEchoReply", "fields": {"m_Data": 1}, "echo": ["m_ClientIndex"]}]}]
// "if" has the tests of decode's --field, all of which have to hold. "fields" of an answer may be missing. "echo" names
// fields of the command whose values the answer gets: an array for fields of the same name, or an object of the
// answer's fields and the command's. An answer may have "from" and "target".
class ServeScript
{
public:
    // Empty if all is well; otherwise what is wrong and in which rule, and the script is not to be used. Each answer is
    // encoded once for that, without what it echoes.
    std::string parse(std::string_view text);

    // The answers to a command, as objects for encodeJson(), by its line as decode prints it.
    std::vector<nlohmann::ordered_json> answersTo(const nlohmann::ordered_json& line) const;

private:
    struct Answer
    {
        nlohmann::ordered_json m_Line;
        // Fields of the answer, and those of the command that give their values.
        std::vector<std::pair<std::string, std::string>> m_Echo;
    };
    struct Rule
    {
        std::string m_Class;
        std::vector<FieldTest> m_Tests;
        std::vector<Answer> m_Answers;
    };

    static std::string parseRule(const nlohmann::ordered_json& json, Rule& rule);
    static std::string parseAnswer(const nlohmann::ordered_json& json, const std::string& asked, Answer& answer);

    std::vector<Rule> m_Rules;
};

} // namespace tools
