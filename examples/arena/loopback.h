// Ports that other machines cannot reach unless they are named, and what goes with records of servers.
#pragma once

#include "commands/registry.h"
#include "framework/time.h"
#include "transport/framework_server_socket.h"

namespace arena
{

constexpr wchar_t kLoopback[] = L"127.0.0.1";
// Milliseconds that a process waits for an answer.
constexpr unsigned int kAnswerTime = 5000;

// Rejects peers from other machines, unless its address filter is replaced: there is no login, and any peer can shut
// everything down.
class LoopbackPort : public CFrameworkServerSocket
{
public:
    explicit LoopbackPort(unsigned short port);
};

// A deadline, if one is set.
class Deadline
{
public:
    void set(unsigned int milliseconds)
    {
        m_End = zet::getTimeTick() + milliseconds;
        m_IsSet = true;
    }
    void clear() { m_IsSet = false; }
    bool isOver(unsigned int tick) const { return m_IsSet && static_cast<int>(tick - m_End) >= 0; }

private:
    unsigned int m_End = 0;
    bool m_IsSet = false;
};

// Copies a server's own data from one command of the register family to another; id and head stay.
void copyRecord(const CCmdServerRegister& from, CCmdServerRegister& to);
// "alpha (type 1) at 127.0.0.1:4000"
zet::String_T<char> describe(const CCmdServerRegister& record);

} // namespace arena
