// The rule book of the platform: costs, limits and allowances that the client and every server read, so that all agree.
//
// The values are compiled into the library and not into the hosts: a change here changes the rules of all of them, and
// nothing inside the library computes with the numbers. Everything is read-only from load to unload, for any thread.
// The texts are built when the library is loaded: static initialisers of a host must not touch them earlier.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"

// The highest game server number of the platform.
extern COMMONGROUND_API const int G_MaxServerId;
// Bag slots of a new account.
extern COMMONGROUND_API const int g_BagSpaceDefault;

// Energy that one game costs.
extern COMMONGROUND_API const int g_MissionCostEnergy;
extern COMMONGROUND_API const int g_RushCostEnergy;
extern COMMONGROUND_API const int g_SingleTrainCostEnergy;
extern COMMONGROUND_API const int g_DoubleTrainCostEnergy;
extern COMMONGROUND_API const int g_MatchCostEnergy;

// Price of unlocking a training game; of a rush stage from the lowest to the highest, and the step between.
extern COMMONGROUND_API const int g_UnlockTrainPrice;
extern COMMONGROUND_API const int g_UnlockRushPriceMin;
extern COMMONGROUND_API const int g_UnlockRushPriceMax;
extern COMMONGROUND_API const int g_UnlockRushPriceDiff;

// Plays that are free, for players without (0) and with (1) VIP.
extern COMMONGROUND_API const int g_TrainFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_TrainFreeTimes_VIP_1;
extern COMMONGROUND_API const int g_RushFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_RushFreeTimes_VIP_1;
extern COMMONGROUND_API const int g_MusicFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_MusicFreeTimes_VIP_1;
extern COMMONGROUND_API const int g_BrainFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_BrainFreeTimes_VIP_1;

// The most energy that a player can have, without and with VIP.
extern COMMONGROUND_API const int g_EnergyMax_VIP_0;
extern COMMONGROUND_API const int g_EnergyMax_VIP_1;
// Seconds in which energy refills, by VIP level. They agree today and stay names of their own.
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_0;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_1;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_2;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_3;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_4;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_5;

// What the bank may save, by VIP level; there is no bank at level 0, and no limit in effect from level 4.
extern COMMONGROUND_API const int g_BankSaving_VIP_1;
extern COMMONGROUND_API const int g_BankSaving_VIP_2;
extern COMMONGROUND_API const int g_BankSaving_VIP_3;
extern COMMONGROUND_API const int g_BankSaving_VIP_4;
extern COMMONGROUND_API const int g_BankSaving_VIP_5;

// The top VIP level, and the date on which it ends, as zet::Time::convertFromString takes it.
extern COMMONGROUND_API const int g_VIPLevel_Max;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_VIPLevel_Max_Time;

// The highest price of buying energy.
extern COMMONGROUND_API const int g_EnergyPay_MaxPrice;
// Price on the big table, in diamonds.
extern COMMONGROUND_API const int G_BigTable_Diamond;
// Seconds of cool-down that one diamond cancels.
extern COMMONGROUND_API const int g_OneDiamond_CDTime;
// Gold top-ups that are free, without and with VIP.
extern COMMONGROUND_API const int g_MaxFreeAddGoldTimes_NoVIP;
extern COMMONGROUND_API const int g_MaxFreeAddGoldTimes_VIP;

// The word for what is paid for: diamonds, or a VIP tier.
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Diamond;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip1;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip2;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip3;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip4;

// The word for what pays: the television, the phone, a code that a phone scans.
extern COMMONGROUND_API const zet::String_T<wchar_t> g_DeviceType_TV;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_DeviceType_Mobile;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_DeviceType_QRCode;

// The word for a device of the zero-price purchase campaign, by brand.
extern COMMONGROUND_API const zet::String_T<wchar_t> g_LingYuanGouXiaomiRemote;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_LingYuanGouXiaomiBluetooth;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_LingYuanGouXiaomiSubController;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_LingYuanGouLetvCamera;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_LingYuanGouLetvRemote;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_LingYuanGouLetvBluetooth;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_LingYuanGouTCLCamera;

// Scrambles a value in memory, so that it is not found by its look, and gives it back. Both are the same operation
// with a key of this process alone: a scrambled value must not be saved or sent.
COMMONGROUND_API int g_ConfuseData(int value);
COMMONGROUND_API int g_UnConfuseData(int value);
