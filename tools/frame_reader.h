// One received command, for people and scripts to read.
#pragma once

#include "packaging/cmd_packager.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string_view>

namespace tools
{

// Bytes of the stream frame that begins here; 0 where its head is not whole.
uint64_t streamFrameSize(std::string_view bytes);
// Takes one whole stream frame. False where the packager refuses it.
bool receiveFrame(CCmdPackager& packager, std::string_view frame);

// A received command: its id, addresses, size, and the fields as the class that fits reads them; of a doubled id
// whichever class takes the payload exactly. A command that carries a whole frame shows it as "inner", one level down.
nlohmann::ordered_json describeCommand(const CCmdPackager& frame, bool openInner);

} // namespace tools
