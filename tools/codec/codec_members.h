// The members of a class in the codec's language: their types and their values in a new object.
#pragma once

#include "tools/codec/codec_order.h"

#include <nlohmann/json.hpp>

#include <map>
#include <string>

namespace tools
{

class CodecMembers
{
public:
    // The document outlives this object.
    CodecMembers(const nlohmann::ordered_json& document, bool isPython);

    // The type of a member, for people and for checkers.
    std::string hintOf(const nlohmann::ordered_json& json) const;
    // The value of a member in a new object, an expression. Without a value, that of the type. isMade becomes true if
    // the expression makes an object of its own, which two objects must not share.
    std::string valueOf(const nlohmann::ordered_json& json, const nlohmann::ordered_json* value, bool& isMade) const;

private:
    std::string keyHint(const nlohmann::ordered_json& map) const;
    std::string scalarOf(const nlohmann::ordered_json& json, const nlohmann::ordered_json* value, bool& isMade) const;
    std::string listOf(const nlohmann::ordered_json& of, const nlohmann::ordered_json& values) const;
    std::string mapOf(const nlohmann::ordered_json& json, const nlohmann::ordered_json& entries) const;
    std::string arrayOf(const nlohmann::ordered_json& json, const nlohmann::ordered_json* value, bool& isMade) const;
    // A record with those members that differ from its own defaults.
    std::string recordOf(const std::string& name, const nlohmann::ordered_json* value) const;

    const nlohmann::ordered_json& m_Document;
    const bool m_IsPython;
    std::map<std::string, const nlohmann::ordered_json*> m_Classes;
};

} // namespace tools
