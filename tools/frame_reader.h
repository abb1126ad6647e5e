// One received command as JSON.
#pragma once

#include "packaging/cmd_packager.h"
#include "tools/json_text.h"
#include "tools/pack_types.h"

#include <cstdint>
#include <string_view>

namespace tools
{

// Bytes of the stream frame that starts here; 0 if its head is incomplete.
uint64_t streamFrameSize(std::string_view bytes);
// The id and the bytes of the payload by the head of a whole stream frame.
unsigned short streamId(std::string_view frame);
uint64_t streamPayloadSize(std::string_view frame);
// Reads one whole stream frame. False if the packager refuses it.
bool receiveFrame(CCmdPackager& packager, std::string_view frame);
// Whether any class has the id of the stream frame that starts here, of which there are at least two bytes.
bool isKnownId(std::string_view frame);
// Whether a class with the command's id reads the payload to its last byte.
bool isReadExactly(const CCmdPackager& frame);

// The name of the class that addCommand() shows; empty for an unknown id.
std::string_view classNameOf(const CCmdPackager& frame);

// Appends the members of a received command, without braces: id, addresses, size, and the fields as its class reads
// them; for a shared id, the class that reads the payload exactly. If the command carries a whole frame, that is shown
// as "inner", one level only. With types, the feature message of a pack envelope is shown as "message", and frames in
// inner frames are shown too, up to kMostInner. False if there is an "error" among the members, other than of the inner
// frame and of the message.
constexpr int kMostInner = 4;
bool addCommand(JsonText& out, const CCmdPackager& frame, bool openInner, const PackTypes* types = nullptr);

} // namespace tools
