// A program that a test starts and ends, with its input and output in the test's hands. It has none of the test's other
// handles, and where the system can do so it ends with the test, should that die first.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace test
{

class Child
{
public:
    // Looked for as the shell does; the first word is the program.
    explicit Child(const std::vector<std::string>& words);
    // Ends it by its number, where it still runs.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Whether it has a process. One that is not to be found ends at once, with the code 127.
    bool isStarted() const { return m_Id > 0; }
    bool write(const std::string& text);
    void closeInput();
    // What it has said so far, both ways; never waits.
    const std::string& output();
    // Waits until it has said the text or closed its output, but for a child that does neither no more than a minute.
    const std::string& outputWith(std::string_view text);
    // Whether it has closed its output, as it does when it ends. Asked of what output() has seen.
    bool isOver() const { return m_IsOver; }
    // Waits until it ends by itself. Its exit code, or -1.
    int wait();

    // Whether a program is there to be started.
    static bool isThere(const std::string& program);

private:
    pid_t m_Id = -1;
    int m_Input = -1;
    int m_Output = -1;
    std::string m_Text;
    bool m_IsOver = false;
};

// A port of 127.0.0.1 on which nobody listens now.
unsigned short findFreePort();
// Whether somebody listens there.
bool isListening(unsigned short port);

} // namespace test
