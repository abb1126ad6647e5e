#include "examples/arena/run/server_process.h"

#include "examples/arena/lines.h"
#include "examples/arena/process/countdown.h"

#include <algorithm>
#include <charconv>

namespace arena::run
{

namespace
{

constexpr size_t kKeptLines = 20;
// In the log line of a service with figures.
constexpr char kHttp[] = "HTTP on 127.0.0.1:";

constexpr char kRegistered[] = "Registered with the registry";
constexpr char kRegistry[] = "registry";

int numberAfter(const std::string& line, std::string_view text)
{
    const size_t at = line.find(text);
    int number = 0;
    if (at != std::string::npos)
        std::from_chars(line.data() + at + text.size(), line.data() + line.size(), number);
    return number;
}

} // namespace

bool ServerProcess::start()
{
    std::vector<std::string> words = m_Words;
    words.emplace_back("--port");
    words.push_back(std::to_string(m_Port));
    m_IsListening = false;
    m_IsRegistered = false;
    m_IsDown = false;
    m_HttpPort = 0;
    ++m_Starts;
    m_Process = std::make_unique<Process>();
    return m_Process->start(words);
}

void ServerProcess::take(const std::string& line)
{
    m_Lines.push_back(line);
    if (m_Lines.size() > kKeptLines)
        m_Lines.pop_front();
    if (const int http = numberAfter(line, kHttp))
        m_HttpPort = http;
    if (line.starts_with(lines::kListening))
    {
        m_Port = numberAfter(line, lines::kListening);
        m_IsListening = true;
        m_IsRegistered = m_IsRegistered || getRole() == kRegistry;
    }
    if (line.find(kRegistered) != std::string::npos || line.starts_with(lines::kAccepted))
        m_IsRegistered = true;
}

void ServerProcess::read(int milliseconds)
{
    for (std::string line; m_Process && m_Process->readLine(line, milliseconds); milliseconds = 0)
        take(line);
}

bool ServerProcess::awaitPort(int milliseconds)
{
    const Countdown time(milliseconds);
    while (!m_IsListening && !hasEnded() && time.getLeft() > 0)
        read(time.getLeft());
    return m_IsListening;
}

void ServerProcess::kill()
{
    constexpr int kTime = 10000;
    m_Process->kill();
    m_Process->wait(kTime);
    read(0);
    m_IsListening = false;
}

bool ServerProcess::watch(unsigned int tick)
{
    // Also empties its pipe.
    read(0);
    if (!hasEnded())
        return false;
    if (m_IsDown)
    {
        if (static_cast<int>(tick - m_NextStart) >= 0)
            start();
        return false;
    }
    kill();
    m_IsDown = true;
    m_NextStart = tick + m_Delay;
    m_Delay = std::min(2 * m_Delay, kLongestDelay);
    return true;
}

bool ServerProcess::end(int milliseconds)
{
    // The registry has ordered it to end; one that does not follow gets a signal.
    constexpr int kOrderTime = 5000;
    if (!m_Process)
        return true;
    bool hasEnded = m_Process->wait(kOrderTime);
    if (!hasEnded)
    {
        m_Process->interrupt();
        hasEnded = m_Process->wait(milliseconds);
    }
    read(0);
    if (!hasEnded)
        kill();
    return hasEnded && m_Process->getResult() == 0;
}

} // namespace arena::run
