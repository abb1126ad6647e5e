// What client and platform agree on beside the commands: the meanings of their numbers and texts. The commands only
// carry them.
#pragma once

#include "framework/string.h"

namespace arena::protocol
{

// m_Value1 of CCmdLoginFail, CCmdBindPhoneFail, CCmdFindPasswordFail, CCmdUpdatePasswordFail, CCmdSwitchAccountFail and
// of the replies that have a number for the result. The text beside it says the same in words.
enum Result : int
{
    kDone = 0,
    kUnknownAccount = 1,
    kWrongPassword = 2,
    // The platform has too much to do, or the connection waits for another login.
    kBusy = 3,
    kBadName = 4,
    kTaken = 5,
    kWrongCode = 6,
    kNotLoggedIn = 7,
    // The change was not saved: another platform was first, or the database does not answer. Ask again.
    kNotSaved = 8,
    kNotAllowed = 9,
    kUnknownThing = 10,
    kTooPoor = 11,
    kLocked = 12,
    kCoolingDown = 13,
    kTooTired = 14,
    kAlreadyDone = 15
};

// CCmdBaseLogin and its variants: the indices of m_Texts. CCmdLogin has the same in m_Text1 to m_Text5.
enum LoginText : int
{
    kLoginName = 0,
    kLoginPassword = 1,
    // The device, or of CCmdMacLogin its hardware address.
    kLoginDevice = 2,
    kLoginVersion = 3,
    kLoginChannel = 4
};

// CCmdLoginStateReply.
enum LoginState : int
{
    kOut = 0,
    kIn = 1
};

// CCmdCurrencyQuery, CCmdCurrencyAdd, CmdUpdateGoldRequest and CmdUpdateDiamondRequest.
enum Currency : int
{
    kGold = 0,
    kDiamonds = 1
};

// CCmdEnergyRequest.
enum EnergyAction : int
{
    kAskEnergy = 0,
    kBuyEnergy = 1
};

// CCmdMaintainRequest.
enum MaintainAction : int
{
    kShowAccount = 0,
    kKickOut = 1
};

// Stands for the code of a text message to the phone: its last four digits. False security on purpose: a real platform
// sends a random code through an operator.
inline zet::String_T<wchar_t> getPhoneCode(const zet::String_T<wchar_t>& phone)
{
    return phone.getSubString(phone.getLength() - 4, 4);
}

// Stands for the signature of an outside account service about one of its accounts.
inline zet::String_T<wchar_t> getOutsideToken(const zet::String_T<wchar_t>& account)
{
    return zet::String_T<wchar_t>(L"token of ") + account;
}

} // namespace arena::protocol
