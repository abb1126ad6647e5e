// The messages of in-purchase: buying goods within a game, and the purchase codes called F-codes. All fields are texts
// except one number in the row of an F-code.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// One F-code of a list.
struct COMMONGROUND_API InPurchaseFCodeRow
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    int m_Value1 = 0;
};

struct COMMONGROUND_API InPurchasePack_CheckIfOpenInPurchase_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

struct COMMONGROUND_API InPurchasePack_CheckIfOpenInPurchase_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// The members lie in another order than they travel in.
struct COMMONGROUND_API InPurchasePack_SaveOrderId_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
};

struct COMMONGROUND_API InPurchasePack_SaveOrderId_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Requests the result of a payment.
struct COMMONGROUND_API InPurchasePack_GetCheckResult_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API InPurchasePack_GetCheckResult_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// Notifies the player of a successful purchase. The members are declared in another order than on the wire.
struct COMMONGROUND_API InPurchasePack_SendBuySuccessMessage_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

struct COMMONGROUND_API InPurchasePack_CheckAuthorizationCode_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API InPurchasePack_CheckAuthorizationCode_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API InPurchasePack_CreateAndSaveFCode_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

struct COMMONGROUND_API InPurchasePack_CreateAndSaveFCode_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// Read never fails, and a list without rows keeps the rows of the object.
struct COMMONGROUND_API InPurchasePack_GetFCodeList_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::vector<InPurchaseFCodeRow> m_InPurchaseFCodeRows;
};

struct COMMONGROUND_API InPurchasePack_UseFCode_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

struct COMMONGROUND_API InPurchasePack_UseFCode_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};
