// Round trip times of echoes.
#pragma once

#include "framework/string.h"

#include <chrono>
#include <vector>

namespace arena
{

class RoundTrips
{
public:
    // Record that an echo is sent, and that it is back.
    void begin() { m_Begin = std::chrono::steady_clock::now(); }
    void end();

    int getCount() const { return static_cast<int>(m_Times.size()); }
    // "200 round trips, min 21 us, median 30 us, max 200 us"
    zet::String_T<char> describe() const;

private:
    std::chrono::steady_clock::time_point m_Begin;
    // Microseconds.
    std::vector<double> m_Times;
};

} // namespace arena
