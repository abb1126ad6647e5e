#include "net/session/address.h"

#include "framework/format.h"

namespace zet
{

bool NetAddress::convertFromString(const wchar_t* text)
{
    const String_T<wchar_t> whole = text;
    const int colon = whole.find(L':', 0);
    const int digits = whole.getLength() - colon - 1;
    if (colon <= 0 || digits < 1 || digits > 5)
        return false;
    for (int i = 0; i < colon; ++i)
        if (whole[i] <= L' ' || whole[i] == 0x7F)
            return false;
    unsigned int port = 0;
    for (int i = colon + 1; i < whole.getLength(); ++i)
    {
        if (whole[i] < L'0' || whole[i] > L'9')
            return false;
        port = port * 10 + static_cast<unsigned int>(whole[i] - L'0');
    }
    if (port > 0xFFFF)
        return false;
    *this = NetAddress(whole.getSubString(0, colon), static_cast<unsigned short>(port));
    return true;
}

String_T<wchar_t> NetAddress::convertToString() const
{
    return formatText(L"%s:%d", m_Host, m_Port);
}

} // namespace zet
