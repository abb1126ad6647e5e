#include "transport/net/socket.h"

#include "framework/string_helper.h"

#include <asio/detail/socket_types.hpp>
#include <asio/ip/address_v4.hpp>
#include <asio/ip/host_name.hpp>

namespace zet
{

// Hosts compare with this by reference, too. A Windows library exports such a constant only where it is defined.
const unsigned int Socket::kNoHandle;

bool Socket::attach(unsigned int handle)
{
    if (handle == kNoHandle || (!isInvalid() && m_Handle != handle))
        return false;
    m_Handle = handle;
    return true;
}

unsigned int Socket::detach()
{
    return std::exchange(m_Handle, kNoHandle);
}

void Socket::close()
{
    m_Handle = kNoHandle;
}

String_T<wchar_t> Socket::getHostName()
{
    asio::error_code fault;
    const std::string name = asio::ip::host_name(fault);
    return fault ? String_T<wchar_t>() : StringHelper::utf8ToWide(name.c_str());
}

hostent* Socket::gethostbyname(const char* name)
{
    // The empty name is this machine to Windows, and nobody elsewhere.
    return name && *name ? ::gethostbyname(name) : nullptr;
}

unsigned int Socket::inet_addr(const char* text)
{
    return text ? static_cast<unsigned int>(::inet_addr(text)) : 0xFFFFFFFF;
}

} // namespace zet
