// Any text as a list of servers. After one load and save the text no longer changes.
#include "fuzz/support/wide_text.h"
#include "playerdata/account_global.h"

#include <cstdlib>

namespace
{

zet::String_T<wchar_t> settle(const zet::String_T<wchar_t>& text)
{
    AccountGlobalData global;
    global.ConvertLastServerListFromString(text);
    for (const int id : global.m_LastServerList)
        if (id < 1)
            std::abort();
    return global.ConvertLastServerListToString();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const zet::String_T<wchar_t> text = settle(fuzz::wideText(data, size));
    if (!(settle(text) == text))
        std::abort();
    return 0;
}
