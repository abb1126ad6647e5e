// The schemas of all classes as one versioned document of JSON: from it wirelens finds out what a change breaks and
// makes codecs in other languages.
#pragma once

#include "tools/class_table.h"

#include <nlohmann/json.hpp>

#include <string>

namespace tools
{

constexpr int kDocumentVersion = 1;

// The meaning of each word of the fields, by word. A field without words is tested: a reader that fails at it ends, and
// fails.
nlohmann::ordered_json schemaWords();
// All classes; with only, that class and the records that it holds.
nlohmann::ordered_json schemaDocument(const ClassInfo* only = nullptr);
// The document as text, with a line for each class.
std::string documentText(const nlohmann::ordered_json& document);
// What is wrong with a document of another origin, or "". Without a fault, every class, field and record that it names
// is there in the form that schemaDocument() gives.
std::string documentFault(const nlohmann::ordered_json& document);

} // namespace tools
