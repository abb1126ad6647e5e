// One received command as JSON.
#pragma once

#include "packaging/cmd_packager.h"
#include "tools/json_text.h"

#include <cstdint>
#include <string_view>

namespace tools
{

// Bytes of the stream frame that starts here; 0 if its head is incomplete.
uint64_t streamFrameSize(std::string_view bytes);
// Reads one whole stream frame. False if the packager refuses it.
bool receiveFrame(CCmdPackager& packager, std::string_view frame);
// Whether any class has the id of the stream frame that starts here, of which there are at least two bytes.
bool isKnownId(std::string_view frame);
// Whether a class with the command's id reads the payload to its last byte.
bool isReadExactly(const CCmdPackager& frame);

// Appends the members of a received command, without braces: id, addresses, size, and the fields as its class reads
// them; for a shared id, the class that reads the payload exactly. If the command carries a whole frame, that is shown
// as "inner", one level only. False if there is an "error" among the members, other than of the inner frame.
bool addCommand(JsonText& out, const CCmdPackager& frame, bool openInner);

} // namespace tools
