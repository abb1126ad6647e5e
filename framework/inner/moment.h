// Moments of getTimeTick(), which wraps.
#pragma once

namespace zet::inner
{

// The longest time from one moment to another, about 25 days in milliseconds.
constexpr unsigned int kLongestTime = 0x7FFFFFFF;

// A moment is reached when it is not in the future. The two are at most kLongestTime apart.
inline bool isReached(unsigned int moment, unsigned int now)
{
    return static_cast<int>(now - moment) >= 0;
}

} // namespace zet::inner
