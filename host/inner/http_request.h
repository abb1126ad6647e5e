// The head of an HTTP/1.1 request, read strictly: GET and HEAD without a body.
#pragma once

#include "framework/export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace host::inner
{

struct HttpRequest
{
    // Bytes of a head, from its first byte to the empty line.
    static constexpr size_t kMostHead = 8192;

    enum State
    {
        // More bytes are needed.
        kCut,
        kWhole,
        // To be answered with this status; where the next request would begin is not known.
        kInvalid = 400,
        kOtherMethod = 405,
        kOtherHost = 421,
        kTooLong = 431
    };

    // Without the query.
    std::string m_Path;
    // The value of the field Host in lower case, and whether there is one.
    std::string m_Host;
    bool m_HasHost = false;
    bool m_IsHead = false;
    bool m_KeepsAlive = false;
    // The client takes "text/plain", but not "application/openmetrics-text".
    bool m_WantsPlainText = false;
};

// The value of a field Host without its port: a name, or an address, of IPv6 in brackets. Empty if it is not valid.
COMMONGROUND_API std::string_view hostOf(std::string_view value);

// Reads the request at the start of the input. For a whole one, used is its size. Lines end with CR LF; whatever else
// RFC 9112 allows a server to tolerate is invalid, and so is a body.
COMMONGROUND_API HttpRequest::State readRequest(std::string_view input, HttpRequest& request, size_t& used);

} // namespace host::inner
