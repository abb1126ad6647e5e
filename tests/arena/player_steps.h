// A platform for the players of arena, in the process of the test.
#pragma once

#include "commands/login.h"
#include "commands/registry.h"
#include "commands/server_choice.h"
#include "host/handlers.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <thread>

namespace test
{

class FakePlatform
{
public:
    FakePlatform()
    {
        m_Handlers.on<CCmdServerEcho>(
            [this](CCommandSocket& socket, const CCmdServerEcho& echo)
            {
                if (++m_Echoes == m_KickedAt)
                {
                    socket.send(CCmdAccountKickOut());
                    socket.close();
                    return;
                }
                CCmdServerEchoReply reply;
                reply.m_Data = echo.m_Data + m_Lie;
                socket.send(reply);
            });
        m_Handlers.on<CCmdServerListRequest>(
            [](CCommandSocket& socket, const CCmdServerListRequest&)
            {
                CCmdServerListReply reply;
                reply.m_PlatformServerInfos[zet::uuid_node_t()].m_Value1 = 7;
                socket.send(reply);
            });
        m_Handlers.on<CCmdSelectServerRequest>(
            [this](CCommandSocket& socket, const CCmdSelectServerRequest& select)
            {
                CCmdSelectServerReply reply;
                reply.m_Text1 = L"127.0.0.1";
                reply.m_Value1 = m_Chosen;
                reply.m_Value2 = select.m_Value1 == 7 ? 0 : 1;
                socket.send(reply);
            });
        m_Handlers.on<CCmdBaseLogin>(
            [this](CCommandSocket& socket, const CCmdBaseLogin& login)
            {
                ++m_Logins;
                if (m_Refuses)
                {
                    CCmdLoginFail fail;
                    fail.m_Text1 = L"not today";
                    socket.send(fail);
                    return;
                }
                CCmdLoginSuccess success;
                success.m_Account.m_AccountName = login.m_Texts[0];
                success.m_Account.m_AccountId = m_IsForgetful ? m_Logins : 1;
                socket.send(success);
            });
    }

    // Runs "arena player" with these words and serves it meanwhile. The text has %d for the port of the platform.
    Run play(const std::string& words)
    {
        Loopback loopback(m_Analyser.get());
        std::string line = "player " + words;
        if (m_Prepare)
            line += m_Prepare(loopback);
        line.replace(line.find("%d"), 2, std::to_string(loopback.m_Server->zet::TcpServer::getPort()));
        std::atomic<bool> hasEnded{false};
        Run run;
        std::thread player(
            [&]
            {
                run = runProgram("arena", line);
                hasEnded = true;
                loopback.m_System.wake();
            });
        while (!hasEnded)
        {
            loopback.m_System.tick();
            loopback.m_System.wait();
        }
        player.join();
        return run;
    }

    LogLines m_Lines;
    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    // Returns further words.
    std::function<std::string(Loopback&)> m_Prepare;
    int m_Echoes = 0;
    int m_Logins = 0;
    // The echo at which the player is kicked out.
    int m_KickedAt = 0;
    // The port of the server that a player gets.
    int m_Chosen = 0;
    // Added to each answer.
    unsigned long m_Lie = 0;
    bool m_Refuses = false;
    // Each login delivers another record.
    bool m_IsForgetful = false;
};

inline bool has(const Run& run, const std::string& text)
{
    return run.m_Output.find(text) != std::string::npos;
}

} // namespace test
