// The order of a purchase, and the data that a phone needs to pay it.
// The payment services define the content of the texts (order numbers, products, channels, signatures).
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/payment.h"
#include "packaging/command_head.h"

// Client to platform server: orders a purchase. Answered by CCmdOrderReturn.
class COMMONGROUND_API CCmdOrderRequest : public CCmdPlatform
{
public:
    CCmdOrderRequest() : CCmdPlatform(command_id::CCmdOrderRequest) {}
    COMMAND_INTERFACE(CCmdOrderRequest)

    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    zet::String_T<wchar_t> m_Text8;
    zet::String_T<wchar_t> m_Text9;
    zet::String_T<wchar_t> m_Text10;
    zet::String_T<wchar_t> m_Text11;
    zet::String_T<wchar_t> m_Text12;
    zet::String_T<wchar_t> m_Text13;
};

// Answers CCmdOrderRequest: the order.
class COMMONGROUND_API CCmdOrderReturn : public CCmdPlatform
{
public:
    CCmdOrderReturn() : CCmdPlatform(command_id::CCmdOrderReturn) {}
    COMMAND_INTERFACE(CCmdOrderReturn)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value2 = 0;
    int m_Value3 = 0;
    int m_Value4 = 0;
    int m_Value5 = 0;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    zet::String_T<wchar_t> m_Text8;
    zet::String_T<wchar_t> m_Text9;
    zet::String_T<wchar_t> m_Text10;
    zet::String_T<wchar_t> m_Text11;
    zet::String_T<wchar_t> m_Text12;
};

// For a payment on a phone. Answered by CCmdPayOrderReply.
class COMMONGROUND_API CCmdPayOrderQuery : public CCmdPlatform
{
public:
    CCmdPayOrderQuery() : CCmdPlatform(command_id::CCmdPayOrderQuery) {}
    COMMAND_INTERFACE(CCmdPayOrderQuery)
};

// Answers CCmdPayOrderQuery.
class COMMONGROUND_API CCmdPayOrderReply : public CCmdPlatform
{
public:
    CCmdPayOrderReply() : CCmdPlatform(command_id::CCmdPayOrderReply) {}
    COMMAND_INTERFACE(CCmdPayOrderReply)

    int m_Value1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
};

// States a price, for a payment on a phone. It has no request.
class COMMONGROUND_API CCmdPayPrice : public CCmdPlatform
{
public:
    CCmdPayPrice() : CCmdPlatform(command_id::CCmdPayPrice) {}
    COMMAND_INTERFACE(CCmdPayPrice)

    int m_Value1 = 0;
};

// Asks for the pay token of a phone. Answered by CCmdReplayPaytoKen.
class COMMONGROUND_API CCmdRequestPaytoKen : public CCmdPlatform
{
public:
    CCmdRequestPaytoKen() : CCmdPlatform(command_id::CCmdRequestPaytoKen) {}
    COMMAND_INTERFACE(CCmdRequestPaytoKen)
};

// Answers CCmdRequestPaytoKen: the pay token.
class COMMONGROUND_API CCmdReplayPaytoKen : public CCmdPlatform
{
public:
    CCmdReplayPaytoKen() : CCmdPlatform(command_id::CCmdReplayPaytoKen) {}
    COMMAND_INTERFACE(CCmdReplayPaytoKen)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
};
