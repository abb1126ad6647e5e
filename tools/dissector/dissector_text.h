// A dissector for Wireshark and tshark, in Lua.
#pragma once

#include <string>

namespace tools
{

// The whole script: the schemas of all classes, their reader, and the dissector, which are hand-written files of this
// folder.
std::string dissectorText();

} // namespace tools
