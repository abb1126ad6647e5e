#include "net/socket.h"

#include "framework/string_helper.h"
#include "net/door/door.h"

namespace zet
{

// Hosts may bind a reference to this constant. A DLL exports it only if it is defined here.
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
    return StringHelper::utf8ToWide(inner::Door::getHostName().c_str());
}

hostent* Socket::gethostbyname(const char* name)
{
    // Windows resolves the empty name to this machine; other systems do not accept it.
    return name && *name ? inner::Door::getHostByName(name) : nullptr;
}

unsigned int Socket::inet_addr(const char* text)
{
    return text ? inner::Door::getAddress(text) : 0xFFFFFFFF;
}

} // namespace zet
