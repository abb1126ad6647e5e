#include "net/inner/address_counts.h"

#include "net/limits.h"

#include <cstring>

namespace zet::inner
{

AddressCounts::Key AddressCounts::keyOf(const Endpoint& from, int bits)
{
    Key key{};
    std::memcpy(key.data(), from.m_Bytes, static_cast<size_t>(bits / 8));
    return key;
}

// An IPv6 peer can usually use any address of its network of 64 bits.
AddressCounts::Key AddressCounts::addressOf(const Endpoint& from)
{
    return keyOf(from, from.isV4() ? 128 : 64);
}

// The first three bytes of an IPv4 address; the 48 bits of an IPv6 site.
AddressCounts::Key AddressCounts::subnetOf(const Endpoint& from)
{
    return keyOf(from, from.isV4() ? 120 : 48);
}

bool AddressCounts::isBelow(const Counts& counts, const Key& key, int limit)
{
    if (limit <= 0)
        return true;
    const auto found = counts.find(key);
    return found == counts.end() || found->second < limit;
}

void AddressCounts::takeOne(Counts& counts, const Key& key)
{
    const auto found = counts.find(key);
    if (found != counts.end() && --found->second <= 0)
        counts.erase(found);
}

bool AddressCounts::hasSpace(const Endpoint& from, const NetLimits& limits) const
{
    return hasSpaceForAddress(from, limits) && isBelow(m_Subnets, subnetOf(from), limits.m_ConnectionsPerSubnet);
}

bool AddressCounts::hasSpaceForAddress(const Endpoint& from, const NetLimits& limits) const
{
    return isBelow(m_Addresses, addressOf(from), limits.m_ConnectionsPerAddress);
}

void AddressCounts::add(const Endpoint& from)
{
    // Make both entries, which may throw, before the first count changes.
    int& ofAddress = m_Addresses[addressOf(from)];
    int& ofSubnet = m_Subnets[subnetOf(from)];
    ++ofAddress;
    ++ofSubnet;
}

void AddressCounts::remove(const Endpoint& from)
{
    takeOne(m_Addresses, addressOf(from));
    takeOne(m_Subnets, subnetOf(from));
}

void AddressCounts::clear()
{
    m_Addresses.clear();
    m_Subnets.clear();
}

} // namespace zet::inner
