#include "tools/host_port.h"

#include <charconv>

namespace tools
{

std::optional<HostPort> HostPort::parse(const std::string& text, const std::string& hostOfPort)
{
    HostPort result;
    const size_t colon = text.rfind(':');
    const std::string digits = colon == std::string::npos ? text : text.substr(colon + 1);
    result.m_Host = colon == std::string::npos ? hostOfPort : text.substr(0, colon);
    if (result.m_Host.starts_with("[") && result.m_Host.ends_with("]"))
        result.m_Host = result.m_Host.substr(1, result.m_Host.size() - 2);
    else if (result.m_Host.find(':') != std::string::npos)
        return std::nullopt;
    const char* const end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, result.m_Port);
    if (result.m_Host.empty() || digits.empty() || error != std::errc() || last != end)
        return std::nullopt;
    return result;
}

} // namespace tools
