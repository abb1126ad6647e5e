#include "tools/recorded_session.h"

#include "tools/capture/capture_decoder.h"
#include "tools/frame_reader.h"
#include "tools/frame_writer.h"

#include <map>

namespace tools
{

using nlohmann::ordered_json;

ordered_json comparableLine(const CCmdPackager& command)
{
    JsonText text;
    text.put('{');
    addCommand(text, command, false);
    text.put('}');
    ordered_json line = ordered_json::parse(text.view());
    line.erase("size");
    return line;
}

std::string readSession(const ByteSource& source, const std::string& connection, RecordedSession& session)
{
    CaptureFile file(source);
    if (!file.open())
        return file.error();
    // How many commands the client of each connection sent.
    std::map<std::string, size_t> clients;
    std::map<std::string, std::vector<RecordedCommand>> sessions;
    CaptureDecoder decoder([](std::string_view, bool) {}, [](const Notice&) {});
    decoder.setTakeFrame(
        [&](int64_t time, const std::string& name, std::string_view direction, const CCmdPackager& frame)
        {
            if (!connection.empty() && name != connection)
                return;
            RecordedCommand& command = sessions[name].emplace_back();
            command.m_Time = time;
            command.m_IsAnswer = direction == "to_client";
            if (command.m_IsAnswer)
                command.m_Line = comparableLine(frame);
            else if (addStreamFrame(command.m_Frame, frame))
                ++clients[name];
        });
    for (CapturedPacket packet; file.next(packet);)
        decoder.add(packet);
    decoder.finish();
    if (!file.error().empty())
        return file.error();
    if (clients.empty())
        return connection.empty() ? "no client sent a command" : "no client of " + connection + " sent a command";
    if (clients.size() > 1)
    {
        std::string names = "it has several connections, of which one has to be chosen:";
        for (const auto& [name, count] : clients)
            names += "\n  " + name + "  " + std::to_string(count) + (count == 1 ? " command" : " commands");
        return names;
    }
    session.m_Connection = clients.begin()->first;
    session.m_Commands = std::move(sessions[session.m_Connection]);
    return "";
}

} // namespace tools
