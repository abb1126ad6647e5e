// The addresses that may connect to a listening TCP port.
#pragma once

#include "framework/string.h"

#include <vector>

struct in6_addr;

namespace zet
{

namespace inner
{
struct Endpoint;
} // namespace inner

// A list of networks that are rejected and a list of networks that are permitted. What the lists decide is said at
// TcpServer::permission() and TcpServer::permissionIPv6(). Each rule counts its hits. A plain value: a host may fill
// one on any thread and pass it to TcpServer::setAddressFilter(), which replaces all rules of a port at once.
class COMMONGROUND_API AddressFilter
{
public:
    enum List
    {
        kRejected,
        kPermitted
    };

    // One network of a list.
    struct Rule
    {
        // IPv6 in network order. An IPv4 address is the last four bytes, after ten bytes of 0 and two of 0xFF, whose
        // bits are all set in the mask.
        unsigned char m_Address[16];
        unsigned char m_Mask[16];
        bool m_IsV4;
        List m_List;
        // Read from a file, so that reading the files again replaces it.
        bool m_IsFromFile;
        // Addresses that asked for permission and for which this was the first rule of its list that contains them. For
        // an IPv4 address the permitted list is searched only if the other one contains the address.
        unsigned long long m_Hits;
    };

    // A network and a mask by four bytes each, first number first; an address is in the network when it equals it in
    // all bits of the mask. This call and the next two throw std::bad_alloc and add nothing then.
    void add(List list, const unsigned char (&address)[4], const unsigned char (&mask)[4], bool isFromFile = false);
    // A network of IPv6 and the number of bits, 0 to 128, in which an address in it equals it; false, and nothing
    // added, for any other number. A network of mapped IPv4 addresses (::ffff:0:0/96 and longer) is a rule of IPv4.
    bool add(List list, const in6_addr& address, int bits);
    // A subnet of either family as text: "2001:db8::/32", "10.0.0.0/8", or an address alone for itself. False, and
    // nothing added, for any other text.
    bool add(List list, const wchar_t* subnet);
    // Any number of such subnets with blanks between them. False, and nothing added, if one is not valid.
    bool addSubnets(List list, const wchar_t* subnets);

    // Removes the rules that were read from files.
    void removeFromFiles();
    // Gives each rule that was read from a file the hits of an equal one that the other filter has from a file.
    void takeFileHits(const AddressFilter& other);

    // In the order in which they were added.
    const std::vector<Rule>& getRules() const { return m_Rules; }

private:
    friend class TcpServer;

    // Whether the list contains the address. Counts the hit.
    bool contains(List list, const inner::Endpoint& address);
    void add(List list, const inner::Endpoint& network, int bits);

    std::vector<Rule> m_Rules;
};

// "10.0.0.0/8", "2001:db8::/32"; with a mask that is no prefix "10.0.0.1 & 255.0.0.255".
COMMONGROUND_API String_T<wchar_t> getText(const AddressFilter::Rule& rule);

} // namespace zet
