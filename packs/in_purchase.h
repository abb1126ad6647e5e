// The messages of in-purchase: buying goods within a game, and the purchase codes called F-codes. All fields are texts
// except one number in the row of an F-code.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// One F-code, in InPurchasePack_GetFCodeList_Reply.
struct COMMONGROUND_API InPurchaseFCodeRow
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    int m_Value1 = 0;
};

// Request in CCmdInPurchasePackRequest: asks whether in-purchase is open. Answered by
// InPurchasePack_CheckIfOpenInPurchase_Reply.
struct COMMONGROUND_API InPurchasePack_CheckIfOpenInPurchase_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Reply in CCmdInPurchasePackReply to InPurchasePack_CheckIfOpenInPurchase_Request.
struct COMMONGROUND_API InPurchasePack_CheckIfOpenInPurchase_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Request in CCmdInPurchasePackRequest: saves the id of an order. Answered by InPurchasePack_SaveOrderId_Reply. The
// members are declared in another order than on the wire.
struct COMMONGROUND_API InPurchasePack_SaveOrderId_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
};

// Reply in CCmdInPurchasePackReply to InPurchasePack_SaveOrderId_Request.
struct COMMONGROUND_API InPurchasePack_SaveOrderId_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdInPurchasePackRequest: asks for the result of a payment. Answered by
// InPurchasePack_GetCheckResult_Reply.
struct COMMONGROUND_API InPurchasePack_GetCheckResult_Request final
{
    WIRE_INTERFACE_CMD_VIRTUAL

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdInPurchasePackReply to InPurchasePack_GetCheckResult_Request: the result of the payment.
struct COMMONGROUND_API InPurchasePack_GetCheckResult_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// Request in CCmdInPurchasePackRequest: tells the player of a successful purchase. The members are declared in another
// order than on the wire.
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

// Request in CCmdInPurchasePackRequest: checks an authorization code. Answered by
// InPurchasePack_CheckAuthorizationCode_Reply.
struct COMMONGROUND_API InPurchasePack_CheckAuthorizationCode_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdInPurchasePackReply to InPurchasePack_CheckAuthorizationCode_Request.
struct COMMONGROUND_API InPurchasePack_CheckAuthorizationCode_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdInPurchasePackRequest: creates and saves an F-code. Answered by
// InPurchasePack_CreateAndSaveFCode_Reply.
struct COMMONGROUND_API InPurchasePack_CreateAndSaveFCode_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};

// Reply in CCmdInPurchasePackReply to InPurchasePack_CreateAndSaveFCode_Request.
struct COMMONGROUND_API InPurchasePack_CreateAndSaveFCode_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
};

// Reply in CCmdInPurchasePackReply: the list of F-codes. It has no request message of its own. Read never fails, and a
// list without rows keeps the rows of the object.
struct COMMONGROUND_API InPurchasePack_GetFCodeList_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
    std::vector<InPurchaseFCodeRow> m_InPurchaseFCodeRows;
};

// Request in CCmdInPurchasePackRequest: uses an F-code for goods. Answered by InPurchasePack_UseFCode_Reply.
struct COMMONGROUND_API InPurchasePack_UseFCode_Request
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Reply in CCmdInPurchasePackReply to InPurchasePack_UseFCode_Request.
struct COMMONGROUND_API InPurchasePack_UseFCode_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};
