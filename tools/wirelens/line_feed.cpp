#include "tools/wirelens/line_feed.h"

#include <condition_variable>
#include <deque>
#include <iostream>
#include <mutex>

namespace wirelens
{

// Shared with the thread, which may outlive the feed.
struct LineFeed::State
{
    std::mutex m_Mutex;
    std::condition_variable m_HasSpace;
    std::deque<std::string> m_Lines;
    bool m_IsOver = false;
    bool m_IsAbandoned = false;
};

LineFeed::LineFeed() : m_State(std::make_shared<State>()), m_Thread([state = m_State] { readAll(*state); }) {}

LineFeed::~LineFeed()
{
    bool isOver = false;
    {
        const std::lock_guard lock(m_State->m_Mutex);
        m_State->m_IsAbandoned = true;
        isOver = m_State->m_IsOver;
    }
    m_State->m_HasSpace.notify_all();
    if (isOver)
        m_Thread.join();
    else
        m_Thread.detach();
}

void LineFeed::readAll(State& state)
{
    for (std::string line; std::getline(std::cin, line);)
    {
        std::unique_lock lock(state.m_Mutex);
        state.m_HasSpace.wait(lock, [&] { return state.m_Lines.size() < kMostAhead || state.m_IsAbandoned; });
        if (state.m_IsAbandoned)
            return;
        state.m_Lines.push_back(std::move(line));
    }
    const std::lock_guard lock(state.m_Mutex);
    state.m_IsOver = true;
}

std::optional<std::string> LineFeed::next()
{
    const std::lock_guard lock(m_State->m_Mutex);
    if (m_State->m_Lines.empty())
        return std::nullopt;
    std::string line = std::move(m_State->m_Lines.front());
    m_State->m_Lines.pop_front();
    m_State->m_HasSpace.notify_one();
    return line;
}

bool LineFeed::isOver() const
{
    const std::lock_guard lock(m_State->m_Mutex);
    return m_State->m_IsOver && m_State->m_Lines.empty();
}

} // namespace wirelens
