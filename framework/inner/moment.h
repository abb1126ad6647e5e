// Moments of getTimeTick(), which wraps.
#pragma once

namespace zet::inner
{

// A moment is reached when it is not in the future. The two are less than 25 days apart.
inline bool isReached(unsigned int moment, unsigned int now)
{
    return static_cast<int>(now - moment) >= 0;
}

} // namespace zet::inner
