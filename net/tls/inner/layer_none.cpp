// The library without TLS: begin() fails, so there is never a session.
#include "net/tls/inner/layer.h"

namespace zet::inner
{

bool TlsLayer::begin(const String_T<wchar_t>&)
{
    return false;
}

void TlsLayer::end() {}

TlsLayer::Result TlsLayer::shakeHands(Wire)
{
    return kFailed;
}

int TlsLayer::open(void*, int, Wire)
{
    return kFailed;
}

bool TlsLayer::seal(OutputQueue&, Wire)
{
    return false;
}

void TlsLayer::sendCloseNotify(Wire) {}

bool TlsLayer::hasInput() const
{
    return false;
}

bool TlsLayer::isResumed() const
{
    return false;
}

String_T<wchar_t> TlsLayer::getPeerName() const
{
    return String_T<wchar_t>();
}

String_T<wchar_t> TlsLayer::getDescription() const
{
    return String_T<wchar_t>();
}

} // namespace zet::inner
