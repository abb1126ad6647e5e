#include "examples/arena/service/round_trips.h"

#include <algorithm>

namespace arena
{

void RoundTrips::end()
{
    const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - m_Begin;
    m_Times.push_back(time.count());
}

zet::String_T<char> RoundTrips::describe() const
{
    if (m_Times.empty())
        return "no round trips";
    std::vector<double> times = m_Times;
    std::sort(times.begin(), times.end());
    const size_t middle = times.size() / 2;
    const double median = times.size() % 2 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
    return zet::formatText("%d round trips, min %.1f us, median %.1f us, max %.1f us", getCount(), times.front(),
                           median, times.back());
}

} // namespace arena
