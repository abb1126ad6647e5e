#include "playerdata/rule_constants.h"

#include "framework/time.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>

namespace
{

struct Number
{
    const int* m_Constant;
    int m_Value;
    const char* m_Name;
};
#define NUMBER(name, value)                                                                                            \
    {                                                                                                                  \
        &name, value, #name                                                                                            \
    }

const Number kNumbers[] = {
    NUMBER(G_MaxServerId, 20),
    NUMBER(g_BagSpaceDefault, 10),
    NUMBER(g_MissionCostEnergy, 10),
    NUMBER(g_RushCostEnergy, 10),
    NUMBER(g_SingleTrainCostEnergy, 10),
    NUMBER(g_DoubleTrainCostEnergy, 20),
    NUMBER(g_MatchCostEnergy, 10),
    NUMBER(g_UnlockTrainPrice, 10),
    NUMBER(g_UnlockRushPriceMin, 5),
    NUMBER(g_UnlockRushPriceMax, 50),
    NUMBER(g_UnlockRushPriceDiff, 5),
    NUMBER(g_TrainFreeTimes_VIP_0, 6),
    NUMBER(g_TrainFreeTimes_VIP_1, 100),
    NUMBER(g_RushFreeTimes_VIP_0, 2),
    NUMBER(g_RushFreeTimes_VIP_1, 3),
    NUMBER(g_MusicFreeTimes_VIP_0, 6),
    NUMBER(g_MusicFreeTimes_VIP_1, 100),
    NUMBER(g_BrainFreeTimes_VIP_0, 6),
    NUMBER(g_BrainFreeTimes_VIP_1, 100),
    NUMBER(g_EnergyMax_VIP_0, 100),
    NUMBER(g_EnergyMax_VIP_1, 1000),
    NUMBER(g_EnergyFreeTime_VIP_0, 86400),
    NUMBER(g_EnergyFreeTime_VIP_1, 86400),
    NUMBER(g_EnergyFreeTime_VIP_2, 86400),
    NUMBER(g_EnergyFreeTime_VIP_3, 86400),
    NUMBER(g_EnergyFreeTime_VIP_4, 86400),
    NUMBER(g_EnergyFreeTime_VIP_5, 86400),
    NUMBER(g_BankSaving_VIP_1, 20),
    NUMBER(g_BankSaving_VIP_2, 50),
    NUMBER(g_BankSaving_VIP_3, 100),
    NUMBER(g_BankSaving_VIP_4, 99999999),
    NUMBER(g_BankSaving_VIP_5, 99999999),
    NUMBER(g_VIPLevel_Max, 51),
    NUMBER(g_EnergyPay_MaxPrice, 20),
    NUMBER(G_BigTable_Diamond, 100),
    NUMBER(g_OneDiamond_CDTime, 5760),
    NUMBER(g_MaxFreeAddGoldTimes_NoVIP, 1),
    NUMBER(g_MaxFreeAddGoldTimes_VIP, 2),
};

struct Text
{
    const zet::String_T<wchar_t>* m_Constant;
    const wchar_t* m_Value;
    const char* m_Name;
};
#define TEXT_OF(name, value)                                                                                           \
    {                                                                                                                  \
        &name, value, #name                                                                                            \
    }

const Text kTexts[] = {
    TEXT_OF(g_VIPLevel_Max_Time, L"3000-1-1 4:0:0"),
    TEXT_OF(g_PayType_Diamond, L"Diamond"),
    TEXT_OF(g_PayType_Vip1, L"VIP1"),
    TEXT_OF(g_PayType_Vip2, L"VIP2"),
    TEXT_OF(g_PayType_Vip3, L"VIP3"),
    TEXT_OF(g_PayType_Vip4, L"VIP4"),
    TEXT_OF(g_DeviceType_TV, L"TVPay"),
    TEXT_OF(g_DeviceType_Mobile, L"MobilePay"),
    TEXT_OF(g_DeviceType_QRCode, L"QRCode"),
    TEXT_OF(g_LingYuanGouXiaomiRemote, L"MitvController"),
    TEXT_OF(g_LingYuanGouXiaomiBluetooth, L"MitvHandle"),
    TEXT_OF(g_LingYuanGouXiaomiSubController, L"MitvSubController"),
    TEXT_OF(g_LingYuanGouLetvCamera, L"LetvKinect"),
    TEXT_OF(g_LingYuanGouLetvRemote, L"LetvController"),
    TEXT_OF(g_LingYuanGouLetvBluetooth, L"LetvHandle"),
    TEXT_OF(g_LingYuanGouTCLCamera, L"TCLKinect"),
};

} // namespace

TEST(RuleConstants, NumbersHaveTheirValuesAndAreObjectsOfTheirOwn)
{
    std::set<const int*> places;
    for (const Number& number : kNumbers)
    {
        EXPECT_EQ(*number.m_Constant, number.m_Value) << number.m_Name;
        places.insert(number.m_Constant);
    }
    EXPECT_EQ(places.size(), 38u);
}

TEST(RuleConstants, TextsHaveTheirValues)
{
    for (const Text& text : kTexts)
        EXPECT_TRUE(*text.m_Constant == text.m_Value) << text.m_Name;
    EXPECT_EQ(std::size(kTexts), 16u);
}

TEST(RuleConstants, EndOfTheTopVipLevelIsADateFarAhead)
{
    zet::Time end;
    ASSERT_TRUE(end.convertFromString(g_VIPLevel_Max_Time));
    const long long left = end - zet::Time::getCurrent();
    EXPECT_GT(left, 900LL * 365 * 86400);
    EXPECT_TRUE(end.convertToString(false) == L"3000-1-1 04:00:00");
}

TEST(ConfuseData, IsUndoneByItsCounterpartAndByItself)
{
    for (const int value :
         {0, 1, -1, 999, -999, 65535, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()})
    {
        EXPECT_EQ(g_UnConfuseData(g_ConfuseData(value)), value);
        EXPECT_EQ(g_ConfuseData(g_ConfuseData(value)), value);
        EXPECT_EQ(g_UnConfuseData(g_UnConfuseData(value)), value);
    }
}

TEST(ConfuseData, KeyIsOneOfTheProcessAndNeverZero)
{
    const int key = g_ConfuseData(0);
    EXPECT_GE(key, 999);
    EXPECT_LE(key, 66533);
    EXPECT_EQ(g_ConfuseData(0), key);
    EXPECT_EQ(g_UnConfuseData(0), key);
    EXPECT_EQ(g_ConfuseData(-1), ~key);
}
