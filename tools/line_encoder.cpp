#include "tools/line_encoder.h"

#include "tools/command_id.h"
#include "tools/object_json.h"
#include "tools/reading.h"

#include <cstring>

namespace tools
{

using nlohmann::ordered_json;

namespace
{

// A text member; empty if there is none.
std::string textOf(const ordered_json& json, const char* name)
{
    const auto place = json.find(name);
    return place != json.end() && place->is_string() ? place->get<std::string>() : std::string();
}

bool addAddress(const ordered_json& json, const char* name, zet::Uuid& address)
{
    if (!json.contains(name))
        return true;
    std::string bytes;
    if (!json[name].is_string() || !bytesOfHex(json[name].get<std::string>(), bytes) || bytes.size() != sizeof address)
        return false;
    std::memcpy(&address, bytes.data(), sizeof address);
    return true;
}

std::string encodePayload(const ordered_json& json, EncodedLine& result)
{
    const int id = commandIdOf(textOf(json, "id"));
    if (id < 0)
        return "a payload without a class needs an id such as \"0x1013\"";
    std::string bytes;
    if (!json["payload"].is_string() || !bytesOfHex(json["payload"].get<std::string>(), bytes))
        return "payload is not a text of hexadecimal digits";
    result.m_Command.SetCmdID(static_cast<unsigned short>(id));
    return result.m_Command.Write(bytes.data(), static_cast<int>(bytes.size())) ? "" : "payload does not fit";
}

std::string encodeFields(const ordered_json& json, TextWidth width, EncodedLine& result)
{
    const ClassInfo& info = *result.m_Class;
    if (!json.contains("fields"))
        return "there are no fields; {} gives all their defaults";
    const ordered_json& fields = json["fields"];
    if (info.m_Family == Family::kCommand)
    {
        result.m_Command.SetCmdID(info.m_Id);
        return encodeObject(info.m_Wire(), fields, width, result.m_Command);
    }
    const std::string form = textOf(json, "form");
    const bool isCmd = form.empty() ? hasForm(info, Form::kCmd) : form == "cmd";
    if (!form.empty() && form != "cmd" && form != "data")
        return "the form is cmd or data";
    if (!hasForm(info, isCmd ? Form::kCmd : Form::kData))
        return std::string("the class has no form for the ") + (isCmd ? "cmd" : "data") + " packager";
    const auto take = [&](auto& packager)
    {
        std::string fault = encodeObject(info.m_Wire(), fields, width, packager);
        result.m_Bytes.assign(reinterpret_cast<const char*>(packager.GetBuffer()),
                              static_cast<size_t>(packager.GetDataSize()));
        return fault;
    };
    if (!isCmd)
    {
        CDataPackager packager;
        return take(packager);
    }
    return take(result.m_Command);
}

} // namespace

bool isOtherLine(const ordered_json& json)
{
    return json.is_object() && !json.contains("class") && !json.contains("payload") &&
           (json.contains("notice") || json.contains("totals"));
}

std::string encodeJson(const ordered_json& json, TextWidth width, EncodedLine& result)
{
    result.m_Class = nullptr;
    result.m_Command.Clear();
    result.m_Bytes.clear();
    if (!json.is_object())
        return "the line is not a JSON object";
    zet::Uuid from;
    zet::Uuid target;
    for (const auto& [name, address] : {std::pair("from", &from), std::pair("target", &target)})
        if (!addAddress(json, name, *address))
            return std::string(name) + " is not a text of 32 hexadecimal digits";
    result.m_Command.SetAddress(from, target);
    if (!json.contains("class"))
        return json.contains("payload") ? encodePayload(json, result) : "there is no class";
    if (json.contains("error"))
        return "the line has an error, so its fields are not whole: " + textOf(json, "error");
    result.m_Class = findClass(textOf(json, "class"));
    if (!result.m_Class)
        return "no class " + json["class"].dump(-1, ' ', false, ordered_json::error_handler_t::replace);
    const std::string id = textOf(json, "id");
    if (result.isCommand() && !id.empty() && commandIdOf(id) != result.m_Class->m_Id)
        return "the id is not that of " + std::string(result.m_Class->m_Name);
    std::string fault = encodeFields(json, width, result);
    return fault.empty() ? fault : textOf(json, "class") + ": " + fault;
}

std::string encodeLine(std::string_view line, TextWidth width, EncodedLine& result)
{
    const ordered_json json = ordered_json::parse(line, nullptr, false);
    return json.is_discarded() ? "the line is not valid JSON" : encodeJson(json, width, result);
}

} // namespace tools
