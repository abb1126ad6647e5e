// Frames out of a recording: streams of frames, packets as TCP connections carry them, single datagrams.
#pragma once

#include "packaging/cmd_packager.h"

#include <functional>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace tools
{

enum class Framing
{
    kStream,  // stream frames back to back
    kPackets, // each behind the 32-bit little-endian length of the connection's packets
    kDatagram // one datagram frame an input
};

// Hands every frame's description to tell, one JSON object each, and returns how many there were.
// A cut or refused frame is told as an object with "error" and ends the input.
int decodeFrames(std::string_view bytes, Framing framing,
                 const std::function<void(const nlohmann::ordered_json&)>& tell);

// A received command: its id, addresses, size, and the fields as the class that fits reads them; of a doubled id
// whichever class takes the payload exactly. A command that carries a whole frame shows it as "inner", one level down.
nlohmann::ordered_json describeCommand(const CCmdPackager& frame, bool openInner);

// The bytes of a recording that may be hexadecimal text or raw.
std::string recordedBytes(const std::string& content);

} // namespace tools
