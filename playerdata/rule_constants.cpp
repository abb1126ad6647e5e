#include "playerdata/rule_constants.h"

#include <cstdlib>

const int G_MaxServerId = 20;
const int g_BagSpaceDefault = 10;

const int g_MissionCostEnergy = 10;
const int g_RushCostEnergy = 10;
const int g_SingleTrainCostEnergy = 10;
const int g_DoubleTrainCostEnergy = 20;
const int g_MatchCostEnergy = 10;

const int g_UnlockTrainPrice = 10;
const int g_UnlockRushPriceMin = 5;
const int g_UnlockRushPriceMax = 50;
const int g_UnlockRushPriceDiff = 5;

const int g_TrainFreeTimes_VIP_0 = 6;
const int g_TrainFreeTimes_VIP_1 = 100;
const int g_RushFreeTimes_VIP_0 = 2;
const int g_RushFreeTimes_VIP_1 = 3;
const int g_MusicFreeTimes_VIP_0 = 6;
const int g_MusicFreeTimes_VIP_1 = 100;
const int g_BrainFreeTimes_VIP_0 = 6;
const int g_BrainFreeTimes_VIP_1 = 100;

const int g_EnergyMax_VIP_0 = 100;
const int g_EnergyMax_VIP_1 = 1000;
const int g_EnergyFreeTime_VIP_0 = 86400;
const int g_EnergyFreeTime_VIP_1 = 86400;
const int g_EnergyFreeTime_VIP_2 = 86400;
const int g_EnergyFreeTime_VIP_3 = 86400;
const int g_EnergyFreeTime_VIP_4 = 86400;
const int g_EnergyFreeTime_VIP_5 = 86400;

const int g_BankSaving_VIP_1 = 20;
const int g_BankSaving_VIP_2 = 50;
const int g_BankSaving_VIP_3 = 100;
const int g_BankSaving_VIP_4 = 99999999;
const int g_BankSaving_VIP_5 = 99999999;

const int g_VIPLevel_Max = 51;
const zet::String_T<wchar_t> g_VIPLevel_Max_Time = L"3000-1-1 4:0:0";

const int g_EnergyPay_MaxPrice = 20;
const int G_BigTable_Diamond = 100;
const int g_OneDiamond_CDTime = 5760;
const int g_MaxFreeAddGoldTimes_NoVIP = 1;
const int g_MaxFreeAddGoldTimes_VIP = 2;

const zet::String_T<wchar_t> g_PayType_Diamond = L"Diamond";
const zet::String_T<wchar_t> g_PayType_Vip1 = L"VIP1";
const zet::String_T<wchar_t> g_PayType_Vip2 = L"VIP2";
const zet::String_T<wchar_t> g_PayType_Vip3 = L"VIP3";
const zet::String_T<wchar_t> g_PayType_Vip4 = L"VIP4";

const zet::String_T<wchar_t> g_DeviceType_TV = L"TVPay";
const zet::String_T<wchar_t> g_DeviceType_Mobile = L"MobilePay";
const zet::String_T<wchar_t> g_DeviceType_QRCode = L"QRCode";

const zet::String_T<wchar_t> g_LingYuanGouXiaomiRemote = L"MitvController";
const zet::String_T<wchar_t> g_LingYuanGouXiaomiBluetooth = L"MitvHandle";
const zet::String_T<wchar_t> g_LingYuanGouXiaomiSubController = L"MitvSubController";
const zet::String_T<wchar_t> g_LingYuanGouLetvCamera = L"LetvKinect";
const zet::String_T<wchar_t> g_LingYuanGouLetvRemote = L"LetvController";
const zet::String_T<wchar_t> g_LingYuanGouLetvBluetooth = L"LetvHandle";
const zet::String_T<wchar_t> g_LingYuanGouTCLCamera = L"TCLKinect";

namespace
{

// Drawn once when the library is loaded, from the unseeded generator; the smallest key is 999. It is used only in this
// file.
const int m_ConfuseKey = std::rand() % 65535 + 999;

} // namespace

int g_ConfuseData(int value)
{
    return value ^ m_ConfuseKey;
}

int g_UnConfuseData(int value)
{
    return value ^ m_ConfuseKey;
}
