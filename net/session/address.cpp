#include "net/session/address.h"

#include "framework/format.h"
#include "framework/string_helper.h"
#include "net/door/door.h"

namespace zet
{

namespace
{

// An IPv6 address, perhaps with the name of an interface, which need not exist here.
bool isIPv6(const String_T<wchar_t>& host)
{
    const int percent = host.find(L'%', 0);
    inner::Endpoint parsed;
    return percent != 0 && percent != host.getLength() - 1 &&
           inner::Door::parse(StringHelper::wideToUtf8(percent < 0 ? host : host.getSubString(0, percent)), 0,
                              parsed) &&
           host.find(L':', 0) >= 0;
}

} // namespace

bool NetAddress::convertFromString(const wchar_t* text)
{
    const String_T<wchar_t> whole = text;
    const bool isBracketed = whole.find(L'[', 0) == 0;
    // Of the host, without brackets.
    const int begin = isBracketed ? 1 : 0;
    const int end = whole.find(isBracketed ? L']' : L':', 0);
    const int colon = isBracketed ? end + 1 : end;
    const int digits = whole.getLength() - colon - 1;
    if (end <= begin || digits < 1 || digits > 5 || whole[colon] != L':')
        return false;
    for (int i = begin; i < end; ++i)
        if (whole[i] <= L' ' || whole[i] == 0x7F)
            return false;
    const String_T<wchar_t> host = whole.getSubString(begin, end - begin);
    if (isBracketed && !isIPv6(host))
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
    *this = NetAddress(host, static_cast<unsigned short>(port));
    return true;
}

String_T<wchar_t> NetAddress::convertToString() const
{
    const bool needsBrackets = m_Host.find(L':', 0) >= 0 && m_Host.find(L'[', 0) != 0;
    return formatText(needsBrackets ? L"[%s]:%d" : L"%s:%d", m_Host, m_Port);
}

} // namespace zet
