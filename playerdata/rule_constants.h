// The rules of the platform: costs, limits and allowances shared by the client and all servers.
//
// The values are compiled into the library, not into the hosts: a change here changes the rules of all hosts. The
// library itself does not use the numbers. Everything is read-only from load to unload, for any thread. The texts are
// built when the library is loaded: static initialisers of a host must not use them earlier.
#pragma once

#include "framework/export.h"
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

// Price of unlocking a training game; of a rush stage: lowest, highest, and step.
extern COMMONGROUND_API const int g_UnlockTrainPrice;
extern COMMONGROUND_API const int g_UnlockRushPriceMin;
extern COMMONGROUND_API const int g_UnlockRushPriceMax;
extern COMMONGROUND_API const int g_UnlockRushPriceDiff;

// Free plays, for players without (0) and with (1) VIP.
extern COMMONGROUND_API const int g_TrainFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_TrainFreeTimes_VIP_1;
extern COMMONGROUND_API const int g_RushFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_RushFreeTimes_VIP_1;
extern COMMONGROUND_API const int g_MusicFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_MusicFreeTimes_VIP_1;
extern COMMONGROUND_API const int g_BrainFreeTimes_VIP_0;
extern COMMONGROUND_API const int g_BrainFreeTimes_VIP_1;

// The maximum energy of a player, without and with VIP.
extern COMMONGROUND_API const int g_EnergyMax_VIP_0;
extern COMMONGROUND_API const int g_EnergyMax_VIP_1;
// Seconds in which energy refills, by VIP level. The values are equal, but the names stay separate.
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_0;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_1;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_2;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_3;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_4;
extern COMMONGROUND_API const int g_EnergyFreeTime_VIP_5;

// The bank's limit by VIP level; no bank at level 0, effectively no limit from level 4.
extern COMMONGROUND_API const int g_BankSaving_VIP_1;
extern COMMONGROUND_API const int g_BankSaving_VIP_2;
extern COMMONGROUND_API const int g_BankSaving_VIP_3;
extern COMMONGROUND_API const int g_BankSaving_VIP_4;
extern COMMONGROUND_API const int g_BankSaving_VIP_5;

// The top VIP level, and its end date, for zet::Time::convertFromString.
extern COMMONGROUND_API const int g_VIPLevel_Max;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_VIPLevel_Max_Time;

// The highest price of buying energy.
extern COMMONGROUND_API const int g_EnergyPay_MaxPrice;
// Price on the big table, in diamonds.
extern COMMONGROUND_API const int G_BigTable_Diamond;
// Seconds of cool-down cancelled by one diamond.
extern COMMONGROUND_API const int g_OneDiamond_CDTime;
// Free gold top-ups, without and with VIP.
extern COMMONGROUND_API const int g_MaxFreeAddGoldTimes_NoVIP;
extern COMMONGROUND_API const int g_MaxFreeAddGoldTimes_VIP;

// The word for the product: diamonds, or a VIP tier.
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Diamond;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip1;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip2;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip3;
extern COMMONGROUND_API const zet::String_T<wchar_t> g_PayType_Vip4;

// The word for the paying device: the television, the phone, a code scanned by a phone.
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

// Scrambles a value in memory, so that a search does not find it, and restores it. Both are the same operation with a
// key of this process: a scrambled value must not be saved or sent.
COMMONGROUND_API int g_ConfuseData(int value);
COMMONGROUND_API int g_UnConfuseData(int value);
