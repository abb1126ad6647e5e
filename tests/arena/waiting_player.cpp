// Logs in at a platform as "arena player" does, prints "logged in", and ends when another login has ended this one.
//
//   waiting_player PORT NAME
#include "commands/login.h"
#include "framework/string_helper.h"
#include "framework/system.h"
#include "host/handlers.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

static void say(const char* line)
{
    std::puts(line);
    std::fflush(stdout);
}

int main(int count, char** words)
{
    if (count != 3)
        return 2;
    const zet::String_T<wchar_t> name = zet::StringHelper::utf8ToWide(words[2]);
    zet::System system;
    // Large, so not on the stack.
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers handlers(*analyser);
    bool isKickedOut = false;
    handlers.on<CCmdLoginSuccess>([](CCommandSocket&, const CCmdLoginSuccess&) { say("logged in"); });
    handlers.on<CCmdLoginFail>([&](CCommandSocket&, const CCmdLoginFail&) { system.shutdown(); });
    handlers.on<CCmdAccountKickOut>(
        [&](CCommandSocket&, const CCmdAccountKickOut&)
        {
            say("CCmdAccountKickOut");
            isKickedOut = true;
            system.shutdown();
        });
    const auto socket = CCommandSocket::createInstance(analyser.get());
    CCmdBaseLogin login;
    login.m_Texts[0] = name;
    login.m_Texts[1] = zet::String_T<wchar_t>(L"password of ") + name;
    if (!socket->start(&system) ||
        !socket->connect(L"127.0.0.1", static_cast<unsigned short>(std::atoi(words[1])), true) || !socket->send(login))
        return 1;
    system.run();
    return isKickedOut ? 0 : 1;
}
