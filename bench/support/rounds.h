// Measures an operation and its floor in the same run: alternating rounds, so that a drift of the machine's speed
// affects both, and the median of each.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench
{

struct Measured
{
    double m_Nanoseconds = 0;
    double m_FloorNanoseconds = 0;
    // The median of the ratios of the rounds.
    double m_Ratio = 0;
};

// Runs each for about the same time per round; one call of either does calls units of work. Prints a line.
Measured compare(const std::string& what, int calls, const std::function<void()>& thing,
                 const std::function<void()>& floor);
// The same without a floor.
double measure(const std::string& what, int calls, const std::function<void()>& thing);

double median(std::vector<double> values);

// Prevents the optimizer from removing a value.
template <class T>
inline void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

} // namespace bench
