#include "tools/dissector/dissector_text.h"

#include "tools/dissector/lua_schema.h"
#include "tools/embedded_files.h"

namespace tools
{

namespace
{

constexpr char kHead[] =
    "-- A dissector of the commonground protocol for Wireshark and tshark 3.6 or later, made by wirelens dissector.\n"
    "-- Put it into the folder of personal Lua plugins, or name it: tshark -X lua_script:commonground.lua\n\n";

} // namespace

std::string dissectorText()
{
    return std::string(kHead) + luaSchema() + embedded::dissector_values_lua + "\n" + embedded::dissector_walk_lua +
           "\n" + embedded::dissector_frames_lua + "\n" + embedded::dissector_carriers_lua;
}

} // namespace tools
