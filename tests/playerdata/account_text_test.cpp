#include "playerdata/account_core.h"

#include "framework/time.h"
#include "tests/support/record_helpers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace
{

using test::itemOf;
using test::secondsOf;
using Text = zet::String_T<wchar_t>;

std::wstring wide(const Text& text)
{
    return {text.getBuffer(), static_cast<size_t>(text.getLength())};
}

// The 20 date records of games without dates.
std::wstring emptyDates()
{
    std::wstring text;
    for (int slot = 0; slot < 20; ++slot)
        text += L"|" + std::to_wstring(slot) + L"_";
    return text;
}

FGameTraining trainingOf(int id)
{
    FGameTraining game;
    game.m_GameId = id;
    return game;
}

// The number of pieces of a loaded record, 0 if it was dropped.
int loadedPieces(const std::wstring& text)
{
    AccountData account;
    account.LoadItemFromString(text.c_str());
    return account.m_ItemList.empty() ? 0 : account.m_ItemList[0].m_Num;
}

} // namespace

TEST(TrainingString, OfAnEmptyMapIsEmpty)
{
    AccountData account;
    account.m_DateMap[3] = L"2020-1-1 00:00:00";
    EXPECT_TRUE(account.SaveStringFromTraining().isEmpty());
}

TEST(TrainingString, HasTheGamesAndTwentyDates)
{
    AccountData account;
    FGameTraining& game = account.m_TrainingMap[3];
    game = trainingOf(3);
    game.m_BestScore = 85.6f;
    game.m_PlayTimes = 2;
    game.m_CDDuration = 900;
    game.m_Locked = false;
    EXPECT_EQ(wide(account.SaveStringFromTraining()), L"3|85|2|900|0_" + emptyDates());

    account.m_TrainingMap[1] = trainingOf(1);
    account.m_TrainingMap[1].m_BestScore = -1.9f;
    EXPECT_EQ(wide(account.SaveStringFromTraining()), L"1|-1|0|0|1_3|85|2|900|0_" + emptyDates());
}

TEST(TrainingString, OfInvalidGamesHasTheDatesAlone)
{
    AccountData account;
    for (const int id : {0, 5, 100})
    {
        account.m_TrainingMap[id] = trainingOf(id);
        account.m_TrainingMap[id].m_DateSlot = 1;
    }
    EXPECT_EQ(wide(account.SaveStringFromTraining()), emptyDates());
}

TEST(TrainingString, DateOfTheLastPlayIsAtItsSlot)
{
    AccountData account;
    account.m_TrainingMap[1] = trainingOf(1);
    account.m_TrainingMap[1].m_DateSlot = 0;
    account.m_TrainingMap[1].m_LastPlayTime = L"2020-1-1 10:00:00";
    account.m_TrainingMap[2] = trainingOf(2);
    account.m_TrainingMap[2].m_DateSlot = 19;
    account.m_TrainingMap[2].m_LastPlayTime = L"2020-1-2 10:00:00";
    // Of two games with one slot the later is kept.
    account.m_TrainingMap[3] = trainingOf(3);
    account.m_TrainingMap[3].m_DateSlot = 0;
    account.m_TrainingMap[3].m_LastPlayTime = L"2020-1-3 10:00:00";
    std::wstring expected = L"1|-1|0|0|1_2|-1|0|0|1_3|-1|0|0|1_" + emptyDates();
    expected.replace(expected.find(L"|0_|1_"), 3, L"2020-1-3 10:00:00|0_");
    expected.replace(expected.find(L"|19_"), 4, L"2020-1-2 10:00:00|19_");
    EXPECT_EQ(wide(account.SaveStringFromTraining()), expected);
}

TEST(TrainingString, SlotBeyondTheListHasNoPlace)
{
    AccountData account;
    for (const int slot : {20, 21, 1000000, std::numeric_limits<int>::max(), -2, std::numeric_limits<int>::min()})
    {
        account.m_TrainingMap[1] = trainingOf(1);
        account.m_TrainingMap[1].m_DateSlot = slot;
        EXPECT_EQ(wide(account.SaveStringFromTraining()), L"1|-1|0|0|1_" + emptyDates()) << slot;
    }
}

TEST(TrainingString, ScoreBeyondAnIntStaysAtItsEnd)
{
    AccountData account;
    FGameTraining& game = account.m_TrainingMap[1];
    game = trainingOf(1);
    const std::pair<float, std::wstring> expected[] = {
        {2147483520.0f, L"2147483520"},
        {2147483648.0f, L"2147483647"},
        {std::numeric_limits<float>::infinity(), L"2147483647"},
        {-2147483648.0f, L"-2147483648"},
        {-3e9f, L"-2147483648"},
        {std::numeric_limits<float>::quiet_NaN(), L"0"},
        {-0.9f, L"0"},
    };
    for (const auto& [score, text] : expected)
    {
        game.m_BestScore = score;
        EXPECT_EQ(wide(account.SaveStringFromTraining()), L"1|" + text + L"|0|0|1_" + emptyDates());
    }
}

TEST(TrainingString, LoadSetsFourFieldsOfAKnownGame)
{
    AccountData account;
    account.m_TrainingMap[3] = trainingOf(3);
    account.m_TrainingMap[3].m_CDTime = 7.0f;
    account.m_TrainingMap[3].m_DateSlot = 4;
    account.m_TrainingMap[3].m_LastPlayTime = L"2020-1-1 10:00:00";
    account.LoadTrainingFromString(L"3|85|2|900|0_");
    ASSERT_EQ(account.m_TrainingMap.size(), 1u);
    const FGameTraining& game = account.m_TrainingMap[3];
    EXPECT_EQ(game.m_GameId, 3);
    EXPECT_EQ(game.m_BestScore, 85.0f);
    EXPECT_EQ(game.m_PlayTimes, 2);
    EXPECT_EQ(game.m_CDDuration, 900);
    EXPECT_FALSE(game.m_Locked);
    EXPECT_EQ(game.m_CDTime, 7.0f);
    EXPECT_EQ(game.m_DateSlot, 4);
    EXPECT_TRUE(game.m_LastPlayTime == L"2020-1-1 10:00:00");
}

TEST(TrainingString, EntryMadeByALoadHasNoGameAndIsNotSaved)
{
    AccountData account;
    account.LoadTrainingFromString(L"3|85|2|900|0_");
    ASSERT_EQ(account.m_TrainingMap.size(), 1u);
    EXPECT_EQ(account.m_TrainingMap[3].m_GameId, 0);
    EXPECT_EQ(account.m_TrainingMap[3].m_BestScore, 85.0f);
    EXPECT_EQ(wide(account.SaveStringFromTraining()), emptyDates());
}

TEST(TrainingString, InvalidGamesAreDroppedByALoad)
{
    AccountData account;
    account.LoadTrainingFromString(L"0|1|1|1|1_5|1|1|1|1_100|1|1|1|1_-3|1|1|1|1_x|1_|1_");
    EXPECT_TRUE(account.m_TrainingMap.empty());
    EXPECT_TRUE(account.m_DateMap.empty());
}

TEST(TrainingString, FieldsThatALoadDoesNotFindHaveStartValues)
{
    AccountData account;
    account.m_TrainingMap[3] = trainingOf(3);
    account.m_TrainingMap[3].m_BestScore = 50.0f;
    account.m_TrainingMap[3].m_PlayTimes = 9;
    account.m_TrainingMap[3].m_Locked = false;
    account.LoadTrainingFromString(L"3_");
    EXPECT_EQ(account.m_TrainingMap[3].m_BestScore, -1.0f);
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 0);
    EXPECT_EQ(account.m_TrainingMap[3].m_CDDuration, 0);
    EXPECT_TRUE(account.m_TrainingMap[3].m_Locked);

    // The scan ends at the first field that is not a number.
    account.LoadTrainingFromString(L"3|70|x|900|0_");
    EXPECT_EQ(account.m_TrainingMap[3].m_BestScore, 70.0f);
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 0);
    EXPECT_EQ(account.m_TrainingMap[3].m_CDDuration, 0);
    EXPECT_TRUE(account.m_TrainingMap[3].m_Locked);

    // White space is skipped before numbers only; a lock below 1 means unlocked.
    account.LoadTrainingFromString(L" 3| 71|\t2|900|-1_");
    EXPECT_EQ(account.m_TrainingMap[3].m_BestScore, 71.0f);
    EXPECT_EQ(account.m_TrainingMap[3].m_PlayTimes, 2);
    EXPECT_FALSE(account.m_TrainingMap[3].m_Locked);
    account.LoadTrainingFromString(L"3 |72_");
    EXPECT_EQ(account.m_TrainingMap[3].m_BestScore, -1.0f);
}

TEST(TrainingString, DatesGoToTheirSlots)
{
    AccountData account;
    account.LoadTrainingFromString(L"2013-1-1 00:00:00|4_");
    ASSERT_EQ(account.m_DateMap.size(), 1u);
    EXPECT_TRUE(account.m_DateMap[4] == L"2013-1-1 00:00:00");
    account.LoadTrainingFromString(L"|4_|5_");
    ASSERT_EQ(account.m_DateMap.size(), 1u);
    EXPECT_TRUE(account.m_DateMap[4] == L"2013-1-1 00:00:00");
    // A slot may be any number but -1.
    account.LoadTrainingFromString(L"a:b|-1_a:b|-2_a:b|77_a:b|4_");
    ASSERT_EQ(account.m_DateMap.size(), 3u);
    EXPECT_TRUE(account.m_DateMap[-2] == L"a:b");
    EXPECT_TRUE(account.m_DateMap[77] == L"a:b");
    EXPECT_TRUE(account.m_DateMap[4] == L"a:b");
}

TEST(TrainingString, DateWithoutATextOrASlotIsDropped)
{
    AccountData account;
    account.LoadTrainingFromString(L"|:4_00:00_00:00|_00:00|x_:_00:00||4_");
    EXPECT_TRUE(account.m_DateMap.empty());
    EXPECT_TRUE(account.m_TrainingMap.empty());
}

TEST(TrainingString, DateTakesUpTo99Units)
{
    const std::wstring fitting = L":" + std::wstring(98, L'd');
    AccountData account;
    account.LoadTrainingFromString(
        (fitting + L"|1_" + fitting + L"d|2_" + std::wstring(100000, L':') + L"|3_").c_str());
    ASSERT_EQ(account.m_DateMap.size(), 1u);
    EXPECT_EQ(wide(account.m_DateMap[1]), fitting);
}

TEST(TrainingString, LoadEndsAfterTheLastRecord)
{
    AccountData account;
    account.m_TrainingMap[3] = trainingOf(3);
    account.LoadTrainingFromString(L"");
    account.LoadTrainingFromString(L"3|85|2|900|0");
    EXPECT_EQ(account.m_TrainingMap[3].m_BestScore, -1.0f);
    account.LoadTrainingFromString(L"__3|85|2|900|0__3|86");
    EXPECT_EQ(account.m_TrainingMap[3].m_BestScore, 85.0f);
}

TEST(TrainingString, LoadBringsTheDatesBackBesideTheGames)
{
    AccountData account;
    account.m_TrainingMap[3] = trainingOf(3);
    account.m_TrainingMap[3].m_DateSlot = 6;
    account.m_TrainingMap[3].m_LastPlayTime = L"2020-1-1 10:00:00";
    const Text saved = account.SaveStringFromTraining();
    AccountData other;
    other.m_TrainingMap[3] = trainingOf(3);
    other.LoadTrainingFromString(saved);
    EXPECT_TRUE(other.m_TrainingMap[3].m_LastPlayTime == L"2013-1-1 00:00:00");
    EXPECT_EQ(other.m_TrainingMap[3].m_DateSlot, -1);
    ASSERT_EQ(other.m_DateMap.size(), 1u);
    EXPECT_TRUE(other.m_DateMap[6] == L"2020-1-1 10:00:00");
}

TEST(ItemString, OfAnEmptyBagIsEmpty)
{
    EXPECT_TRUE(AccountData().SaveStringFromItem().isEmpty());
}

TEST(ItemString, PermanentStackComesBack)
{
    AccountData account;
    account.m_ItemList = {itemOf(L"apple", 3)};
    account.m_ItemList[0].m_Text0 = L"not kept";
    EXPECT_EQ(wide(account.SaveStringFromItem()), L"apple|3|0=");
    AccountData other;
    other.LoadItemFromString(account.SaveStringFromItem());
    ASSERT_EQ(other.m_ItemList.size(), 1u);
    EXPECT_TRUE(other.m_ItemList[0].m_Name == L"apple");
    EXPECT_EQ(other.m_ItemList[0].m_Num, 3);
    EXPECT_TRUE(other.m_ItemList[0].m_Deadline.isEmpty());
    EXPECT_TRUE(other.m_ItemList[0].m_Text0.isEmpty());
}

TEST(ItemString, DeadlineIsKeptAsSecondsAfterTheZeroPoint)
{
    const zet::TestClock clock(secondsOf(L"1999-12-31 00:00:00"));
    AccountData account;
    account.m_ItemList = {itemOf(L"apple", 3, L"2000-1-2 0:0:0")};
    EXPECT_EQ(wide(account.SaveStringFromItem()), L"apple|3|86400=");
    AccountData other;
    other.LoadItemFromString(L"apple|3|86400=");
    ASSERT_EQ(other.m_ItemList.size(), 1u);
    EXPECT_TRUE(other.m_ItemList[0].m_Deadline == L"2000-1-2 00:00:00");
}

TEST(ItemString, StackExpiresOnTheSecondOnBothWays)
{
    zet::TestClock clock(secondsOf(L"2000-1-1 23:59:59"));
    AccountData account;
    account.m_ItemList = {itemOf(L"apple", 3, L"2000-1-2 0:0:0")};
    EXPECT_EQ(wide(account.SaveStringFromItem()), L"apple|3|86400=");
    EXPECT_EQ(loadedPieces(L"apple|3|86400="), 3);
    clock.advance(1000);
    EXPECT_TRUE(account.SaveStringFromItem().isEmpty());
    EXPECT_EQ(loadedPieces(L"apple|3|86400="), 0);
    // The bag itself keeps the items that the text omits.
    EXPECT_EQ(account.m_ItemList.size(), 1u);
}

TEST(ItemString, StacksThatAreNotValidAreLeftOut)
{
    AccountData account;
    account.m_ItemList = {itemOf(L"", 3), itemOf(L"apple", 0), itemOf(L"pear", 1), itemOf(L"plum", 1, L"never")};
    EXPECT_EQ(wide(account.SaveStringFromItem()), L"pear|1|0=");
}

TEST(ItemString, SecondsKeepTheirLowHalf)
{
    const zet::TestClock clock(secondsOf(L"2020-1-1 00:00:00"));
    AccountData account;
    // 2^31 seconds end on 2068-1-19; later texts have a sign, and the date still round-trips.
    account.m_ItemList = {itemOf(L"apple", 1, L"2068-1-19 03:14:07"), itemOf(L"pear", 1, L"2068-1-19 03:14:08"),
                          itemOf(L"plum", 1, L"2136-2-7 06:28:15")};
    EXPECT_EQ(wide(account.SaveStringFromItem()), L"apple|1|2147483647=pear|1|-2147483648=plum|1|-1=");
    AccountData other;
    other.LoadItemFromString(account.SaveStringFromItem());
    ASSERT_EQ(other.m_ItemList.size(), 3u);
    EXPECT_TRUE(other.m_ItemList[0].m_Deadline == L"2068-1-19 03:14:07");
    EXPECT_TRUE(other.m_ItemList[1].m_Deadline == L"2068-1-19 03:14:08");
    EXPECT_TRUE(other.m_ItemList[2].m_Deadline == L"2136-2-7 06:28:15");

    // Beyond 2^32 seconds the text gives another date, and at 2^32 none.
    account.m_ItemList = {itemOf(L"apple", 1, L"2136-2-7 06:28:16"), itemOf(L"pear", 1, L"2136-2-7 06:28:17")};
    EXPECT_EQ(wide(account.SaveStringFromItem()), L"apple|1|0=pear|1|1=");
}

TEST(ItemString, RecordNeedsThreeFields)
{
    for (const wchar_t* text : {L"apple=", L"apple|=", L"apple|3=", L"apple|3|=", L"apple|3|x=", L"|3|0=",
                                L"apple|x|0=", L"apple||0=", L"3|0=", L"=", L"==", L"apple|3|0"})
        EXPECT_EQ(loadedPieces(text), 0) << wide(text).size();
    EXPECT_EQ(loadedPieces(L"apple|3|0|more="), 3);
    EXPECT_EQ(loadedPieces(L"apple| 3| 0="), 3);
    EXPECT_EQ(loadedPieces(L"apple|3 |0="), 0);
    EXPECT_EQ(loadedPieces(L"==apple|3|0="), 3);
}

TEST(ItemString, InvalidItemIsDropped)
{
    EXPECT_EQ(loadedPieces(L"apple|0|0="), 0);
    EXPECT_EQ(loadedPieces(L"apple|-3|0="), 0);
    EXPECT_EQ(loadedPieces(L"apple|3|1="), 0);
}

TEST(ItemString, MalformedRecordDoesNotEndTheLoad)
{
    AccountData account;
    account.LoadItemFromString(L"apple|3|0=pear=plum|4|0=rest|5|0");
    ASSERT_EQ(account.m_ItemList.size(), 2u);
    EXPECT_TRUE(account.m_ItemList[1].m_Name == L"plum");
}

TEST(ItemString, LoadAppendsAndDoesNotMerge)
{
    AccountData account;
    account.m_ItemList = {itemOf(L"apple", 1)};
    account.LoadItemFromString(L"apple|3|0=apple|4|0=");
    ASSERT_EQ(account.m_ItemList.size(), 3u);
    EXPECT_EQ(account.m_ItemList[1].m_Num, 3);
    EXPECT_EQ(account.m_ItemList[2].m_Num, 4);
}

TEST(ItemString, NameTakesUpTo49Units)
{
    const std::wstring name(49, L'n');
    EXPECT_EQ(loadedPieces(name + L"|3|0="), 3);
    EXPECT_EQ(loadedPieces(name + L"n|3|0="), 0);
    EXPECT_EQ(loadedPieces(std::wstring(100000, L'n') + L"|3|0="), 0);
}
