// The order of a class as an expression of the codec's language: constructors of the runtime.
#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace tools
{

std::string joined(const std::vector<std::string>& parts, const std::string& between);
// "m_Address[1]" is the member m_Address_1.
std::string memberOf(std::string name);

class CodecOrder
{
public:
    explicit CodecOrder(bool isPython) : m_IsPython(isPython) {}

    // Takes heads of commands from a class; returns the statements that define those that are new.
    std::vector<std::string> takeHeads(const nlohmann::ordered_json& each);
    // The steps of a class. Adjacent fields with one of some words are one step.
    std::vector<std::string> orderOf(const nlohmann::ordered_json& each) const;

    // A constructor with its arguments, and options of the form {"name", "value"}.
    using Options = std::vector<std::pair<std::string, std::string>>;
    std::string made(const std::string& name, std::vector<std::string> arguments, const Options& options = {}) const;
    std::string quoted(const std::string& plain) const { return nlohmann::ordered_json(plain).dump(); }
    std::string yes() const { return m_IsPython ? "True" : "true"; }
    // "unsigned short" is UNSIGNED_SHORT.
    static std::string constantOf(std::string type);

private:
    // The steps of a head of this many fields at the start of a class, or "".
    std::string headOf(const nlohmann::ordered_json& each, size_t size) const;
    std::string typeOf(const nlohmann::ordered_json& json) const;
    std::string stepOf(const nlohmann::ordered_json& field) const;
    std::string itemsOf(const nlohmann::ordered_json& field) const;
    std::string tableOf(const nlohmann::ordered_json& field) const;
    // Names the steps of a head, wherever it is.
    void shortenHead(std::vector<std::string>& steps) const;

    const bool m_IsPython;
    // The name of each head by its steps.
    std::map<std::string, std::string> m_Heads;
};

} // namespace tools
