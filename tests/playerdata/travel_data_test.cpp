// The attractions of the travel feature and their text form.
#include "playerdata/travel_data.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using Text = zet::String_T<wchar_t>;

FAttractData attraction(int id, int unlocked = 0, int level = 0)
{
    FAttractData attract;
    attract.m_AttractId = id;
    attract.m_IsUnlocked = unlocked;
    attract.m_TaskLevel = level;
    return attract;
}

// All three calls of a load.
void load(AccountTravelData& travel, const wchar_t* form)
{
    Text text = form;
    travel.SetAnalyVersion(text);
    Text records = travel.getStringFromAnalyVersion(text);
    travel.LoadAttractDataFromString(records);
}

std::wstring saved(AccountTravelData& travel)
{
    return std::wstring(travel.SaveStringFromAttractData().view());
}

TEST(FAttractData, IsValidFromIdZero)
{
    EXPECT_FALSE(FAttractData().IsValid());
    EXPECT_TRUE(attraction(0).IsValid());
    EXPECT_FALSE(attraction(-2).IsValid());
}

TEST(AccountTravelData, UnknownAttractionHasZeros)
{
    AccountTravelData travel;
    EXPECT_EQ(0, travel.getIsUnlockedValue(3));
    EXPECT_EQ(0, travel.getTaskLevelValue(3));
}

TEST(AccountTravelData, NewAttractionIsStoredUnderItsId)
{
    AccountTravelData travel;
    travel.SetAddNewAttractData(attraction(3, 1, 2));
    ASSERT_EQ(1u, travel.m_AttractMap.count(3));
    EXPECT_EQ(1, travel.getIsUnlockedValue(3));
    EXPECT_EQ(2, travel.getTaskLevelValue(3));
}

TEST(AccountTravelData, KnownAttractionIsNeverOverwritten)
{
    AccountTravelData travel;
    travel.SetAddNewAttractData(attraction(3, 1, 2));
    travel.SetAddNewAttractData(attraction(3, 5, 6));
    EXPECT_EQ(1, travel.getIsUnlockedValue(3));
    EXPECT_EQ(2, travel.getTaskLevelValue(3));
}

TEST(AccountTravelData, AttractionThatIsKnownUnderAnotherKeyIsNotAddedAgain)
{
    AccountTravelData travel;
    travel.m_AttractMap[9] = attraction(3, 1, 2);
    travel.SetAddNewAttractData(attraction(3, 5, 6));
    EXPECT_EQ(1u, travel.m_AttractMap.size());
}

TEST(AccountTravelData, InvalidAttractionIsNotAdded)
{
    AccountTravelData travel;
    travel.SetAddNewAttractData(attraction(-1));
    EXPECT_TRUE(travel.m_AttractMap.empty());
}

TEST(AccountTravelData, LookUpTakesTheFirstValidAttractionByItsId)
{
    AccountTravelData travel;
    travel.m_AttractMap[1] = attraction(-1, 8, 8);
    travel.m_AttractMap[2] = attraction(7, 1, 2);
    travel.m_AttractMap[7] = attraction(7, 3, 4);
    EXPECT_EQ(1, travel.getIsUnlockedValue(7));
    EXPECT_EQ(2, travel.getTaskLevelValue(7));
    EXPECT_EQ(0, travel.getIsUnlockedValue(-1));
    EXPECT_EQ(0, travel.getTaskLevelValue(2));
}

TEST(AccountTravelData, UnlockSetsOnlyTheFlag)
{
    AccountTravelData travel;
    travel.SetAddNewAttractData(attraction(3, 0, 2));
    travel.SetAddNewAttractData(attraction(4, 0, 2));
    travel.SetAttractToUnlock(3);
    travel.SetAttractToUnlock(5);
    EXPECT_EQ(1, travel.getIsUnlockedValue(3));
    EXPECT_EQ(2, travel.getTaskLevelValue(3));
    EXPECT_EQ(0, travel.getIsUnlockedValue(4));
    EXPECT_EQ(2u, travel.m_AttractMap.size());
}

TEST(AccountTravelData, EmptyMapSavesToAnEmptyText)
{
    AccountTravelData travel;
    EXPECT_EQ(L"", saved(travel));
}

TEST(AccountTravelData, SavesValidAttractionsInKeyOrder)
{
    AccountTravelData travel;
    travel.m_AttractMap[7] = attraction(7);
    travel.m_AttractMap[3] = attraction(3, 1, 2);
    travel.m_AttractMap[5] = attraction(-5, 1, 2);
    EXPECT_EQ(L"0|3-1-2;7-0-0;", saved(travel));
    travel.m_AttractMap.erase(3);
    travel.m_AttractMap.erase(7);
    EXPECT_EQ(L"0|", saved(travel));
}

TEST(AccountTravelData, AnotherVersionSavesToAnEmptyText)
{
    AccountTravelData travel;
    travel.m_AttractMap[3] = attraction(3, 1, 2);
    travel.m_AnalyVersion = 1;
    EXPECT_EQ(L"", saved(travel));
}

TEST(AccountTravelData, VersionIsTheNumberBeforeTheBar)
{
    AccountTravelData travel;
    for (const auto& [form, version] : {std::pair(L"12|3-1-2;", 12), {L"-3|", -3}, {L"0|1|2|", 0}, {L" 4|", 4}})
    {
        Text text = form;
        travel.m_AnalyVersion = 99;
        travel.SetAnalyVersion(text);
        EXPECT_EQ(version, travel.m_AnalyVersion) << form;
    }
}

TEST(AccountTravelData, EmptyTextLeavesTheVersionAlone)
{
    AccountTravelData travel;
    travel.m_AnalyVersion = 99;
    Text text;
    travel.SetAnalyVersion(text);
    EXPECT_EQ(99, travel.m_AnalyVersion);
}

TEST(AccountTravelData, HeaderWithoutANumberLeavesTheVersionAlone)
{
    AccountTravelData travel;
    for (const wchar_t* form : {L"|3-1-2;", L"x|3-1-2;"})
    {
        Text text = form;
        travel.m_AnalyVersion = 99;
        travel.SetAnalyVersion(text);
        EXPECT_EQ(99, travel.m_AnalyVersion) << form;
    }
}

TEST(AccountTravelData, TextWithoutABarIsOfVersionZeroAndAllRecords)
{
    AccountTravelData travel;
    travel.m_AnalyVersion = 99;
    Text text = L"3-1-2;";
    travel.SetAnalyVersion(text);
    EXPECT_EQ(0, travel.m_AnalyVersion);
    EXPECT_EQ(L"3-1-2;", travel.getStringFromAnalyVersion(text).view());
}

TEST(AccountTravelData, RecordsFollowTheFirstBar)
{
    AccountTravelData travel;
    Text text = L"0|3-1-2;|x";
    EXPECT_EQ(L"3-1-2;|x", travel.getStringFromAnalyVersion(text).view());
    text = L"0|";
    EXPECT_EQ(L"", travel.getStringFromAnalyVersion(text).view());
    text = L"";
    EXPECT_EQ(L"", travel.getStringFromAnalyVersion(text).view());
}

TEST(AccountTravelData, LoadIsTheInverseOfSave)
{
    AccountTravelData travel;
    load(travel, L"0|3-1-2;7-0-0;2147483647--5--2147483648;");
    ASSERT_EQ(3u, travel.m_AttractMap.size());
    EXPECT_EQ(1, travel.m_AttractMap[3].m_IsUnlocked);
    EXPECT_EQ(2, travel.m_AttractMap[3].m_TaskLevel);
    EXPECT_EQ(-5, travel.m_AttractMap[2147483647].m_IsUnlocked);
    EXPECT_EQ(L"0|3-1-2;7-0-0;2147483647--5--2147483648;", saved(travel));
}

TEST(AccountTravelData, LoadingAnEmptyTextChangesNothing)
{
    AccountTravelData travel;
    travel.m_AttractMap[3] = attraction(3, 1, 2);
    load(travel, L"");
    EXPECT_EQ(L"0|3-1-2;", saved(travel));
}

TEST(AccountTravelData, LoadAddsAndReplaces)
{
    AccountTravelData travel;
    travel.m_AttractMap[3] = attraction(3, 1, 2);
    travel.m_AttractMap[4] = attraction(4, 1, 2);
    load(travel, L"0|5-5-5;3-8-9;5-6-7;");
    EXPECT_EQ(L"0|3-8-9;4-1-2;5-6-7;", saved(travel));
}

TEST(AccountTravelData, TailWithoutASemicolonIsIgnored)
{
    AccountTravelData travel;
    load(travel, L"0|5-1-9;garbage");
    EXPECT_EQ(L"0|5-1-9;", saved(travel));
    load(travel, L"0|6-1-9");
    EXPECT_EQ(L"0|5-1-9;", saved(travel));
}

TEST(AccountTravelData, OddRecordIsDroppedByItself)
{
    for (const wchar_t* odd : {L"-2-1-1;", L";", L";;;", L"x-1-1;", L"-;", L"4294967295-1-1;", L"   ;"})
    {
        AccountTravelData travel;
        load(travel, (Text(L"0|1-1-1;") + odd + L"2-2-2;").getBuffer());
        EXPECT_EQ(L"0|1-1-1;2-2-2;", saved(travel)) << odd;
    }
}

TEST(AccountTravelData, ShortRecordKeepsTheDefaults)
{
    AccountTravelData travel;
    load(travel, L"0|3;4-1;5-1-2-9;6-x-7;");
    EXPECT_EQ(L"0|3-0-0;4-1-0;5-1-2;6-0-0;", saved(travel));
}

TEST(AccountTravelData, AnotherVersionLoadsNothing)
{
    AccountTravelData travel;
    load(travel, L"1|3-1-2;");
    EXPECT_EQ(1, travel.m_AnalyVersion);
    EXPECT_TRUE(travel.m_AttractMap.empty());
}

TEST(AccountTravelData, LoadsAsManyRecordsAsThereAre)
{
    // Far more than recursion per record could handle.
    constexpr int kRecords = 50000;
    std::wstring form = L"0|";
    for (int id = 0; id < kRecords; ++id)
        form += std::to_wstring(id) + L"-1-2;";
    AccountTravelData travel;
    load(travel, form.c_str());
    EXPECT_EQ(static_cast<size_t>(kRecords), travel.m_AttractMap.size());
    EXPECT_EQ(form, saved(travel));
}

} // namespace
