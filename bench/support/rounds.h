// Measures an operation and its floor in the same run: alternating rounds, so that a drift of the machine's speed
// affects both; the median of each, and the spread of the ratios.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace bench
{

// Reads the arguments: with --json the rows are printed as JSON, one object a line. Returns the other arguments.
std::vector<std::string> start(int argc, char** argv);

// One row of the output. Values of the same index were measured beside each other.
struct Row
{
    std::string m_Name;
    // "ns", "MB/s", "bytes" or "calls".
    std::string m_Unit;
    std::vector<double> m_Own;
    // Empty where nothing is compared; else m_Ratios too.
    std::vector<double> m_Floor;
    std::vector<double> m_Ratios;
};
void print(const Row& row);
// A text beside the rows, not printed with --json.
void note(const std::string& text);
// A row that this machine or this build cannot measure.
void skip(const std::string& name, const std::string& reason);

// Runs each for about the same time per round; one call of either does calls units of work. Prints a row.
void compare(const std::string& what, int calls, const std::function<void()>& thing,
             const std::function<void()>& floor);
// The same without a floor. Returns the rounds.
std::vector<double> measure(const std::string& what, int calls, const std::function<void()>& thing);
// MB/s, where one call handles that many bytes.
void measureRate(const std::string& what, size_t bytes, const std::function<void()>& thing);

double secondsOf(const std::function<void()>& work);
// Of this process, in user space and in the kernel.
double processorSecondsOf(const std::function<void()>& work);
double median(std::vector<double> values);

// Prevents the optimizer from removing a value.
template <class T>
inline void keep(const T& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

} // namespace bench
