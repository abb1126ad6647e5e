// The platform lives on one machine: where its servers are, and ports that nobody else reaches.
#pragma once

#include "commands/registry.h"
#include "framework/time.h"
#include "transport/framework_server_socket.h"

namespace arena
{

constexpr wchar_t kLoopback[] = L"127.0.0.1";
// Milliseconds that a process waits for an answer before it gives up.
constexpr unsigned int kAnswerTime = 5000;

// Turns away who does not come from this machine: there is no login here, and anybody let in may shut all down.
class LoopbackPort : public CFrameworkServerSocket
{
public:
    explicit LoopbackPort(unsigned short port);
};

// A moment by which something must have happened, if one is set.
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

// Copies what a server tells of itself from one command of the register family to another; id and head stay.
void copyRecord(const CCmdServerRegister& from, CCmdServerRegister& to);
// "alpha (type 1) at 127.0.0.1:4000"
zet::String_T<char> describe(const CCmdServerRegister& record);

} // namespace arena
