// The lines of the standard input, read by a thread of their own, so that waiting for them stops nothing else.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <thread>

namespace wirelens
{

class LineFeed
{
public:
    // Lines that are read ahead.
    static constexpr size_t kMostAhead = 256;

    LineFeed();
    // Does not wait for input: a thread that does is left behind, and ends with the program.
    ~LineFeed();
    LineFeed(const LineFeed&) = delete;
    LineFeed& operator=(const LineFeed&) = delete;

    // The next line, if there is one yet.
    std::optional<std::string> next();
    // Whether the input has ended and all its lines were taken.
    bool isOver() const;

private:
    struct State;

    static void readAll(State& state);

    std::shared_ptr<State> m_State;
    std::thread m_Thread;
};

} // namespace wirelens
