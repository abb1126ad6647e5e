#include "tools/line_reader.h"

#include "tools/class_table.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <sstream>

namespace tools
{

using nlohmann::ordered_json;

ordered_json answerLine(const std::string& line)
{
    std::istringstream words(line);
    std::string name;
    std::string form;
    std::string hex;
    words >> name >> form >> hex;
    ordered_json json = {{"class", name}};
    const ClassInfo* const info = findClass(name);
    std::string bytes;
    if (!info)
        json["error"] = "unknown class";
    else if (form != "cmd" && form != "data")
        json["error"] = "the packager is cmd or data";
    else if (!hasForm(*info, form == "cmd" ? Form::kCmd : Form::kData))
        json["error"] = "the class has no form for the " + form + " packager";
    else if (hex.empty() || (hex != "-" && !bytesOfHex(hex, bytes)))
        json["error"] = "the bytes are no hexadecimal";
    if (json.contains("error"))
        return json;

    const Reading reading = readBytes(*info, form == "cmd" ? Form::kCmd : Form::kData, bytes);
    json["form"] = form;
    json["read"] = reading.m_Read;
    json["consumed"] = reading.m_Consumed;
    json["size"] = reading.m_Size;
    json["fields"] = objectJson(info->m_Wire(), reading.m_Object.get());
    json["write"] = reading.m_Write;
    json["rewrite"] = hexOf(reading.m_Rewrite.data(), reading.m_Rewrite.size());
    return json;
}

std::string printedLine(const ordered_json& json)
{
    return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

} // namespace tools
