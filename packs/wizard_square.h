// The messages of the wizard game and of the world square, which start with the same login and logout.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <vector>

// Request in CCmdWizardPackRequest: a player logs in; has no bytes. Answered by WizardPack_Login_Reply.
struct COMMONGROUND_API WizardPack_Login_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdWizardPackReply to WizardPack_Login_Request: a result text.
struct COMMONGROUND_API WizardPack_Login_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdWizardPackRequest: a player logs out; has no bytes. Answered by WizardPack_Logout_Reply.
struct COMMONGROUND_API WizardPack_Logout_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdWizardPackReply to WizardPack_Logout_Request: a result text.
struct COMMONGROUND_API WizardPack_Logout_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdWizardPackRequest: a number and a list of numbers. Read appends to the numbers of the object and stops
// at the first that cannot be read.
struct COMMONGROUND_API WizardPack_GoWar_Request
{
    WIRE_INTERFACE_CMD

    int m_Value1 = 0;
    std::vector<int> m_Numbers;
};

// Request in CCmdWorldSquarePackRequest: a player logs in; has no bytes. Answered by WorldSquarePack_Login_Reply.
struct COMMONGROUND_API WorldSquarePack_Login_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdWorldSquarePackReply to WorldSquarePack_Login_Request: a result text.
struct COMMONGROUND_API WorldSquarePack_Login_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// Request in CCmdWorldSquarePackRequest: a player logs out; has no bytes. Answered by WorldSquarePack_Logout_Reply.
struct COMMONGROUND_API WorldSquarePack_Logout_Request
{
    WIRE_INTERFACE_CMD
};

// Reply in CCmdWorldSquarePackReply to WorldSquarePack_Logout_Request: a result text.
struct COMMONGROUND_API WorldSquarePack_Logout_Reply
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Msg;
};

// In CCmdWorldSquarePackRequest and CCmdWorldSquarePackReply, either way: information about a player.
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

// In CCmdWorldSquarePackRequest and CCmdWorldSquarePackReply, either way: transmitted data.
struct COMMONGROUND_API WorldSquarePack_TransmisData
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
};
