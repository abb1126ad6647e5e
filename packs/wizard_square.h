// The messages of the wizard game and of the world square, which start with the same login and logout.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

struct COMMONGROUND_API WizardPack_Login_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API WizardPack_Login_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API WizardPack_Logout_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API WizardPack_Logout_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Read appends to the numbers of the object.
struct COMMONGROUND_API WizardPack_GoWar_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    std::vector<int> m_Numbers;
};

struct COMMONGROUND_API WorldSquarePack_Login_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API WorldSquarePack_Login_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

struct COMMONGROUND_API WorldSquarePack_Logout_Request
{
    WIRE_INTERFACE_CMD
};

struct COMMONGROUND_API WorldSquarePack_Logout_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Sent both ways.
struct COMMONGROUND_API WorldSquarePack_PlayerInfo
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
};

// Sent both ways.
struct COMMONGROUND_API WorldSquarePack_TransmisData
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};
