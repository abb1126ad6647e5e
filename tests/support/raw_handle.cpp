#include "tests/support/raw_handle.h"

#ifdef _WIN32
#include <winsock2.h>
// After winsock2.h, which replaces an older header included by it.
#include <windows.h>
#else
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace test
{

#ifdef _WIN32

bool sendRaw(unsigned int handle, const void* data, std::size_t size)
{
    return ::send(handle, static_cast<const char*>(data), static_cast<int>(size), 0) == static_cast<int>(size);
}

bool endOutput(unsigned int handle)
{
    return ::shutdown(handle, SD_SEND) == 0;
}

void closeRaw(unsigned int handle)
{
    ::closesocket(handle);
}

bool looksResetLikeEnd()
{
    const HMODULE system = ::GetModuleHandleW(L"ntdll.dll");
    return system && ::GetProcAddress(system, "wine_get_version") != nullptr;
}

#else

bool sendRaw(unsigned int handle, const void* data, std::size_t size)
{
    return ::write(static_cast<int>(handle), data, size) == static_cast<ssize_t>(size);
}

bool endOutput(unsigned int handle)
{
    return ::shutdown(static_cast<int>(handle), SHUT_WR) == 0;
}

void closeRaw(unsigned int handle)
{
    ::close(static_cast<int>(handle));
}

bool looksResetLikeEnd()
{
    return false;
}

#endif

bool resetRaw(unsigned int handle)
{
    linger hard{};
    hard.l_onoff = 1;
#ifdef _WIN32
    const bool isSet =
        ::setsockopt(handle, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&hard), sizeof hard) == 0;
#else
    const bool isSet = ::setsockopt(static_cast<int>(handle), SOL_SOCKET, SO_LINGER, &hard, sizeof hard) == 0;
#endif
    closeRaw(handle);
    return isSet;
}

} // namespace test
