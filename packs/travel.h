// The messages of the travel feature: load, save, and the unlocking of an attraction.
// A request contains the record that it changes, and the reply returns it: the server keeps no state between two calls.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"
#include "playerdata/account_core.h"
#include "playerdata/account_global.h"
#include "playerdata/travel_data.h"

// Request in CCmdTravelWorldPackRequest: loads a player's travel record. Answered by TravelWorldPack_LoadData_Reply.
struct COMMONGROUND_API TravelWorldPack_LoadData_Request
{
    WIRE_INTERFACE_CMD

    AccountData m_Account;
};

// Reply in CCmdTravelWorldPackReply to TravelWorldPack_LoadData_Request: the record.
struct COMMONGROUND_API TravelWorldPack_LoadData_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountTravelData m_TravelData;
};

// Request in CCmdTravelWorldPackRequest: saves the travel record. Answered by TravelWorldPack_SaveData_Reply.
struct COMMONGROUND_API TravelWorldPack_SaveData_Request
{
    WIRE_INTERFACE_CMD

    AccountTravelData m_TravelData;
    AccountGlobalData m_GlobalData;
};

// Reply in CCmdTravelWorldPackReply to TravelWorldPack_SaveData_Request: a result text only.
struct COMMONGROUND_API TravelWorldPack_SaveData_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdTravelWorldPackRequest: pays to unlock an attraction, with the whole record. Answered by
// TravelWorldPack_AttractUnLock_Reply.
struct COMMONGROUND_API TravelWorldPack_AttractUnLock_Request
{
    WIRE_INTERFACE_CMD

    // The attraction; -1 for none.
    int m_AttractId = -1;
    int m_Value1 = 0;
    AccountTravelData m_TravelData;
};

// Reply in CCmdTravelWorldPackReply to TravelWorldPack_AttractUnLock_Request: the whole changed record.
struct COMMONGROUND_API TravelWorldPack_AttractUnLock_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    AccountTravelData m_TravelData;
};
