#include "examples/arena/demo/actor.h"

#include "examples/arena/process/countdown.h"
#include "examples/arena/text.h"

#include <algorithm>
#include <utility>

namespace arena
{

Actor::Actor(const char* name) : m_Name(name), m_Process(std::make_unique<Process>()) {}

void Actor::start(const std::vector<std::string>& words)
{
    if (!m_Process->start(words))
        fail(" does not start");
}

std::string Actor::expect(const std::string& beginning)
{
    const Countdown patience(kPatience);
    for (size_t i = 0;; ++i)
    {
        if (i == m_Lines.size())
        {
            std::string line;
            if (!m_Process->readLine(line, patience.getLeft()))
                fail((m_Process->isSilent() ? " ended without saying '" : " does not say '") + beginning + "'");
            m_Lines.push_back(line);
        }
        if (m_Lines[i].starts_with(beginning))
            return m_Lines[i].substr(beginning.size());
    }
}

void Actor::expectEnd(int result)
{
    const bool hasEnded = m_Process->wait(kPatience);
    for (std::string line; m_Process->readLine(line, 0);)
        m_Lines.push_back(line);
    if (!hasEnded)
        fail(" does not end");
    if (m_Process->getResult() != result)
        fail(" ended with " + std::to_string(m_Process->getResult()) + ", not with " + std::to_string(result));
}

void Actor::kill()
{
    m_Process->kill();
    if (!m_Process->wait(kPatience) || !m_Process->wasKilled())
        fail(" was to be killed and was not");
}

int Actor::count(const std::string& beginning) const
{
    return static_cast<int>(std::count_if(m_Lines.begin(), m_Lines.end(),
                                          [&](const std::string& line) { return line.starts_with(beginning); }));
}

void Actor::fail(const std::string& reason)
{
    showLines();
    throw Failure(m_Name + reason);
}

void Actor::showLines()
{
    if (std::exchange(m_IsShown, true))
        return;
    // Also prints the output since the last expectation.
    for (std::string line; m_Process->readLine(line, 0);)
        m_Lines.push_back(line);
    for (const std::string& line : m_Lines)
        say("  %s said: %s", m_Name.c_str(), line.c_str());
}

} // namespace arena
