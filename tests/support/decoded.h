// The line of wirelens decode for one command.
#pragma once

#include "tools/class_table.h"
#include "tools/frame_reader.h"

#include <nlohmann/json.hpp>

#include <string>

namespace test
{

// The object for a command of this class with this payload, its inner frame opened.
inline nlohmann::ordered_json decoded(const std::string& className, const std::string& payload)
{
    CCmdPackager packager;
    packager.SetCmdID(tools::findClass(className)->m_Id);
    packager.Write(payload.data(), static_cast<int>(payload.size()));
    tools::JsonText line;
    line.put('{');
    tools::addCommand(line, packager, true);
    line.put('}');
    return nlohmann::ordered_json::parse(std::string(line.view()));
}

} // namespace test
