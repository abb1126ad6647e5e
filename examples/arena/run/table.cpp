#include "examples/arena/run/table.h"

#include "examples/arena/text.h"

#include <algorithm>
#include <cstdarg>
#include <vector>

namespace arena::run
{

namespace
{

constexpr size_t kMostKinds = 15;
constexpr int kBarWidth = 40;

[[gnu::format(printf, 1, 2)]] std::string format(const char* pattern, ...)
{
    char line[256];
    std::va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(line, sizeof line, pattern, arguments);
    va_end(arguments);
    return line;
}

} // namespace

void Table::showLine(const std::string& line)
{
    // On a terminal each line replaces the one of the last time.
    say("%s%s", line.c_str(), m_IsOnTerminal ? "\x1b[K" : "");
    ++m_Lines;
}

void Table::show(const player::Players& players, double seconds, double share,
                 const std::map<std::string, Figures>& figures)
{
    const auto& all = players.getAll();
    const auto connected =
        std::count_if(all.begin(), all.end(), [](const player::Player& player) { return player.isConnected(); });
    int reconnects = 0;
    for (const player::Player& player : all)
        reconnects += player.getReconnects();
    const player::Kind total = players.getCounters().getTotal();
    const double time = std::max(0.001, seconds - m_LastSeconds);
    const double rate = static_cast<double>(total.getSent() - m_LastCount) / time;
    m_LastCount = total.getSent();
    m_LastSeconds = seconds;

    if (m_IsOnTerminal && m_Lines > 0)
        std::fputs(format("\x1b[%dA", m_Lines).c_str(), stdout);
    m_Lines = 0;
    showLine(format("%5.1f s  players %d/%d  races %d  %.0f commands/s  p50 %.2f ms  p99 %.2f ms  reconnects %d",
                    seconds, static_cast<int>(connected), static_cast<int>(all.size()), players.getRaces(), rate,
                    total.m_Times.getQuantile(0.5), total.m_Times.getQuantile(0.99), reconnects));
    std::string servers = "        ";
    for (const auto& [role, each] : figures)
    {
        servers += format("  %s %.1f MB", role.c_str(), each.m_Memory / 1e6);
        if (each.m_Transactions > 0)
            servers += format(", %.0f transactions", each.m_Transactions);
    }
    if (!figures.empty())
        showLine(servers);
    if (!m_IsOnTerminal)
        return;
    std::vector<const std::pair<const std::string, player::Kind>*> kinds;
    for (const auto& kind : players.getCounters().getKinds())
        kinds.push_back(&kind);
    std::sort(kinds.begin(), kinds.end(),
              [](const auto* a, const auto* b) { return a->second.getSent() > b->second.getSent(); });
    showLine(format("%-36s %10s %8s %9s %9s", "command", "sent", "refused", "p50 ms", "p99 ms"));
    for (size_t i = 0; i < std::min(kMostKinds, kinds.size()); ++i)
    {
        const player::Kind& kind = kinds[i]->second;
        showLine(format("%-36s %10llu %8llu %9.2f %9.2f", kinds[i]->first.c_str(), kind.getSent(), kind.m_Refused,
                        kind.m_Times.getQuantile(0.5), kind.m_Times.getQuantile(0.99)));
    }
    const int done = static_cast<int>(std::clamp(share, 0.0, 1.0) * kBarWidth);
    std::string bar(static_cast<size_t>(kBarWidth), '.');
    std::fill_n(bar.begin(), done, '#');
    showLine("[" + bar + "]");
}

} // namespace arena::run
