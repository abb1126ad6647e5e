// The commands of one connection of a capture, in both directions, to be played again.
#pragma once

#include "packaging/cmd_packager.h"
#include "tools/capture/capture_file.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace tools
{

struct RecordedCommand
{
    // Microseconds since 1970.
    int64_t m_Time = 0;
    bool m_IsAnswer = false;
    // The stream frame of what the client sent.
    std::string m_Frame;
    // What the server sent, as decode shows it.
    nlohmann::ordered_json m_Line;
};

struct RecordedSession
{
    std::string m_Connection;
    std::vector<RecordedCommand> m_Commands;
};

// Reads a capture. The session is the connection of that name, or without one the only connection whose client sent
// commands. Empty if all is well; otherwise what is wrong.
std::string readSession(const ByteSource& source, const std::string& connection, RecordedSession& session);

// The line of decode for a command, without what belongs to the frame alone.
nlohmann::ordered_json comparableLine(const CCmdPackager& command);

} // namespace tools
