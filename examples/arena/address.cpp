#include "examples/arena/address.h"

#include "framework/string_helper.h"
#include "tools/host_port.h"

#include <string>

namespace arena
{

bool parseHostPort(std::string_view text, HostPort& address)
{
    const auto result = tools::HostPort::parse(std::string(text));
    if (!result || result->m_Port == 0)
        return false;
    address.m_Host = zet::StringHelper::utf8ToWide(result->m_Host.c_str());
    address.m_Port = result->m_Port;
    return true;
}

} // namespace arena
