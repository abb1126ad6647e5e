// Messages of net sessions as members of a JSON line.
#pragma once

#include "tools/json_text.h"
#include "transport/inner/net_command_view.h"

#include <cstdint>
#include <string_view>

namespace tools
{

// Appends the member "session" and a comma: the message that carries a command. Its addresses are not those of the
// frame.
void addSessionMessage(JsonText& out, const NetPacketView& message);
// Appends the members "session" and "size": a message without a command that can be read.
void addSessionMessage(JsonText& out, std::string_view className, uint64_t size);

} // namespace tools
