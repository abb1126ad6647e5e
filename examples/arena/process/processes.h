// Child processes of this executable, and their output. One source file per platform.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace arena
{

// One process. Its standard output and error are read as one stream of lines; its input is empty. It is ended with this
// object and, if the operating system supports it, with this process. One thread only.
class Process
{
public:
    Process();
    // Kills a process that still runs.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Starts this executable with the given arguments; once per object. False if the system refuses.
    bool start(const std::vector<std::string>& words);
    // Reads the next line without its end, waiting up to the given milliseconds. False if there is none in that time or
    // none will follow.
    bool readLine(std::string& line, int milliseconds);
    // Whether all output has been read: the process has ended or is about to.
    bool isSilent() const;
    // Asks the process to end: by SIGTERM, and where there are no signals by nothing else than kill().
    void interrupt();
    // Ends the process by its id, without asking it.
    void kill();
    // Waits for the process to end; lines received meanwhile are kept. False if it still runs then.
    bool wait(int milliseconds);

    // After wait() returned true: the exit code, or -1 if the process was killed or crashed.
    int getResult() const;
    // Whether kill() ended it.
    bool wasKilled() const;

private:
    struct State;
    std::unique_ptr<State> m_State;
};

// Whether the standard output of this process is a terminal.
bool isTerminal();

} // namespace arena
