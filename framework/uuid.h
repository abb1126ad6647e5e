// Identifiers: 16 raw bytes that identify a server, a client or an object. All zero means none.
#pragma once

#include "framework/export.h"
#include "framework/string.h"

#include <cstdint>
#include <cstring>

namespace zet
{

// The last six bytes of an identifier, as three 16-bit units; the key of the server dictionaries.
struct COMMONGROUND_API uuid_node_t
{
    unsigned short m_Node[3] = {0, 0, 0};

    // Orders by the three units, as numbers: negative, zero or positive.
    int compare(const uuid_node_t& other) const;
    // Twelve lower-case hexadecimal digits: the six bytes in memory order.
    String_T<wchar_t> convertToString() const;

    // Comparisons by the three units.
    friend bool operator==(const uuid_node_t& a, const uuid_node_t& b) { return std::memcmp(&a, &b, sizeof a) == 0; }
    friend bool operator<(const uuid_node_t& a, const uuid_node_t& b) { return a.compare(b) < 0; }
};
static_assert(sizeof(uuid_node_t) == 6);

// Copied, compared and sent as its 16 bytes in memory order. The members have no meaning as numbers.
struct COMMONGROUND_API Uuid
{
    unsigned int m_Data1 = 0;
    unsigned int m_Data2 = 0;
    unsigned short m_Data3 = 0;
    uuid_node_t m_Node;

    // Whether all bytes are zero.
    bool isNull() const
    {
        // Two numbers: each command that is sent asks for two identifiers.
        std::uint64_t first;
        std::uint64_t second;
        std::memcpy(&first, this, sizeof first);
        std::memcpy(&second, reinterpret_cast<const unsigned char*>(this) + sizeof first, sizeof second);
        return (first | second) == 0;
    }

    // Comparisons by the bytes in memory order.
    friend bool operator==(const Uuid& a, const Uuid& b) { return std::memcmp(&a, &b, sizeof a) == 0; }
    friend bool operator<(const Uuid& a, const Uuid& b);
};
static_assert(sizeof(Uuid) == 16);

// Fills id with a new random value; always returns 0. Any thread.
COMMONGROUND_API int uuid_create(Uuid& id);
// Orders by the bytes in memory order: negative, zero or positive.
COMMONGROUND_API int uuid_compare(const Uuid& a, const Uuid& b);

// By the bytes in memory order, as uuid_compare().
inline bool operator<(const Uuid& a, const Uuid& b)
{
    return uuid_compare(a, b) < 0;
}

} // namespace zet
