// Chooses among the lines of wirelens decode.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tools
{

// "m_Result != 0": a field, a comparison and a number, true, false or a text, quoted or not.
struct FieldTest
{
    // Its name in "fields", with .name for a member of it and [n] for an element.
    std::string m_Path;
    // One of == != < <= > >=
    std::string m_Comparison;
    nlohmann::ordered_json m_Value;

    // Nothing for a text that is not a test.
    static std::optional<FieldTest> parse(std::string_view text);
    // False without the field, and for the order of values of different kinds.
    bool holds(const nlohmann::ordered_json& fields) const;
};

// A time as lines have it, without its Z: from "2026-01-31", followed or not by "T12:00", seconds, their fraction and
// "Z", or from seconds since 1970. Nothing for another text.
std::optional<std::string> parseTime(const std::string& text);

// Of ids, classes, directions and addresses one must fit, of field tests all.
struct LineFilter
{
    std::vector<unsigned> m_Ids;
    std::vector<std::string> m_Classes;
    std::vector<std::string> m_Directions;
    // Of an end of the connection, with or without port, or of the command's sender or target, in hexadecimal.
    std::vector<std::string> m_Addresses;
    std::vector<FieldTest> m_Fields;
    // As parseTime() gives them; the second is the first time left out. Empty for no bound.
    std::string m_Since;
    std::string m_Until;

    bool isEmpty() const;
    // A line without an id is not a command and passes. A command without what is asked for does not pass.
    bool passes(std::string_view line) const;
};

} // namespace tools
