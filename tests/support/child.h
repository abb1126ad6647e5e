// A program that a test starts and ends, with pipes for its input and output. It inherits no other handle of the test
// and, if the system supports it, ends with the test.
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
    // The first word is the program, searched like in a shell. The variables, such as "NAME=VALUE", are added
    // to its environment.
    explicit Child(const std::vector<std::string>& words, const std::vector<std::string>& variables = {});
    // Ends it by its id, if it still runs.
    ~Child();
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

    // Whether it was started. A program that is not found ends at once with code 127.
    bool isStarted() const { return m_Id > 0; }
    bool write(const std::string& text);
    void closeInput();
    // Its standard output and error so far; never waits.
    const std::string& output();
    // Waits until it has printed the text or closed its output, at most a minute.
    const std::string& outputWith(std::string_view text);
    // Whether it has closed its output, as it does at its end; updated by output().
    bool isOver() const { return m_IsOver; }
    // Sends it a signal, by its id.
    bool signal(int number) const;
    // Waits until it ends by itself. Its exit code, or -1.
    int wait();

    // Whether a program is installed.
    static bool isThere(const std::string& program);

private:
    pid_t m_Id = -1;
    int m_Input = -1;
    int m_Output = -1;
    std::string m_Text;
    bool m_IsOver = false;
};

// A free port of 127.0.0.1.
unsigned short findFreePort();
// Whether the port is listened on.
bool isListening(unsigned short port);

} // namespace test
