// Heads of HTTP requests: what is read lies within the input, a whole request is the same with other bytes after it,
// and none of its beginnings is whole.
#include "fuzz/support/require.h"
#include "host/inner/http_request.h"

#include <cstdint>
#include <string>

namespace
{

using fuzz::require;
using host::inner::HttpRequest;
using host::inner::readRequest;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string input(data, data + size);
    HttpRequest request;
    std::size_t used = 0;
    const HttpRequest::State state = readRequest(input, request, used);
    require(used <= size && used <= HttpRequest::kMostHead);
    if (state == HttpRequest::kCut)
    {
        require(used == 0 && size < HttpRequest::kMostHead);
        return 0;
    }
    if (state != HttpRequest::kWhole)
        return 0;
    require(used > 0 && !request.m_Path.empty() && request.m_Path[0] == '/');
    HttpRequest same;
    std::size_t sameUsed = 0;
    require(readRequest(input.substr(0, used) + "GET", same, sameUsed) == HttpRequest::kWhole);
    require(sameUsed == used && same.m_Path == request.m_Path && same.m_KeepsAlive == request.m_KeepsAlive);
    for (std::size_t end = 0; end < used; ++end)
        require(readRequest(input.substr(0, end), same, sameUsed) == HttpRequest::kCut);
    return 0;
}
