// What an override of a host throws ends with the call of it.
#pragma once

#include "framework/inner/guard.h"

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// Reports to the log what was thrown, with the connection's peer where there is a connection. Where the log throws,
// too, it is lost.
void reportThrown(const wchar_t* where, const char* what, const TcpConnection* connection) noexcept;

// Calls what a host may have written. False where it threw, which is logged and goes no further.
template <class Call>
bool guard(const wchar_t* where, const TcpConnection* connection, Call call) noexcept
{
    return guardCall(call, [&](const char* what) { reportThrown(where, what ? what : "unknown", connection); });
}

} // namespace zet::inner
