#include "examples/arena/run/figures.h"

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <string_view>

namespace arena::run
{

namespace
{

constexpr char kRequest[] = "GET /metrics HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n\r\n";
constexpr std::string_view kOpen = "arena_open_";
// An answer is longer only by mistake.
constexpr size_t kMostBytes = 4 * 1024 * 1024;

} // namespace

Figures parseFigures(const std::string& answer)
{
    Figures figures;
    std::istringstream lines(answer);
    for (std::string line; std::getline(lines, line);)
    {
        const size_t space = line.rfind(' ');
        if (line.starts_with("#") || space == std::string::npos)
            continue;
        const double value = std::strtod(line.c_str() + space, nullptr);
        if (line.starts_with("process_resident_memory_bytes"))
            figures.m_Memory += value;
        else if (line.starts_with("arena_database_commits_total"))
            figures.m_Transactions += value;
        else if (line.starts_with(kOpen))
            figures.m_Open[line.substr(kOpen.size(), space - kOpen.size())] += value;
    }
    return figures;
}

bool FigureRequest::begin(zet::System& system, unsigned short port)
{
    return start(&system) && connect(L"127.0.0.1", port, false) &&
           send(kRequest, static_cast<int>(sizeof kRequest - 1)) > 0;
}

void FigureRequest::take()
{
    for (char bytes[4096]; m_Answer.size() < kMostBytes;)
    {
        const int count = read(bytes, std::min(available(), static_cast<int>(sizeof bytes)));
        if (count <= 0)
            return;
        m_Answer.append(bytes, static_cast<size_t>(count));
    }
}

void FigureRequest::onTick(unsigned int tick)
{
    zet::TcpStream::onTick(tick);
    take();
}

void FigureRequest::onEnd(const zet::EndCause&)
{
    take();
    stop();
    m_Callback(m_Answer);
}

} // namespace arena::run
