// What a change of the wire breaks: the differences of two documents of schemaDocument(), in sentences.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace tools
{

enum class Effect
{
    kBreaks,
    kAdds,
    // The bytes stay: names, defaults, and what a reader does with a payload that is cut.
    kDocuments
};

struct Change
{
    Effect m_Effect = Effect::kBreaks;
    // Which reading breaks: that of an older peer, of a newer one's bytes; that of a newer peer, of an older one's.
    bool m_OldReadsNew = false;
    bool m_NewReadsOld = false;
    // Empty where the change is not that of one class, of one field.
    std::string m_Class;
    std::string m_Field;
    std::string m_Sentence;
};

// What breaks is first, then what adds. Both documents are without a fault (documentFault()). Classes that only one of
// them has are compared only if both have all classes.
std::vector<Change> schemaDifferences(const nlohmann::ordered_json& older, const nlohmann::ordered_json& newer);

} // namespace tools
