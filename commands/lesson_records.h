// The dance-lesson service's records of its lobby, its lessons and their users.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// Four values, which the lesson service defines.
class COMMONGROUND_API MazurixValues
{
public:
    WIRE_INTERFACE_CMD

    unsigned short m_Word1 = 0;
    unsigned short m_Word2 = 0;
    unsigned short m_Word3 = 0;
    unsigned short m_Word4 = 0;
};

// The lobby, in CCmdMazurixEnterLobbyReply.
class COMMONGROUND_API MazurixLobbyInfo
{
public:
    WIRE_INTERFACE_CMD

    unsigned short m_Word1 = 0;
    zet::String_T<wchar_t> m_Text1;
    MazurixValues m_MazurixValues1;
    MazurixValues m_MazurixValues2;
};

// A lesson, in CCmdMazurixGetLessonsReply and CCmdMazurixSyncLessonsRequest.
class COMMONGROUND_API MazurixLessonInfo
{
public:
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    unsigned short m_Word1 = 0;
};

// A user, in CCmdMazurixOnUsersEnterLessonNotify and CCmdMazurixOnLessonStartedNotify.
class COMMONGROUND_API MazurixUserInfo
{
public:
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// The content of CCmdMazurixOnDataExportedNotify.
class COMMONGROUND_API MazurixExportInfo
{
public:
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    unsigned short m_Word1 = 0;
    unsigned char m_Byte1 = 0;
    unsigned short m_Word2 = 0;
};
