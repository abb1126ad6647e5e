// Any text as an item string. After one load and save the text no longer changes.
#include "framework/time.h"
#include "fuzz/support/wide_text.h"
#include "playerdata/account_core.h"

#include <cstdlib>

namespace
{

zet::String_T<wchar_t> settle(const zet::String_T<wchar_t>& text)
{
    AccountData account;
    account.LoadItemFromString(text);
    for (const FGameItem& item : account.m_ItemList)
        if (!item.IsValid())
            std::abort();
    return account.SaveStringFromItem();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Nothing expires between a load and its save.
    const zet::TestClock clock(1600000000);
    const zet::String_T<wchar_t> text = settle(fuzz::wideText(data, size));
    if (!(settle(text) == text))
        std::abort();
    return 0;
}
