#include "tests/support/payload_maker.h"

#include <cstdio>
#include <set>

namespace test
{

using wire::Field;
using wire::Kind;

namespace
{

bool hasWord(const Field& field, const std::string& word)
{
    return (' ' + field.words + ' ').find(' ' + word + ' ') != std::string::npos;
}

// Of a map at most one entry, which cannot collide or be reordered; of slots none, since a new object has none.
int mostElements(const Field& field)
{
    if (hasWord(field, "IntoExistingSlots"))
        return 0;
    return hasWord(field, "KeyedBy") || hasWord(field, "Pairs") ? 1 : 3;
}

} // namespace

MadePayload PayloadMaker::make(const wire::Schema& schema)
{
    m_Made = MadePayload();
    object(schema);
    return std::move(m_Made);
}

void PayloadMaker::object(const wire::Schema& schema)
{
    // Ints that give the number of later bytes or items, and members that are sent twice.
    std::map<size_t, int> sizes;
    for (const Field& field : schema.fields)
        if (field.kind == Kind::kSizedBytes || field.kind == Kind::kSizedItems)
            sizes[field.sizeOffset] = upTo(field.kind == Kind::kSizedItems ? field.extent : 9);
    std::map<size_t, int> counts;
    std::map<std::string, std::string> sent;

    for (const Field& field : schema.fields)
    {
        const size_t from = m_Made.m_Bytes.size();
        switch (field.kind)
        {
        case Kind::kCountOf:
            counts[field.offset] = upTo(mostElements(field));
            for (const Field& other : schema.fields)
                if (other.kind == Kind::kElementsOf && other.offset == field.offset)
                    counts[field.offset] = std::min(counts[field.offset], mostElements(other));
            count(counts[field.offset], field.name);
            break;
        case Kind::kElementsOf:
            elements(field, counts[field.offset]);
            break;
        case Kind::kColumns:
            for (int row = 0; row < counts[field.parts[0].offset]; ++row)
                for (const Field& column : field.parts)
                    value(column.parts[0]);
            break;
        case Kind::kInterleaved:
        {
            for (const int literal : field.literals)
                count(literal, "(table)");
            const bool flat = field.literals.size() == 1;
            for (int row = 0; row < field.literals[0]; ++row)
                for (int column = 0; column < (flat ? 1 : field.literals[1]); ++column)
                    for (const Field& table : field.parts)
                        if (flat || column < table.parts[0].extent)
                            value(flat ? table.parts[0] : table.parts[0].parts[0]);
            break;
        }
        case Kind::kSizedBytes:
            for (int i = 0; i < sizes[field.sizeOffset]; ++i)
                number(1, m_Random());
            break;
        case Kind::kSizedItems:
            for (int i = 0; i < sizes[field.sizeOffset]; ++i)
                value(field.parts[0]);
            break;
        default:
            if (field.kind == Kind::kInt && sizes.contains(field.offset))
                count(sizes[field.offset], field.name);
            else if (!field.name.empty() && sent.contains(field.name))
                m_Made.m_Bytes += sent[field.name];
            else
                value(field);
            break;
        }
        if (!field.name.empty() && field.kind == Kind::kText)
            sent[field.name] = m_Made.m_Bytes.substr(from);
    }
}

void PayloadMaker::value(const Field& field)
{
    switch (field.kind)
    {
    case Kind::kBool:
        return number(1, m_Random() & 1);
    case Kind::kChar:
    case Kind::kByte:
        return number(1, m_Random());
    case Kind::kShort:
    case Kind::kWord:
        return number(2, m_Random());
    case Kind::kInt:
    case Kind::kLong:
        return number(4, m_Random());
    case Kind::kVersion:
    case Kind::kLiteral:
        return number(field.kind == Kind::kVersion ? 2 : 4, static_cast<unsigned>(field.extent));
    case Kind::kFloat:
    {
        char digits[64];
        // A multiple of a quarter has an exact text, so that it is written again unchanged.
        const int length =
            std::snprintf(digits, sizeof digits, "%f", (static_cast<int>(m_Random() % 100000) - 50000) / 4.0);
        number(1, static_cast<unsigned>(length));
        m_Made.m_Bytes.append(digits, static_cast<size_t>(length));
        return;
    }
    case Kind::kText:
        return text();
    case Kind::kUuid:
    case Kind::kNode:
    case Kind::kBytes:
        for (int i = 0; i < (field.kind == Kind::kUuid ? 16 : field.kind == Kind::kNode ? 6 : field.extent); ++i)
            number(1, m_Random());
        return;
    case Kind::kBuffer:
    case Kind::kPayload:
    {
        const int size = upTo(20);
        count(size, field.name);
        for (int i = 0; i < size; ++i)
            number(1, m_Random());
        return;
    }
    case Kind::kRecord:
        return object(*field.record);
    case Kind::kArray:
        for (int i = 0; i < field.extent; ++i)
            value(field.parts[0]);
        return;
    case Kind::kPair:
        value(field.parts[0]);
        value(field.parts[1]);
        return;
    case Kind::kList:
    {
        const int size = upTo(mostElements(field));
        count(size, field.name);
        return elements(field, size);
    }
    default:
        return;
    }
}

void PayloadMaker::elements(const Field& field, int count)
{
    for (int i = 0; i < count; ++i)
    {
        if (hasWord(field, "Pairs"))
            value(field.parts[0]);
        value(field.parts.back());
    }
}

void PayloadMaker::number(int size, unsigned bits)
{
    for (int i = size - 1; i >= 0; --i)
        m_Made.m_Bytes += static_cast<char>(bits >> 8 * i);
}

void PayloadMaker::count(int value, const std::string& name)
{
    m_Made.m_Counts.push_back({m_Made.m_Bytes.size(), name});
    number(4, static_cast<unsigned>(value));
}

void PayloadMaker::text()
{
    const int length = upTo(12);
    const int units = length == 0 || sizeof(wchar_t) == 2 ? length : 2 * length + 2;
    number(1, static_cast<unsigned>(units));
    for (int i = 0; i < units; ++i)
    {
        const unsigned unit = i < length ? (i % 3 == 2 ? 0x4E00 + m_Random() % 100 : 'a' + m_Random() % 26) : 0;
        m_Made.m_Bytes += static_cast<char>(unit & 0xFF);
        m_Made.m_Bytes += static_cast<char>(unit >> 8);
    }
}

} // namespace test
