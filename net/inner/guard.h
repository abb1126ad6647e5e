// Keeps an exception of a host's override inside the call of that override.
#pragma once

#include "framework/inner/guard.h"

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// Logs an exception, with the connection's peer if there is a connection. If logging throws, too, the report is lost.
void reportThrown(const wchar_t* where, const char* what, const TcpConnection* connection) noexcept;

// Calls code that a host may have written. False if it threw; the exception is logged and not passed on.
template <class Call>
bool guard(const wchar_t* where, const TcpConnection* connection, Call call) noexcept
{
    return guardCall(call, [&](const char* what) { reportThrown(where, what ? what : "unknown", connection); });
}

} // namespace zet::inner
