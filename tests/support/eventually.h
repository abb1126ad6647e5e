// Waits for what another thread brings about.
#pragma once

#include <chrono>
#include <thread>

namespace test
{

// Asks until a condition holds and says whether it did. The bound is for a failing test alone.
template <class Condition>
bool eventually(Condition condition)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (!condition())
    {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

} // namespace test
