// Codecs of the wire in other languages, as source text: a runtime that is the same for every document, and a class for
// each class of the document.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace tools
{

enum class Language
{
    kPython,
    kTypeScript,
    // The TypeScript module without its types.
    kJavaScript
};

// A module of one file without dependencies. The document is without a fault (documentFault()); version is that of the
// program that made it.
std::string codecText(const nlohmann::ordered_json& document, Language language, const std::string& version);

} // namespace tools
