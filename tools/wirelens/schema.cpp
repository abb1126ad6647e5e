// wirelens schema and wirelens diff.
#include "tools/schema_diff.h"
#include "tools/schema_document.h"
#include "tools/schema_text.h"
#include "tools/wirelens/commands.h"
#include "tools/wirelens/terminal.h"

#include <fstream>
#include <iostream>
#include <optional>

namespace wirelens
{

using nlohmann::ordered_json;
using tools::Change;
using tools::Effect;

int schema(const std::string& className, bool asJson)
{
    const tools::ClassInfo* const info = className.empty() ? nullptr : classOf(className);
    if (!className.empty() && !info)
        return 1;
    std::cout << (asJson ? tools::documentText(tools::schemaDocument(info)) : tools::schemaText(*info));
    return 0;
}

std::optional<ordered_json> readDocument(const std::string& path)
{
    std::ifstream file;
    if (path != "-")
        file.open(path, std::ios::binary);
    std::istream& input = path == "-" ? std::cin : file;
    if (!input)
    {
        std::cerr << "wirelens: cannot open " << path << "\n";
        return std::nullopt;
    }
    const ordered_json document = ordered_json::parse(input, nullptr, false);
    const std::string fault = document.is_discarded() ? "it is not JSON" : tools::documentFault(document);
    if (fault.empty())
        return document;
    std::cerr << "wirelens: " << path << " is not a document of wirelens schema --json: " << fault << "\n";
    return std::nullopt;
}

namespace
{

std::string effectOf(const Change& change)
{
    switch (change.m_Effect)
    {
    case Effect::kBreaks:
        return "breaks";
    case Effect::kAdds:
        return "adds";
    default:
        return "documentation";
    }
}

// Which reading breaks.
std::string directionOf(const Change& change)
{
    if (change.m_OldReadsNew && change.m_NewReadsOld)
        return ", old reads new and new reads old";
    return change.m_OldReadsNew ? ", old reads new" : change.m_NewReadsOld ? ", new reads old" : "";
}

void printJson(const Change& change)
{
    ordered_json line = {{"effect", effectOf(change)}};
    if (change.m_OldReadsNew)
        line["breaks"].push_back("old_reads_new");
    if (change.m_NewReadsOld)
        line["breaks"].push_back("new_reads_old");
    if (!change.m_Class.empty())
        line["class"] = change.m_Class;
    if (!change.m_Field.empty())
        line["field"] = change.m_Field;
    line["sentence"] = change.m_Sentence;
    std::cout << line.dump() << "\n";
}

} // namespace

int diff(const std::string& older, const std::string& newer, bool asJson)
{
    const auto before = readDocument(older);
    const auto now = !before ? std::nullopt : newer.empty() ? tools::schemaDocument() : readDocument(newer);
    if (!before || !now)
        return 2;
    size_t broken = 0;
    const bool colours = hasColours(Stream::kOutput);
    const std::vector<Change> changes = tools::schemaDifferences(*before, *now);
    for (const Change& change : changes)
    {
        broken += change.m_Effect == Effect::kBreaks ? 1 : 0;
        if (asJson)
            printJson(change);
        else
            std::cout << red(effectOf(change) + directionOf(change), colours && change.m_Effect == Effect::kBreaks)
                      << ": " << change.m_Sentence << "\n";
    }
    if (!asJson)
        std::cout << (changes.empty() ? "no differences\n"
                                      : std::to_string(broken) + " of " + std::to_string(changes.size()) +
                                            " differences break a peer\n");
    return broken > 0 ? 1 : 0;
}

} // namespace wirelens
