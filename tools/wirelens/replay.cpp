// wirelens replay: sends the commands of a recorded connection again, and compares the answers.
#include "framework/time.h"
#include "tools/field_difference.h"
#include "tools/frame_reader.h"
#include "tools/recorded_session.h"
#include "tools/wirelens/live.h"
#include "tools/wirelens/options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include <algorithm>
#include <deque>
#include <fstream>
#include <iostream>
#include <map>

namespace wirelens
{

using nlohmann::ordered_json;

namespace
{

struct ReplayOptions
{
    std::string m_Capture;
    tools::HostPort m_Target;
    Transport m_Transport;
    std::string m_Connection;
    std::vector<std::string> m_Ignored;
    double m_Speed = 1;
    bool m_IsFast = false;
    double m_Seconds = 5;
};

class Replay
{
public:
    Replay(const ReplayOptions& options, const tools::RecordedSession& session);

    int run();

private:
    std::optional<int> step();
    void sendDue();
    bool isDue(const tools::RecordedCommand& command) const;
    void take(const CCmdPackager& command);
    void compare(size_t number, const ordered_json& received);
    int finish();
    void printDifference(const ordered_json& line)
    {
        ++m_Differences;
        std::cout << line.dump(-1, ' ', false, ordered_json::error_handler_t::replace) << std::endl;
    }
    bool isLate() const { return zet::getTimeTick() - m_Since >= m_Patience; }

    const ReplayOptions& m_Options;
    const std::vector<tools::RecordedCommand>& m_Commands;
    const unsigned int m_Patience;
    // The recorded answers by id that have not arrived, as places in m_Commands.
    std::map<std::string, std::deque<size_t>> m_Awaited;
    std::vector<bool> m_HasArrived;
    size_t m_AwaitedCount = 0;
    // The next command to send, or the next answer to wait for.
    size_t m_Next = 0;
    unsigned int m_Start = 0;
    // When the last command was sent or the last answer arrived.
    unsigned int m_Since = 0;
    bool m_IsEstablished = false;
    bool m_HasEnded = false;
    size_t m_Sent = 0;
    size_t m_Answers = 0;
    size_t m_Differences = 0;
    zet::System m_System;
    std::unique_ptr<Link> m_Link;
};

Replay::Replay(const ReplayOptions& options, const tools::RecordedSession& session)
    : m_Options(options), m_Commands(session.m_Commands),
      m_Patience(static_cast<unsigned int>(options.m_Seconds * 1000)), m_HasArrived(session.m_Commands.size())
{
    for (size_t i = 0; i < m_Commands.size(); ++i)
    {
        if (!m_Commands[i].m_IsAnswer)
            continue;
        m_Awaited[m_Commands[i].m_Line["id"].get<std::string>()].push_back(i);
        ++m_AwaitedCount;
    }
}

void Replay::take(const CCmdPackager& command)
{
    const ordered_json received = tools::comparableLine(command);
    m_Since = zet::getTimeTick();
    const auto awaited = m_Awaited.find(received["id"].get<std::string>());
    if (awaited == m_Awaited.end() || awaited->second.empty())
        return printDifference({{"error", "the recording has no such answer"}, {"received", received}});
    const size_t number = awaited->second.front();
    awaited->second.pop_front();
    --m_AwaitedCount;
    ++m_Answers;
    m_HasArrived[number] = true;
    compare(number, received);
}

void Replay::compare(size_t number, const ordered_json& received)
{
    const ordered_json& recorded = m_Commands[number].m_Line;
    for (const tools::FieldDifference& difference : tools::differencesOf(recorded, received))
    {
        // The fields of a command go by their own names, its addresses and errors too.
        constexpr std::string_view kFields = "fields.";
        const std::string path =
            difference.m_Path.starts_with(kFields) ? difference.m_Path.substr(kFields.size()) : difference.m_Path;
        const bool isIgnored = std::any_of(m_Options.m_Ignored.begin(), m_Options.m_Ignored.end(),
                                           [&](const std::string& name) { return tools::isField(path, name); });
        if (!isIgnored)
            printDifference({{"number", number + 1},
                             {"class", recorded.value("class", recorded["id"].get<std::string>())},
                             {"field", path},
                             {"recorded", difference.m_First},
                             {"received", difference.m_Second}});
    }
}

bool Replay::isDue(const tools::RecordedCommand& command) const
{
    const double elapsed = static_cast<double>(zet::getTimeTick() - m_Start);
    const double recorded = static_cast<double>(command.m_Time - m_Commands.front().m_Time) / 1000;
    return m_Options.m_IsFast || elapsed * m_Options.m_Speed >= recorded;
}

// At its own pace the time decides; as fast as possible, the answers that were recorded before a command.
void Replay::sendDue()
{
    while (m_Next < m_Commands.size() && !m_Link->isFull() && !m_HasEnded)
    {
        const tools::RecordedCommand& command = m_Commands[m_Next];
        if (command.m_IsAnswer)
        {
            if (m_Options.m_IsFast && !m_HasArrived[m_Next] && !isLate())
                return;
            ++m_Next;
            continue;
        }
        if (!isDue(command))
            return;
        CCmdPackager packager;
        if (!tools::receiveFrame(packager, command.m_Frame) || !m_Link->send(packager))
            printDifference({{"number", m_Next + 1}, {"error", "the command was not sent"}});
        else
            ++m_Sent;
        ++m_Next;
        m_Since = zet::getTimeTick();
    }
}

int Replay::finish()
{
    for (size_t i = 0; i < m_Commands.size(); ++i)
    {
        const tools::RecordedCommand& command = m_Commands[i];
        if (command.m_IsAnswer && !m_HasArrived[i])
            printDifference({{"number", i + 1},
                             {"class", command.m_Line.value("class", command.m_Line["id"].get<std::string>())},
                             {"error", "the answer did not arrive"}});
        else if (!command.m_IsAnswer && i >= m_Next)
            printDifference({{"number", i + 1}, {"error", "the command was not sent"}});
    }
    std::cerr << "wirelens: " << m_Sent << " commands sent, " << m_Answers << " recorded answers arrived, "
              << m_Differences << " differences\n";
    m_Link->close();
    return m_Differences == 0 ? 0 : 1;
}

std::optional<int> Replay::step()
{
    if (isInterrupted())
        return 1;
    if (m_HasEnded)
        return finish();
    if (!m_IsEstablished)
    {
        if (!isLate())
            return std::nullopt;
        std::cerr << "wirelens: the connection was not established in time\n";
        return 1;
    }
    sendDue();
    const bool isOver = m_Next == m_Commands.size() && (m_AwaitedCount == 0 || isLate());
    return isOver ? std::optional<int>(finish()) : std::nullopt;
}

int Replay::run()
{
    catchInterrupts();
    m_Since = zet::getTimeTick();
    m_Link = Link::connect(m_System, m_Options.m_Target, m_Options.m_Transport,
                           {[this]
                            {
                                m_IsEstablished = true;
                                m_Start = zet::getTimeTick();
                                m_Since = m_Start;
                            },
                            [this](const CCmdPackager& command) { take(command); }, [this] { m_HasEnded = true; }});
    if (!m_Link)
        return 1;
    const int code = runLoop(m_System, [this] { return step(); });
    m_Link.reset();
    return code;
}

int replay(const ReplayOptions& options)
{
    if (!tools::CaptureFile::isSupported())
    {
        std::cerr << "wirelens: wirelens is built without libpcap, which reads captures\n";
        return 2;
    }
    std::ifstream file(options.m_Capture, std::ios::binary);
    if (!file)
    {
        std::cerr << "wirelens: cannot open " << options.m_Capture << "\n";
        return 1;
    }
    tools::RecordedSession session;
    const std::string fault = tools::readSession(
        [&](char* data, size_t size)
        {
            file.read(data, static_cast<std::streamsize>(size));
            return static_cast<size_t>(file.gcount());
        },
        options.m_Connection, session);
    if (!fault.empty())
    {
        std::cerr << "wirelens: " << options.m_Capture << ": " << fault << "\n";
        return 1;
    }
    return Replay(options, session).run();
}

} // namespace

void addReplay(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<ReplayOptions>();
    CLI::App* const command = addCommand(
        app, "replay", "sends a recorded connection's commands again and compares the answers",
        "CAPTURE is a pcap or pcapng file, TARGET is HOST:PORT. Sends what the client of one connection sent, each\n"
        "command at its recorded time, and compares what arrives with what was recorded: of each id the first with "
        "the\n"
        "first, and so on. Prints one JSON line for each field that differs, with its number in the connection, and "
        "for\n"
        "each answer that did not arrive or was not recorded. The exit code is 1 if there is one.");
    command->add_option("CAPTURE", options->m_Capture)->required();
    addHostPort(*command, "TARGET", "", options->m_Target);
    command->add_option("--connection", options->m_Connection, "of a capture with several, as decode prints it")
        ->type_name("CLIENT-SERVER");
    CLI::Option* const speed = command->add_option("--speed", options->m_Speed, "times as fast as recorded")
                                   ->type_name("N")
                                   ->check(CLI::Range(0.001, 1e6).description(""));
    command
        ->add_flag("--fast", options->m_IsFast,
                   "each command as soon as the answers recorded before it have arrived, or --timeout is over")
        ->excludes(speed);
    addRepeated(*command, "--ignore", "FIELD", "does not compare this field, by its name or its whole path",
                [options](const std::string& name) -> std::string
                {
                    options->m_Ignored.push_back(name);
                    return "";
                });
    addSeconds(*command, "--timeout", "for the connection, and for an answer; 5 unless given", options->m_Seconds);
    addTransport(*command, options->m_Transport);
    command->callback([options, &chosen] { chosen = [options] { return replay(*options); }; });
}

} // namespace wirelens
