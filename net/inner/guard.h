// What an override of a host throws ends with the call of it.
#pragma once

#include <exception>

namespace zet
{
class TcpConnection;
}

namespace zet::inner
{

// Tells the log of it, with the connection's peer where there is a connection. Where the log throws, too, it is lost.
void reportThrown(const wchar_t* where, const char* what, const TcpConnection* connection) noexcept;

// Calls what a host may have written. False where it threw, which is logged and goes no further.
template <class Call>
bool guard(const wchar_t* where, const TcpConnection* connection, Call call) noexcept
{
    try
    {
        call();
        return true;
    }
    catch (const std::exception& fault)
    {
        reportThrown(where, fault.what(), connection);
    }
    catch (...)
    {
        reportThrown(where, "unknown", connection);
    }
    return false;
}

} // namespace zet::inner
