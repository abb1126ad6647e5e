// Any text as a training string. After one load and save the text no longer changes.
#include "fuzz/support/wide_text.h"
#include "playerdata/account_core.h"

#include <cstdlib>

namespace
{

// The saved text after a load into an account that has some games.
zet::String_T<wchar_t> settle(const zet::String_T<wchar_t>& text)
{
    AccountData account;
    for (const int id : {1, 2, 3, 4, 5, 6, 98, 99})
        account.m_TrainingMap[id].m_GameId = id;
    account.LoadTrainingFromString(text);
    // At most the number of valid games, and the invalid one.
    if (account.m_TrainingMap.size() > 99)
        std::abort();
    return account.SaveStringFromTraining();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const zet::String_T<wchar_t> text = settle(fuzz::wideText(data, size));
    if (!(settle(text) == text))
        std::abort();
    return 0;
}
