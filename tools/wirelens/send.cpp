// wirelens send: commands of JSON lines to a server, and its answers.
#include "framework/time.h"
#include "tools/frame_reader.h"
#include "tools/line_encoder.h"
#include "tools/wirelens/line_feed.h"
#include "tools/wirelens/live.h"
#include "tools/wirelens/options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <iostream>

namespace wirelens
{

namespace
{

struct SendOptions
{
    tools::HostPort m_Target;
    Transport m_Transport;
    std::string m_Expected;
    double m_Seconds = 5;
};

class Sending
{
public:
    explicit Sending(const SendOptions& options)
        : m_Options(options), m_Patience(static_cast<unsigned int>(options.m_Seconds * 1000))
    {
    }

    int run();

private:
    std::optional<int> step();
    void sendLines();
    void take(const CCmdPackager& command);
    bool isLate() const { return zet::getTimeTick() - m_Since >= m_Patience; }

    const SendOptions& m_Options;
    const unsigned int m_Patience;
    LineFeed m_Lines;
    tools::EncodedLine m_Encoded;
    unsigned long long m_LineNumber = 0;
    // When the present wait began: for the connection, or for answers after the end of the input.
    unsigned int m_Since = 0;
    bool m_IsEstablished = false;
    bool m_IsSent = false;
    bool m_IsBad = false;
    bool m_HasArrived = false;
    bool m_HasEnded = false;
    zet::System m_System;
    std::unique_ptr<Link> m_Link;
};

void Sending::take(const CCmdPackager& command)
{
    printCommand("", command);
    m_HasArrived = m_HasArrived || tools::classNameOf(command) == m_Options.m_Expected;
}

void Sending::sendLines()
{
    while (!m_Link->isFull())
    {
        const std::optional<std::string> line = m_Lines.next();
        if (!line)
            return;
        ++m_LineNumber;
        if (line->find_first_not_of(" \t\r") == std::string::npos)
            continue;
        std::string fault = tools::encodeLine(*line, tools::kNativeWidth, m_Encoded);
        if (fault.empty() && !m_Encoded.isCommand())
            fault = std::string(m_Encoded.m_Class->m_Name) + " is not a command";
        if (fault.empty() && !m_Link->send(m_Encoded.m_Command))
            fault = "the command was not sent";
        if (fault.empty())
            continue;
        std::cerr << "wirelens: line " << m_LineNumber << ": " << fault << "\n";
        m_IsBad = true;
    }
}

std::optional<int> Sending::step()
{
    const bool expects = !m_Options.m_Expected.empty();
    if (m_IsEstablished && !m_IsSent && !m_HasEnded)
    {
        sendLines();
        if (m_Lines.isOver())
        {
            m_IsSent = true;
            m_Since = zet::getTimeTick();
        }
    }
    // What was queued in this step has not left yet.
    if (m_IsSent && expects && m_HasArrived && (m_Link->getOutputSize() == 0 || m_HasEnded || isLate()))
        return m_IsBad ? 1 : 0;
    if (m_HasEnded)
        return m_IsSent && !expects && !m_IsBad ? 0 : 1;
    if (isInterrupted())
        return 1;
    if (!m_IsEstablished && isLate())
    {
        std::cerr << "wirelens: the connection was not established in time\n";
        return 1;
    }
    if (!m_IsSent || !isLate())
        return std::nullopt;
    if (expects)
        std::cerr << "wirelens: no " << m_Options.m_Expected << " arrived in time\n";
    return expects || m_IsBad ? 1 : 0;
}

int Sending::run()
{
    catchInterrupts();
    m_Since = zet::getTimeTick();
    m_Link = Link::connect(m_System, m_Options.m_Target, m_Options.m_Transport,
                           {[this] { m_IsEstablished = true; }, [this](const CCmdPackager& command) { take(command); },
                            [this] { m_HasEnded = true; }});
    if (!m_Link)
        return 1;
    const int code = runLoop(m_System,
                             [this]
                             {
                                 const std::optional<int> result = step();
                                 if (result)
                                     m_Link->close();
                                 return result;
                             });
    m_Link.reset();
    return code;
}

} // namespace

void addSend(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<SendOptions>();
    CLI::App* const command = addCommand(
        app, "send", "commands of JSON lines to a server; its answers are printed",
        "TARGET is HOST:PORT. Reads lines as encode does from the standard input, and sends each command as soon as it "
        "is\n"
        "read. Prints what arrives as decode does. A line that is not a command is reported, and the next one "
        "follows.\n"
        "Ends when the time is over after the last line, or when the server closes the connection. With --expect it\n"
        "ends as soon as all lines are sent and a command of that class has arrived; the exit code is 1 if none does.");
    addHostPort(*command, "TARGET", "", options->m_Target);
    command->add_option("--expect", options->m_Expected, "ends when a command of this class has arrived")
        ->type_name("CLASS")
        ->check([](const std::string& text)
                { return tools::findClass(text) ? std::string() : text + " is not a class"; });
    addSeconds(*command, "--timeout", "for the connection, and for answers after the last line; 5 unless given",
               options->m_Seconds);
    addTransport(*command, options->m_Transport);
    command->callback([options, &chosen] { chosen = [options] { return Sending(*options).run(); }; });
}

} // namespace wirelens
