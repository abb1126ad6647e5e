// Measures a thing against its floor in the same run: rounds of both in turn, so that a machine whose speed drifts
// drifts for both, and the median of each.
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
    // The median of the rounds' own ratios.
    double m_Ratio = 0;
};

// Runs each for about the same time per round; a call of either does calls units of work. Prints a line.
Measured compare(const std::string& what, int calls, const std::function<void()>& thing,
                 const std::function<void()>& floor);
// The same without a floor.
double measure(const std::string& what, int calls, const std::function<void()>& thing);

double median(std::vector<double> values);

// Keeps a value from being optimised away.
template <class T>
inline void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

} // namespace bench
