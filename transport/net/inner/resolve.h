// From the text of an address to an endpoint.
#pragma once

#include <asio/io_context.hpp>
#include <asio/ip/address_v4.hpp>
#include <asio/ip/basic_resolver.hpp>

#include <string>

namespace zet::inner
{

// Four numbers with points, or a host name, for which it waits for the resolver. Protocol is Asio's TCP or UDP. False,
// and the endpoint as it was, where there is none of the name.
template <class Protocol>
bool resolve(const char* name, unsigned short port, typename Protocol::endpoint& endpoint, asio::io_context& context)
{
    asio::error_code fault;
    const auto address = asio::ip::make_address_v4(name, fault);
    if (!fault)
    {
        endpoint = typename Protocol::endpoint(address, port);
        return true;
    }
    typename Protocol::resolver resolver(context);
    const auto found = resolver.resolve(Protocol::v4(), name, std::to_string(port), fault);
    if (fault || found.empty())
        return false;
    endpoint = found.begin()->endpoint();
    return true;
}

} // namespace zet::inner
