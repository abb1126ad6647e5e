#include "tests/support/payload_maker.h"

#include "tools/schema_walk.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace test
{

using nlohmann::ordered_json;
using wire::Field;

namespace
{

// The maximum for a member that gives the size of another.
constexpr int kMostSize = 9;

// Encodes random values in the order in which the walk requests them. Their JSON is not used.
class RandomValues
{
public:
    static constexpr bool kInMemory = false;

    explicit RandomValues(std::mt19937& random) : m_Random(random) {}

    ordered_json number(const Field& field, uintptr_t, const std::string& path)
    {
        if (field.most != 0)
        {
            const int size = upTo(std::min(field.most, kMostSize));
            count(size, path);
            return size;
        }
        const unsigned bits = field.extent != 0 ? static_cast<unsigned>(field.extent) : m_Random();
        put(field.size, field.isBool ? bits & 1 : bits);
        return nullptr;
    }
    ordered_json real(const Field&, uintptr_t, const std::string&)
    {
        char digits[64];
        // A multiple of a quarter has an exact text, so that it is written again unchanged.
        const int length =
            std::snprintf(digits, sizeof digits, "%f", (static_cast<int>(m_Random() % 100000) - 50000) / 4.0);
        put(1, static_cast<unsigned>(length));
        m_Made.m_Bytes.append(digits, static_cast<size_t>(length));
        return nullptr;
    }
    ordered_json text(const Field&, uintptr_t, const std::string& path)
    {
        // A text that is sent again is the same.
        const auto [sent, isNew] = m_Sent.try_emplace(path);
        if (isNew)
            sent->second = madeText();
        m_Made.m_Bytes += sent->second;
        return nullptr;
    }
    ordered_json raw(const Field&, uintptr_t, int size, const std::string&)
    {
        for (int i = 0; i < size; ++i)
            put(1, m_Random());
        return nullptr;
    }
    ordered_json block(const Field& field, uintptr_t at, const std::string& path)
    {
        const int size = upTo(20);
        count(size, path);
        return raw(field, at, size, path);
    }
    // At most one element for a map with keys of its own, which could collide or be reordered; none for a list that
    // reads into existing slots, since a new object has none.
    int count(const Field& list, const std::string& path)
    {
        const bool isKeyed = list.how.key == wire::Key::kMember || list.how.key == wire::Key::kTravels;
        return count(upTo(list.how.into == wire::Into::kSlots ? 0 : isKeyed ? 1 : 3), path);
    }
    int literal(int own, const std::string& path) { return count(own, path); }
    int sized(const Field&, int said) { return said; }

    MadePayload m_Made;

private:
    int count(int value, const std::string& path)
    {
        m_Made.m_Counts.push_back({m_Made.m_Bytes.size(), path});
        put(4, static_cast<unsigned>(value));
        return value;
    }
    void put(int size, unsigned bits)
    {
        for (int i = size - 1; i >= 0; --i)
            m_Made.m_Bytes += static_cast<char>(bits >> 8 * i);
    }
    std::string madeText()
    {
        const int length = upTo(12);
        const int units = length == 0 || sizeof(wchar_t) == 2 ? length : 2 * length + 2;
        std::string bytes(1, static_cast<char>(units));
        for (int i = 0; i < units; ++i)
        {
            const unsigned unit = i < length ? (i % 3 == 2 ? 0x4E00 + m_Random() % 100 : 'a' + m_Random() % 26) : 0;
            bytes += static_cast<char>(unit & 0xFF);
            bytes += static_cast<char>(unit >> 8);
        }
        return bytes;
    }
    int upTo(int most) { return static_cast<int>(m_Random() % static_cast<unsigned>(most + 1)); }

    std::mt19937& m_Random;
    std::map<std::string, std::string> m_Sent;
};

} // namespace

MadePayload PayloadMaker::make(const wire::Schema& schema)
{
    RandomValues values(m_Random);
    tools::SchemaWalk<RandomValues>(values).object(schema, 0, "");
    return std::move(values.m_Made);
}

} // namespace test
