// The messages of the travel feature: load, save, and the unlocking of an attraction.
// A request contains the record that it changes, and the reply returns it: the server keeps no state between two calls.
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/travel_data.h"

class CCmdPackager;
namespace wire
{
struct Schema;
}

struct COMMONGROUND_API TravelWorldPack_LoadData_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    AccountData m_Account;
};

struct COMMONGROUND_API TravelWorldPack_LoadData_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
    AccountTravelData m_TravelData;
};

struct COMMONGROUND_API TravelWorldPack_SaveData_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    AccountTravelData m_TravelData;
    AccountGlobalData m_GlobalData;
};

struct COMMONGROUND_API TravelWorldPack_SaveData_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API TravelWorldPack_AttractUnLock_Request
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    int m_AttractId = -1;
    int m_Value1 = 0;
    AccountTravelData m_TravelData;
};

struct COMMONGROUND_API TravelWorldPack_AttractUnLock_Reply
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();

    zet::String_T<wchar_t> m_Msg;
    AccountTravelData m_TravelData;
};
