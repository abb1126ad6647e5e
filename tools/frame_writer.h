// One command as bytes, in each of its framings.
#pragma once

#include "packaging/cmd_packager.h"

#include <string>

namespace tools
{

// Each appends the command's bytes; false, with nothing appended, if it is too long.
bool addStreamFrame(std::string& bytes, const CCmdPackager& command);
// The stream frame after its length of 32 bits, as connections carry it.
bool addPacket(std::string& bytes, const CCmdPackager& command);
bool addDatagramFrame(std::string& bytes, const CCmdPackager& command);

} // namespace tools
