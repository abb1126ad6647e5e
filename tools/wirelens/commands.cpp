#include "tools/wirelens/commands.h"

#include "tools/class_table.h"
#include "tools/line_reader.h"
#include "tools/object_json.h"
#include "tools/reading.h"
#include "tools/schema_reader.h"
#include "tools/schema_text.h"
#include "tools/wirelens/terminal.h"

#include <iostream>

namespace wirelens
{

using nlohmann::ordered_json;
using tools::ClassInfo;
using tools::Family;
using tools::Form;
using tools::formsOf;
using tools::idText;

namespace
{

void printLine(const ordered_json& json)
{
    std::cout << tools::printedLine(json) << std::endl;
}

} // namespace

const ClassInfo* classOf(const std::string& name)
{
    const ClassInfo* const info = tools::findClass(name);
    if (!info)
        std::cerr << red("wirelens: no class " + name, hasColours(Stream::kError)) << "\n";
    return info;
}

int catalogue(bool asJson)
{
    ordered_json all = ordered_json::array();
    for (const ClassInfo& info : tools::classTable())
    {
        if (asJson)
        {
            ordered_json row = {{"class", info.m_Name}, {"family", tools::familyName(info.m_Family)}};
            if (info.m_Family == Family::kCommand)
                row.update({{"id", idText(info)}, {"base", info.m_Base}});
            else
                row["forms"] = formsOf(info);
            if (info.m_Family == Family::kMessage)
                row["envelope"] = info.m_Base;
            if (*info.m_OtherEnvelope)
                row["or_envelope"] = info.m_OtherEnvelope;
            all.push_back(row);
        }
        else if (info.m_Family == Family::kCommand)
        {
            std::cout << idText(info) << "  " << info.m_Name << "  " << info.m_Base << "\n";
        }
        else
        {
            std::cout << tools::familyName(info.m_Family) << "  " << info.m_Name << "  " << formsOf(info);
            if (info.m_Family == Family::kMessage)
                std::cout << "  in " << info.m_Base;
            if (*info.m_OtherEnvelope)
                std::cout << " or " << info.m_OtherEnvelope;
            std::cout << "\n";
        }
    }
    if (asJson)
        printLine(all);
    return 0;
}

int makeNew(const std::string& className)
{
    const ClassInfo* const info = tools::findClass(className);
    if (!info)
    {
        printLine({{"class", className}, {"error", "unknown class"}});
        return 1;
    }
    const Form form = tools::hasForm(*info, Form::kCmd) ? Form::kCmd : Form::kData;
    const std::shared_ptr<void> object = info->make();
    bool write = false;
    const std::string bytes = tools::writeObject(*info, form, object.get(), write);
    printLine({{"class", info->m_Name},
               {"form", form == Form::kCmd ? "cmd" : "data"},
               {"fields", tools::objectJson(info->m_Wire(), object.get())},
               {"write", write},
               {"rewrite", tools::hexOf(bytes.data(), bytes.size())}});
    return 0;
}

int read()
{
    std::string line;
    while (std::getline(std::cin, line))
        printLine(tools::answerLine(line));
    return 0;
}

int explain(const std::string& className, const std::string& hex)
{
    const ClassInfo* const info = classOf(className);
    if (!info)
        return 1;
    std::string bytes;
    if (hex != "-" && !tools::bytesOfHex(hex, bytes))
    {
        std::cerr << "wirelens: the bytes are not hexadecimal\n";
        return 1;
    }
    const tools::Explanation explanation = tools::explain(
        info->m_Wire(), bytes, tools::hasForm(*info, Form::kCmd) ? tools::Limits::kOfCommands : tools::Limits::kNone);
    const bool colours = hasColours(Stream::kOutput);
    for (const tools::ExplainedValue& value : explanation.m_Values)
        std::cout << value.m_Offset << "  " << tools::hexOf(bytes.data() + value.m_Offset, value.m_Size) << "  "
                  << value.m_Field << "  " << value.m_Value << "\n";
    if (!explanation.m_Failure.empty())
        std::cout << red(explanation.m_Failure + ", offset " + std::to_string(explanation.m_FailureOffset) + " of " +
                             info->m_Name,
                         colours)
                  << "\n";
    else if (explanation.m_Consumed < bytes.size())
        std::cout << red(std::to_string(bytes.size() - explanation.m_Consumed) + " bytes after the last field", colours)
                  << "\n";
    return explanation.m_Failure.empty() && explanation.m_Consumed == bytes.size() ? 0 : 1;
}

void warn(const wchar_t* line)
{
    std::cerr << "wirelens: " << tools::utf8Of(line) << "\n";
}

} // namespace wirelens
