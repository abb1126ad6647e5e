// The schemas of all classes as tables of Lua, for the dissector.
#pragma once

#include <string>

namespace tools
{

// The protocol's numbers and marks as locals, then calls of class(name, attributes, fields), after the definition of
// that function. tools/dissector/values.lua says what the members of a field are.
std::string luaSchema();

} // namespace tools
