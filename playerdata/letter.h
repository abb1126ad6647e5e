// A letter of the mail.
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

// A letter of the mail system. Data only.
class COMMONGROUND_API CLetter
{
public:
    CLetter() = default;
    CLetter(const CLetter&) = default;
    CLetter& operator=(const CLetter&) = default;

    WIRE_INTERFACE_CMD_VIRTUAL
    virtual ~CLetter();

    // -1 marks a letter that has no id yet.
    int m_LetterId = -1;
    int m_LetterType = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
    zet::String_T<wchar_t> m_Text4;
    zet::String_T<wchar_t> m_Text5;
    zet::String_T<wchar_t> m_Text6;
    bool m_Read = false;
};
