// Bytes of small records for the tests of the order machinery.
#pragma once

#include "packaging/cmd_packager.h"
#include "packaging/wire/schema.h"

#include <gtest/gtest.h>

#include <ostream>
#include <vector>

namespace test
{

using Bytes = std::vector<unsigned char>;

inline Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

inline Bytes number(int value)
{
    const unsigned bits = static_cast<unsigned>(value);
    return {static_cast<unsigned char>(bits >> 24), static_cast<unsigned char>(bits >> 16),
            static_cast<unsigned char>(bits >> 8), static_cast<unsigned char>(bits)};
}

template <class T>
Bytes written(const T& record)
{
    CCmdPackager pk;
    EXPECT_TRUE(record.Write(&pk));
    return Bytes(pk.GetBuffer(), pk.GetBuffer() + pk.GetDataSize());
}

// The result of Read and the read pointer afterwards.
struct Outcome
{
    bool m_Read;
    int m_Consumed;

    friend bool operator==(const Outcome&, const Outcome&) = default;
    friend std::ostream& operator<<(std::ostream& out, const Outcome& o)
    {
        return out << (o.m_Read ? "true" : "false") << " after " << o.m_Consumed;
    }
};

template <class T>
Outcome readInto(T& record, const Bytes& bytes)
{
    CCmdPackager pk;
    EXPECT_TRUE(pk.Write(bytes.data(), static_cast<int>(bytes.size())));
    const bool read = record.Read(&pk);
    return {read, pk.GetReadPointer()};
}

} // namespace test

// The declarations of a record other than its fields.
#define SMALL_RECORD                                                                                                   \
    bool Write(CCmdPackager* pk) const;                                                                                \
    bool Read(CCmdPackager* pk);                                                                                       \
    static const wire::Schema& Wire();
