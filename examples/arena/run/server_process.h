// A server of a run: a role as a process, started again after its end if wanted.
#pragma once

#include "examples/arena/process/processes.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace arena::run
{

class ServerProcess
{
public:
    // Milliseconds between an end and the next start.
    static constexpr unsigned int kFirstDelay = 250;
    static constexpr unsigned int kLongestDelay = 8000;

    // words: the role and its options, without --port.
    explicit ServerProcess(std::vector<std::string> words) : m_Words(std::move(words)) {}

    const std::string& getRole() const { return m_Words.front(); }
    // The port on which it listens: a free one at the first start, and the same one later. 0 until it is known.
    int getPort() const { return m_Port; }
    // Of its figures; 0 for none.
    int getHttpPort() const { return m_HttpPort; }
    bool isListening() const { return m_IsListening; }
    // Whether it has registered since its start or forgetRegistration(); for the registry itself, whether it listens.
    bool isRegistered() const { return m_IsRegistered; }
    void forgetRegistration() { m_IsRegistered = false; }
    int getStarts() const { return m_Starts; }

    // Starts it. False if the operating system refuses.
    bool start();
    // Reads what it has printed, without waiting longer than the given milliseconds for the first line.
    void read(int milliseconds);
    // Reads until it listens. False if it does not within the time, or has ended.
    bool awaitPort(int milliseconds);
    // Whether it has ended.
    bool hasEnded() const { return m_Process && m_Process->isSilent(); }
    // Kills it, without asking.
    void kill();
    // In each tick: reads what it has printed, and starts it again if it has ended, after a delay that doubles with
    // each end. True once per end.
    bool watch(unsigned int tick);
    // Waits for its end, which was ordered, and asks it if it does not come. False if it had to be killed or its exit
    // code is not 0.
    bool end(int milliseconds);
    // The last lines that it has printed.
    const std::deque<std::string>& getLines() const { return m_Lines; }

private:
    void take(const std::string& line);

    std::vector<std::string> m_Words;
    std::unique_ptr<Process> m_Process;
    std::deque<std::string> m_Lines;
    int m_Port = 0;
    int m_HttpPort = 0;
    int m_Starts = 0;
    bool m_IsListening = false;
    bool m_IsRegistered = false;
    // After an end that was not wanted.
    bool m_IsDown = false;
    unsigned int m_NextStart = 0;
    unsigned int m_Delay = kFirstDelay;
};

} // namespace arena::run
