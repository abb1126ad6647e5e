// Further processes of this executable, and what they say. One file a platform behind it.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace arena
{

// One process. Its standard output and error arrive here in one stream of lines; its input is empty. Ended at the
// latest with this object, and where the operating system can see to it, with this process. One thread only.
class Process
{
public:
    Process();
    // Kills a process that still runs.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    // Starts this executable with the words behind its name; once an object. False where the system refuses.
    bool start(const std::vector<std::string>& words);
    // The next line without its end, waiting up to so many milliseconds for it. False where none came, or none will.
    bool readLine(std::string& line, int milliseconds);
    // Whether all lines have been read that there will ever be: the process has ended or is about to.
    bool isSilent() const;
    // Ends the process by its id, without asking it.
    void kill();
    // Waits for the process to end; lines may come meanwhile and are kept. False where it still runs then.
    bool wait(int milliseconds);

    // Once wait() was true: what the process returned, or -1 where it was killed or crashed.
    int getResult() const;
    // Whether kill() ended it, rather than itself.
    bool wasKilled() const;

private:
    struct State;
    std::unique_ptr<State> m_State;
};

} // namespace arena
