// The dance-lesson service's records of its lobby, its lessons and their users.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

class COMMONGROUND_API MazurixValues
{
public:
    WIRE_INTERFACE_CMD

    unsigned short m_Word1 = 0;
    unsigned short m_Word2 = 0;
    unsigned short m_Word3 = 0;
    unsigned short m_Word4 = 0;
};

class COMMONGROUND_API MazurixLobbyInfo
{
public:
    WIRE_INTERFACE_CMD

    unsigned short m_Word1 = 0;
    zet::String_T<wchar_t> m_Text1;
    MazurixValues m_MazurixValues1;
    MazurixValues m_MazurixValues2;
};

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

class COMMONGROUND_API MazurixUserInfo
{
public:
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

class COMMONGROUND_API MazurixExportInfo
{
public:
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    unsigned short m_Word1 = 0;
    unsigned char m_Byte1 = 0;
    unsigned short m_Word2 = 0;
};
