// The messages of the changing room that use the data packager: wearables in ten lists, and six maps. Read tests the
// fields but not the lists and maps after them: a message that ends there is valid, with default-constructed elements
// up to each count that was present.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <map>
#include <vector>

// One wearable, in CmdAvatarLoadDataReply.
class COMMONGROUND_API CmdAvatarItem
{
public:
    WIRE_INTERFACE_DATA

    int m_ItemId = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    zet::String_T<wchar_t> m_Text7;
    int m_Value1 = 0;
    int m_Value2 = 0;
    int m_Value3 = 0;
};

// Request in CCmdVoidDataRequest: loads a player's wearables. Answered by CmdAvatarLoadDataReply.
class COMMONGROUND_API CmdAvatarLoadDataRequest
{
public:
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
};

// Reply in CCmdVoidDataReply to CmdAvatarLoadDataRequest: ten lists of wearables, six maps and what the player owns.
// The hosts define which list holds which class of wearable.
class COMMONGROUND_API CmdAvatarLoadDataReply
{
public:
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    // The result text.
    zet::String_T<wchar_t> m_Msg;
    std::vector<CmdAvatarItem> m_CmdAvatarItems1;
    std::vector<CmdAvatarItem> m_CmdAvatarItems2;
    std::vector<CmdAvatarItem> m_CmdAvatarItems3;
    std::vector<CmdAvatarItem> m_CmdAvatarItems4;
    std::vector<CmdAvatarItem> m_CmdAvatarItems5;
    std::vector<CmdAvatarItem> m_CmdAvatarItems6;
    std::vector<CmdAvatarItem> m_CmdAvatarItems7;
    std::vector<CmdAvatarItem> m_CmdAvatarItems8;
    std::vector<CmdAvatarItem> m_CmdAvatarItems9;
    std::vector<CmdAvatarItem> m_CmdAvatarItems10;
    std::map<int, int> m_Map1;
    std::map<int, int> m_Map2;
    std::map<int, int> m_Map3;
    std::map<int, int> m_Map4;
    std::map<int, int> m_Map5;
    std::map<int, int> m_Map6;
    std::vector<int> m_Owned;
};

// Request in CCmdVoidDataRequest: saves the six maps. Answered by CmdAvatarSaveDataReply.
class COMMONGROUND_API CmdAvatarSaveDataRequest
{
public:
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    std::map<int, int> m_Map1;
    std::map<int, int> m_Map2;
    std::map<int, int> m_Map3;
    std::map<int, int> m_Map4;
    std::map<int, int> m_Map5;
    std::map<int, int> m_Map6;
};

// Reply in CCmdVoidDataReply to CmdAvatarSaveDataRequest.
class COMMONGROUND_API CmdAvatarSaveDataReply
{
public:
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    // The result text.
    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdVoidDataRequest: buys wearables. Answered by CmdAvatarBuyDataReply.
class COMMONGROUND_API CmdAvatarBuyDataRequest
{
public:
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    std::vector<int> m_Items;
};

// Reply in CCmdVoidDataReply to CmdAvatarBuyDataRequest.
class COMMONGROUND_API CmdAvatarBuyDataReply
{
public:
    WIRE_INTERFACE_DATA

    int m_Value1 = 0;
    int m_Value2 = 0;
    // The result text.
    zet::String_T<wchar_t> m_Msg;
    std::vector<int> m_Items;
};
