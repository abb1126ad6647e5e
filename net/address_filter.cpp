#include "net/address_filter.h"

#include "framework/string_helper.h"
#include "net/door/door.h"
#include "net/inner/peer_text.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string>

namespace zet
{

namespace
{

using inner::Endpoint;

bool isSameNetwork(const AddressFilter::Rule& a, const AddressFilter::Rule& b)
{
    return a.m_List == b.m_List && a.m_IsV4 == b.m_IsV4 &&
           std::memcmp(a.m_Address, b.m_Address, sizeof a.m_Address) == 0 &&
           std::memcmp(a.m_Mask, b.m_Mask, sizeof a.m_Mask) == 0;
}

// The number of leading bits that are set; -1 if a bit after them is set too.
int prefixOf(const unsigned char (&mask)[16])
{
    int bits = 0;
    while (bits < 128 && (mask[bits / 8] & (0x80 >> bits % 8)))
        ++bits;
    for (int i = bits; i < 128; ++i)
        if (mask[i / 8] & (0x80 >> i % 8))
            return -1;
    return bits;
}

} // namespace

void AddressFilter::add(List list, const unsigned char (&address)[4], const unsigned char (&mask)[4], bool isFromFile)
{
    Rule rule{};
    std::memcpy(rule.m_Address, Endpoint::ofV4(0, 0).m_Bytes, sizeof rule.m_Address);
    std::memcpy(rule.m_Address + 12, address, sizeof address);
    std::memset(rule.m_Mask, 0xFF, sizeof rule.m_Mask);
    std::memcpy(rule.m_Mask + 12, mask, sizeof mask);
    rule.m_IsV4 = true;
    rule.m_List = list;
    rule.m_IsFromFile = isFromFile;
    m_Rules.push_back(rule);
}

bool AddressFilter::add(List list, const in6_addr& address, int bits)
{
    if (bits < 0 || bits > 128)
        return false;
    add(list, Endpoint::ofV6(&address, 0, 0), bits);
    return true;
}

bool AddressFilter::add(List list, const wchar_t* subnet)
{
    const auto whole = StringHelper::wideToUtf8(subnet ? subnet : L"");
    std::string address = whole.getBuffer();
    int bits = -1;
    if (const size_t slash = address.find('/'); slash != std::string::npos)
    {
        const char* const digits = address.c_str() + slash + 1;
        const char* const end = address.c_str() + address.size();
        unsigned int number = 0;
        const auto [rest, fault] = std::from_chars(digits, end, number);
        if (fault != std::errc() || rest != end || end - digits > 3)
            return false;
        bits = static_cast<int>(number);
        address.resize(slash);
    }
    Endpoint network;
    if (!inner::Door::parse(address.c_str(), 0, network))
        return false;
    const int most = network.isV4() ? 32 : 128;
    if (bits > most)
        return false;
    add(list, network, 128 - most + (bits < 0 ? most : bits));
    return true;
}

bool AddressFilter::addSubnets(List list, const wchar_t* subnets)
{
    const size_t before = m_Rules.size();
    const wchar_t* begin = subnets;
    while (*begin)
    {
        if (*begin == L' ')
        {
            ++begin;
            continue;
        }
        const wchar_t* end = begin;
        while (*end && *end != L' ')
            ++end;
        if (!add(list, String_T<wchar_t>(begin, static_cast<int>(end - begin))))
        {
            m_Rules.erase(m_Rules.begin() + static_cast<std::ptrdiff_t>(before), m_Rules.end());
            return false;
        }
        begin = end;
    }
    return true;
}

void AddressFilter::add(List list, const Endpoint& network, int bits)
{
    Rule rule{};
    for (int i = 0; i < 16; ++i)
    {
        rule.m_Address[i] = network.m_Bytes[i];
        rule.m_Mask[i] = static_cast<unsigned char>(0xFF00 >> std::clamp(bits - 8 * i, 0, 8));
    }
    rule.m_IsV4 = network.isV4() && bits >= 96;
    rule.m_List = list;
    m_Rules.push_back(rule);
}

void AddressFilter::removeFromFiles()
{
    std::erase_if(m_Rules, [](const Rule& rule) { return rule.m_IsFromFile; });
}

void AddressFilter::takeFileHits(const AddressFilter& other)
{
    for (Rule& rule : m_Rules)
    {
        if (!rule.m_IsFromFile)
            continue;
        const auto isSame = [&](const Rule& each) { return each.m_IsFromFile && isSameNetwork(rule, each); };
        const auto same = std::find_if(other.m_Rules.begin(), other.m_Rules.end(), isSame);
        if (same != other.m_Rules.end())
            rule.m_Hits = same->m_Hits;
    }
}

bool AddressFilter::contains(List list, const Endpoint& address)
{
    const auto matches = [&](const Rule& rule)
    {
        // ::/0 contains the mapped addresses too, but is a rule of IPv6.
        if (rule.m_List != list || rule.m_IsV4 != address.isV4())
            return false;
        for (size_t i = 0; i < sizeof rule.m_Mask; ++i)
            if ((address.m_Bytes[i] ^ rule.m_Address[i]) & rule.m_Mask[i])
                return false;
        return true;
    };
    const auto found = std::find_if(m_Rules.begin(), m_Rules.end(), matches);
    if (found == m_Rules.end())
        return false;
    ++found->m_Hits;
    return true;
}

String_T<wchar_t> getText(const AddressFilter::Rule& rule)
{
    const auto textOf = [&](const unsigned char(&bytes)[16])
    {
        Endpoint address = Endpoint::ofV6(bytes, 0, 0);
        if (rule.m_IsV4)
        {
            unsigned int v4;
            std::memcpy(&v4, bytes + 12, sizeof v4);
            address = Endpoint::ofV4(v4, 0);
        }
        return std::wstring(inner::hostText(address).getBuffer());
    };
    const int bits = prefixOf(rule.m_Mask);
    const std::wstring mask =
        bits < 0 ? L" & " + textOf(rule.m_Mask) : L'/' + std::to_wstring(rule.m_IsV4 ? bits - 96 : bits);
    return (textOf(rule.m_Address) + mask).c_str();
}

} // namespace zet
