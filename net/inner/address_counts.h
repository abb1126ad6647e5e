// The number of connections of a port from each address and from each subnet.
#pragma once

#include "framework/export.h"
#include "net/door/endpoint.h"

#include <array>
#include <functional>
#include <string_view>
#include <unordered_map>

namespace zet
{
struct NetLimits;
}

namespace zet::inner
{

class COMMONGROUND_API AddressCounts
{
public:
    // Whether the limits allow one more connection from this address.
    bool hasSpace(const Endpoint& from, const NetLimits& limits) const;
    // Whether another connection from this address is below the limit of its address.
    bool hasSpaceForAddress(const Endpoint& from, const NetLimits& limits) const;
    // If it throws std::bad_alloc, nothing is counted.
    void add(const Endpoint& from);
    void remove(const Endpoint& from);
    void clear();

private:
    using Key = std::array<unsigned char, sizeof Endpoint::m_Bytes>;
    struct Hash
    {
        size_t operator()(const Key& key) const
        {
            return std::hash<std::string_view>()({reinterpret_cast<const char*>(key.data()), key.size()});
        }
    };
    using Counts = std::unordered_map<Key, int, Hash>;

    static Key keyOf(const Endpoint& from, int bits);
    static Key addressOf(const Endpoint& from);
    static Key subnetOf(const Endpoint& from);
    static bool isBelow(const Counts& counts, const Key& key, int limit);
    static void takeOne(Counts& counts, const Key& key);

    Counts m_Addresses;
    Counts m_Subnets;
};

} // namespace zet::inner
