// What a run shows while it goes on: a table on a terminal, otherwise a line per second.
#pragma once

#include "examples/arena/player/players.h"
#include "examples/arena/run/figures.h"

#include <map>
#include <string>

namespace arena::run
{

class Table
{
public:
    explicit Table(bool isOnTerminal) : m_IsOnTerminal(isOnTerminal) {}

    // share: of the run that is over, 0 to 1; figures: by the role of the server.
    void show(const player::Players& players, double seconds, double share,
              const std::map<std::string, Figures>& figures);

private:
    void showLine(const std::string& line);

    const bool m_IsOnTerminal;
    int m_Lines = 0;
    unsigned long long m_LastCount = 0;
    double m_LastSeconds = 0;
};

} // namespace arena::run
