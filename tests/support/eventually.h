// Waits for the effect of another thread.
#pragma once

#include <chrono>
#include <thread>

namespace test
{

// Polls until a condition holds and returns whether it did. The time limit is reached only in a failing test.
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
