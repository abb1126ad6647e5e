// Any text as a training string. What was loaded from it and saved once is loaded and saved the same from then on.
#include "fuzz/support/wide_text.h"
#include "playerdata/account_core.h"

#include <cstdlib>

namespace
{

// What a save gives after a load into an account that knows some games.
zet::String_T<wchar_t> settle(const zet::String_T<wchar_t>& text)
{
    AccountData account;
    for (const int id : {1, 2, 3, 4, 5, 6, 98, 99})
        account.m_TrainingMap[id].m_GameId = id;
    account.LoadTrainingFromString(text);
    // No more than the games that there can be, with the one that cannot.
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
