// Properties of any account and any text: after one load and save the text no longer changes, and the memory of a load
// is proportional to its text.
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"

#include "framework/time.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"
#include "tests/support/allocations.h"
#include "tests/support/record_helpers.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <string>

namespace
{

using test::bytesOf;
using Text = zet::String_T<wchar_t>;
using Random = std::mt19937;

constexpr int kRounds = 200;
constexpr int kMebi = 1 << 20;

int pick(Random& random, int least, int most)
{
    return std::uniform_int_distribution<int>(least, most)(random);
}

int anyInt(Random& random)
{
    return pick(random, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
}

// A random text of up to most units of an alphabet.
Text anyText(Random& random, const std::wstring& alphabet, int most)
{
    std::wstring text;
    for (int i = pick(random, 0, most); i > 0; --i)
        text += alphabet[static_cast<size_t>(pick(random, 0, static_cast<int>(alphabet.size()) - 1))];
    return Text(text.data(), static_cast<int>(text.size()));
}

Text anyDate(Random& random)
{
    return zet::Time(pick(random, 0, std::numeric_limits<int>::max())).convertToString(pick(random, 0, 1) != 0);
}

template <class Game>
Game anyGame(Random& random, int id)
{
    Game game;
    game.m_GameId = id;
    game.m_Level = anyInt(random);
    game.m_Text0 = anyText(random, L"abc \x4E2D\x6587", 30);
    game.m_BestScore = std::uniform_real_distribution<float>(-1e6f, 1e6f)(random);
    game.m_PlayTimes = anyInt(random);
    game.m_CDDuration = anyInt(random);
    game.m_CDTime = std::uniform_real_distribution<float>(-10.0f, 1e5f)(random);
    game.m_LastPlayTime = anyDate(random);
    return game;
}

FGameItem anyItem(Random& random)
{
    FGameItem item;
    item.m_ItemType = anyInt(random);
    item.m_Num = pick(random, -1, 100);
    item.m_Name = anyText(random, L"abc \x4E2D\x6587", 49);
    if (pick(random, 0, 1))
        item.m_Deadline = anyDate(random);
    item.m_Text9 = anyText(random, L"abc|=_", 30);
    return item;
}

AccountData anyAccount(Random& random)
{
    AccountData account;
    account.m_AccountId = anyInt(random);
    account.m_AccountName = anyText(random, L"abc \x4E2D\x6587", 60);
    for (int& allowance : account.m_Allowance)
        allowance = anyInt(random);
    account.m_Value3 = anyInt(random);
    account.m_NewbieFlag = anyInt(random);
    account.m_Flag = pick(random, 0, 1) != 0;
    account.m_KinectGame = anyGame<FGameKinect>(random, anyInt(random));
    for (int i = pick(random, 0, 12); i > 0; --i)
    {
        const int id = pick(random, -2, 110);
        FGameTraining& game = account.m_TrainingMap[id];
        game = anyGame<FGameTraining>(random, id);
        game.m_DateSlot = pick(random, -2, 22);
        game.m_Locked = pick(random, 0, 1) != 0;
    }
    for (int i = pick(random, 0, 5); i > 0; --i)
        account.m_DateMap[pick(random, 0, 30)] = anyDate(random);
    for (int i = pick(random, 0, 5); i > 0; --i)
    {
        const int id = anyInt(random);
        account.m_KinectMap[id] = anyGame<FGameKinect>(random, id);
    }
    for (int i = pick(random, 0, 8); i > 0; --i)
        account.m_ItemList.push_back(anyItem(random));
    for (int i = pick(random, 0, 8); i > 0; --i)
        account.m_GiftBox.push_back(anyItem(random));
    return account;
}

// An account with all games of the game table, none of them played.
AccountData freshAccount()
{
    AccountData account;
    for (int id = 1; id < 100; ++id)
        account.m_TrainingMap[id].m_GameId = id;
    return account;
}

template <class Packager>
void expectSettledBytes(const AccountData& account)
{
    const std::string bytes = bytesOf<Packager>(account);
    const auto packager = std::make_unique<Packager>();
    ASSERT_TRUE(packager->Write(bytes.data(), static_cast<int>(bytes.size())));
    AccountData other;
    ASSERT_TRUE(other.Read(packager.get()));
    EXPECT_EQ(packager->GetReadPointer(), packager->GetDataSize());
    EXPECT_EQ(bytesOf<Packager>(other), bytes);
}

// Invalid records, nearly valid ones, and valid ones, in any order.
Text anyGarbage(Random& random, int length)
{
    static const std::wstring kAlphabet(L"0123456789||||____====::-+ .xy\t\x4E2D\0", 33);
    Text text;
    wchar_t* out = text.resizeForOverwrite(length);
    for (int i = 0; i < length; ++i)
        out[i] = kAlphabet[static_cast<size_t>(pick(random, 0, static_cast<int>(kAlphabet.size()) - 1))];
    return text;
}

Text repeated(const std::wstring& piece, int length)
{
    Text text;
    wchar_t* out = text.resizeForOverwrite(length);
    for (int i = 0; i < length; ++i)
        out[i] = piece[static_cast<size_t>(i) % piece.size()];
    return text;
}

// Texts of 2^20 units that would be slow if a load copied the rest for each record, searched for a terminator
// repeatedly, recursed per record, or read one endless number.
std::vector<Text> worstTexts()
{
    Random random(7);
    std::vector<Text> texts;
    for (const wchar_t* piece : {L"_", L"|", L"=", L":", L"1", L" ", L"-", L"a", L"1_", L"1|", L"a=", L"3|85|2|900|0_",
                                 L":|_", L"a|1|=", L"|1|0="})
        texts.push_back(repeated(piece, kMebi));
    texts.push_back(anyGarbage(random, kMebi));
    // Each record is a date of a different slot.
    std::wstring dates;
    for (int slot = 0; dates.size() < kMebi; ++slot)
        dates += L"2020-1-1 10:00:00|" + std::to_wstring(slot) + L"_";
    texts.emplace_back(dates.data(), static_cast<int>(dates.size()));
    return texts;
}

} // namespace

TEST(AccountProperty, BytesReadAndWrittenAreTheSame)
{
    Random random(1);
    for (int round = 0; round < kRounds; ++round)
    {
        const AccountData account = anyAccount(random);
        expectSettledBytes<CCmdPackager>(account);
        expectSettledBytes<CDataPackager>(account);
    }
}

TEST(AccountProperty, BothPackagersHoldTheSameBytes)
{
    Random random(2);
    for (int round = 0; round < kRounds; ++round)
    {
        const AccountData account = anyAccount(random);
        EXPECT_EQ(bytesOf<CCmdPackager>(account), bytesOf<CDataPackager>(account));
    }
}

// A training string loaded into the account that saved it does not change the saved text.
TEST(AccountProperty, TrainingStringOfItsOwnAccountStays)
{
    Random random(3);
    for (int round = 0; round < kRounds; ++round)
    {
        AccountData account = anyAccount(random);
        const Text saved = account.SaveStringFromTraining();
        account.LoadTrainingFromString(saved);
        EXPECT_TRUE(account.SaveStringFromTraining() == saved);
    }
}

// A new account gets the complete games and separate dates, so the text no longer changes after the second save.
TEST(AccountProperty, TrainingStringOfAFreshAccountSettles)
{
    Random random(4);
    for (int round = 0; round < kRounds; ++round)
    {
        AccountData account = anyAccount(random);
        AccountData first = freshAccount();
        first.LoadTrainingFromString(account.SaveStringFromTraining());
        for (auto& [id, game] : account.m_TrainingMap)
        {
            if (!game.IsValid())
                continue;
            const FGameTraining& loaded = first.m_TrainingMap[id];
            EXPECT_EQ(loaded.m_BestScore, static_cast<float>(static_cast<int>(game.m_BestScore)));
            EXPECT_EQ(loaded.m_PlayTimes, game.m_PlayTimes);
            EXPECT_EQ(loaded.m_CDDuration, game.m_CDDuration);
            EXPECT_EQ(loaded.m_Locked, game.m_Locked);
        }
        const Text saved = first.SaveStringFromTraining();
        AccountData second = freshAccount();
        second.LoadTrainingFromString(saved);
        EXPECT_TRUE(second.SaveStringFromTraining() == saved);
    }
}

TEST(AccountProperty, ItemStringKeepsTheValidStacks)
{
    const zet::TestClock clock(1600000000);
    Random random(5);
    for (int round = 0; round < kRounds; ++round)
    {
        const AccountData account = anyAccount(random);
        const Text saved = account.SaveStringFromItem();
        AccountData other;
        other.LoadItemFromString(saved);
        EXPECT_TRUE(other.SaveStringFromItem() == saved);
        const auto valid = std::count_if(account.m_ItemList.begin(), account.m_ItemList.end(),
                                         [](const FGameItem& item) { return item.IsValid(); });
        EXPECT_EQ(static_cast<std::ptrdiff_t>(other.m_ItemList.size()), valid);
    }
}

TEST(AccountProperty, AnyTextSettlesOnceItWasLoadedAndSaved)
{
    const zet::TestClock clock(1600000000);
    Random random(6);
    for (int round = 0; round < kRounds; ++round)
    {
        const Text text = anyGarbage(random, 2000);
        AccountData first = freshAccount();
        first.LoadTrainingFromString(text);
        first.LoadItemFromString(text);
        AccountGlobalData firstGlobal;
        firstGlobal.ConvertLastServerListFromString(text);

        AccountData second = freshAccount();
        second.LoadTrainingFromString(first.SaveStringFromTraining());
        second.LoadItemFromString(first.SaveStringFromItem());
        AccountGlobalData secondGlobal;
        secondGlobal.ConvertLastServerListFromString(firstGlobal.ConvertLastServerListToString());
        EXPECT_TRUE(second.SaveStringFromTraining() == first.SaveStringFromTraining());
        EXPECT_TRUE(second.SaveStringFromItem() == first.SaveStringFromItem());
        EXPECT_EQ(secondGlobal.m_LastServerList, firstGlobal.m_LastServerList);
    }
}

// Each unit of a text costs a few bytes at most: the rest is not copied per record.
TEST(AccountProperty, LoadsTakeMemoryInProportionToTheirText)
{
    for (const Text& text : worstTexts())
    {
        const long long units = text.getLength();
        AccountData account = freshAccount();
        AccountGlobalData global;
        {
            const test::AllocationCount count;
            account.LoadTrainingFromString(text);
            EXPECT_LE(count.blocks(), units / 8);
            EXPECT_LE(count.bytes(), 32 * units);
        }
        EXPECT_LE(account.m_TrainingMap.size(), 99u);
        {
            const test::AllocationCount count;
            account.LoadItemFromString(text);
            EXPECT_LE(count.blocks(), units / 8);
            EXPECT_LE(count.bytes(), 32 * units);
        }
        {
            const test::AllocationCount count;
            global.ConvertLastServerListFromString(text);
            EXPECT_LE(count.blocks(), 64);
            EXPECT_LE(count.bytes(), 8 * units);
        }
    }
}

// If every record is a stack, memory is one stack per record, in a list that doubles.
TEST(AccountProperty, LoadOfStacksTakesMemoryByTheStack)
{
    constexpr int kStacks = 20000;
    AccountData account;
    const Text text = repeated(L"a|1|0=", 6 * kStacks);
    const test::AllocationCount count;
    account.LoadItemFromString(text);
    EXPECT_EQ(account.m_ItemList.size(), static_cast<size_t>(kStacks));
    EXPECT_LE(count.blocks(), 32);
    EXPECT_LE(count.bytes(), 4LL * kStacks * static_cast<long long>(sizeof(FGameItem)));
}
