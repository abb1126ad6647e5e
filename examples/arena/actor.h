// A process of the demonstration, and what is expected of it.
#pragma once

#include "examples/arena/processes.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace arena
{

// What was expected did not happen.
class Failure : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Every expectation that is not met in time throws a Failure. Still running, the process is killed with the object.
class Actor
{
public:
    // Milliseconds that one expectation waits.
    static constexpr int kPatience = 10000;

    explicit Actor(const char* name);

    const std::string& getName() const { return m_Name; }
    void start(const std::vector<std::string>& words);
    // Waits for a line that begins so, unless it came already, and returns the rest of it.
    std::string expect(const std::string& beginning);
    // The process ends by itself and returns the result.
    void expectEnd(int result);
    // Kills the process and sees that it was this that ended it.
    void kill();
    // Lines so far that begin so.
    int count(const std::string& beginning) const;
    // Puts out all that the process said so far, once; a failed expectation does it too.
    void showLines();

private:
    [[noreturn]] void fail(const std::string& reason);

    std::string m_Name;
    std::unique_ptr<Process> m_Process;
    std::vector<std::string> m_Lines;
    bool m_IsShown = false;
};

} // namespace arena
