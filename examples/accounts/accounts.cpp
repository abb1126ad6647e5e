// A player's record and the forms in which it is stored: two texts, for the columns of an account database, and bytes.
#include "framework/log.h"
#include "packaging/data_packager.h"
#include "playerdata/account_core.h"

#include <cstdio>

// An account as a host makes it, before anything is loaded: its training games come from the game's own table.
static AccountData makeAccount()
{
    AccountData account;
    account.m_AccountId = 7;
    account.m_AccountName = L"Ann";
    account.m_TrainingMap[3].m_GameId = 3;
    return account;
}

static void print(const char* what, AccountData& account)
{
    const FGameTraining& game = account.m_TrainingMap[3];
    std::printf("%s: %ls has %d apples; game 3: score %.0f, %d plays, %s, last played %ls\n", what,
                account.m_AccountName.getBuffer(), account.GetItemNum(L"apple"), static_cast<double>(game.m_BestScore),
                game.m_PlayTimes, game.m_Locked ? "locked" : "unlocked", account.m_DateMap[0].getBuffer());
}

int main()
{
    zet::Log::addSink([](zet::Log::Level, const zet::String_T<wchar_t>& line)
                      { std::fprintf(stderr, "%ls\n", line.getBuffer()); });
    AccountData account = makeAccount();
    FGameItem apples;
    apples.m_Name = L"apple";
    apples.m_Num = 3;
    account.AddItem(apples);
    account.AddItem(apples); // merges with the stack that is there
    FGameTraining& game = account.m_TrainingMap[3];
    game.m_BestScore = 85.0f;
    game.m_PlayTimes = 2;
    game.m_Locked = false;
    game.m_DateSlot = 0;
    game.m_LastPlayTime = L"2020-5-4 10:00:00";
    account.m_DateMap[0] = game.m_LastPlayTime;
    print("before", account);

    // Texts hold the bag and the training games, and no more: identity and counters are columns of their own.
    const zet::String_T<wchar_t> items = account.SaveStringFromItem();
    const zet::String_T<wchar_t> training = account.SaveStringFromTraining();
    std::printf("items: %ls\ntraining: %ls\n", items.getBuffer(), training.getBuffer());
    AccountData loaded = makeAccount();
    loaded.LoadItemFromString(items);
    loaded.LoadTrainingFromString(training);
    print("from texts", loaded);

    // Bytes hold the whole record. Both calls return false if something does not fit.
    CDataPackager packager;
    AccountData read;
    if (!account.Write(&packager) || !read.Read(&packager))
        return 1;
    print("from bytes", read);
    return loaded.GetItemNum(L"apple") == 6 && read.GetItemNum(L"apple") == 6 ? 0 : 1;
}
