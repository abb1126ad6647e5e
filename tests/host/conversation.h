// A server that stores the questions of its clients until the test answers them, and clients that ask.
#pragma once

#include "commands/registry.h"
#include "framework/time.h"
#include "host/tasks.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>

namespace test
{

using EchoReply = host::Reply<CCmdServerEchoReply>;

// "5" for the answer with this number; without an answer, the reason.
inline std::wstring textOf(const EchoReply& reply)
{
    if (const auto* const answer = std::get_if<CCmdServerEchoReply>(&reply))
        return std::to_wstring(answer->m_Data);
    return std::get<host::Unanswered>(reply).getText();
}

inline CCmdServerEcho echoOf(unsigned long number)
{
    CCmdServerEcho echo;
    echo.m_Data = number;
    return echo;
}

// The time changes by advance() only.
class Conversation
{
public:
    Conversation() : m_Loopback(m_ServerAnalyser.get())
    {
        m_ServerHandlers.on<CCmdServerEcho>([this](CCommandSocket& socket, CCmdServerEcho& echo)
                                            { m_Asked[&socket].push_back(echo.m_Data); });
        m_Questions->expect<CCmdServerEchoReply, CCmdServerRegisterFail>();
    }

    // A new connection; null if it fails.
    ClientHandle connect() { return m_Loopback.connect(m_ClientAnalyser.get()); }
    // The server's end of the latest connection.
    CCommandSocket& accepted() { return *m_Loopback.accepted(); }

    // Ticks until the server has received this many questions from the connection.
    bool wasAsked(CCommandSocket& end, size_t count)
    {
        return tickUntil(m_Loopback.m_System, [&] { return m_Asked[&end].size() >= count; });
    }
    // The server answers its oldest question.
    void answer(CCommandSocket& end)
    {
        std::deque<unsigned long>& asked = m_Asked[&end];
        CCmdServerEchoReply reply;
        reply.m_Data = asked.front();
        asked.pop_front();
        EXPECT_TRUE(end.send(reply));
    }
    template <class Condition>
    bool tickUntil(Condition condition)
    {
        return test::tickUntil(m_Loopback.m_System, condition);
    }
    template <class Condition>
    static bool tickUntil(zet::System& system, Condition condition)
    {
        return test::tickUntil(system, condition);
    }
    // Lets the time pass in steps of a tick.
    void advance(unsigned int milliseconds)
    {
        for (unsigned int passed = 0; passed < milliseconds; passed += kStep)
        {
            m_Clock.advance(std::min(kStep, milliseconds - passed));
            m_Loopback.m_System.tick();
        }
    }

    static constexpr unsigned int kStep = 10;

    LogLines m_Lines;
    zet::TestClock m_Clock{1000000};
    std::unique_ptr<CCmdAnalyserSocket> m_ServerAnalyser = std::make_unique<CCmdAnalyserSocket>();
    std::unique_ptr<CCmdAnalyserSocket> m_ClientAnalyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_ServerHandlers{*m_ServerAnalyser};
    host::Handlers m_ClientHandlers{*m_ClientAnalyser};
    Loopback m_Loopback;
    std::unique_ptr<host::Questions> m_Questions =
        std::make_unique<host::Questions>(m_ClientHandlers, m_Loopback.m_System);
    // The numbers asked and not answered, by the server's end of the connection.
    std::map<const CCommandSocket*, std::deque<unsigned long>> m_Asked;
};

} // namespace test
