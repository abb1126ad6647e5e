// A process of the demonstration, and the expectations on it.
#pragma once

#include "examples/arena/process/processes.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace arena
{

// An expectation was not met.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// An expectation that is not met in time throws a Failure. The destructor kills a process that still runs.
class Actor
{
public:
    // The time limit of one expectation, in milliseconds.
    static constexpr int kPatience = 10000;

    explicit Actor(const char* name);

    const std::string& getName() const { return m_Name; }
    void start(const std::vector<std::string>& words);
    // Waits for a line with this prefix, unless it was already received, and returns the rest of it.
    std::string expect(const std::string& beginning);
    // Expects that the process ends by itself with this exit code.
    void expectEnd(int result);
    // Kills the process and checks that it had not ended before.
    void kill();
    // The number of lines so far with this prefix.
    int count(const std::string& beginning) const;
    // Prints the output of the process so far, once; a failed expectation does this too.
    void showLines();

private:
    [[noreturn]] void fail(const std::string& reason);

    std::string m_Name;
    std::unique_ptr<Process> m_Process;
    std::vector<std::string> m_Lines;
    bool m_IsShown = false;
};

} // namespace arena
