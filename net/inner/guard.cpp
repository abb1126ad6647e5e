#include "net/inner/guard.h"

#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/tcp/connection.h"

namespace zet::inner
{

void reportThrown(const wchar_t* where, const char* what, const TcpConnection* connection) noexcept
{
    report(
        [&]
        {
            const String_T<wchar_t> peer = connection ? connection->getPeerName() : String_T<wchar_t>();
            Log::error(L"Exception in %s: %s (%s)", where, StringHelper::utf8ToWide(what), peer);
        });
    report([] { Log::whistle(false); });
}

} // namespace zet::inner
