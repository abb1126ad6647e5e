// Turns an order into a schema, on a default-made object: a member's offset is its address less the object's.
#pragma once

#include "packaging/wire/visit.h"

#include <memory>
#include <string>
#include <string_view>

namespace wire
{

// The members of one statement, "r.m_A, r.m_B[2]", one at a time and without the "r.".
class COMMONGROUND_API Names
{
public:
    explicit Names(const char* list) : m_Left(list) {}
    std::string next();

private:
    std::string_view m_Left;
};

// The words of a set of quirks, parted by spaces.
COMMONGROUND_API std::string wordsOf(unsigned flags);

template <class T>
constexpr Kind kindOf()
{
    if constexpr (std::is_same_v<T, bool>)
        return Kind::kBool;
    else if constexpr (std::is_same_v<T, char>)
        return Kind::kChar;
    else if constexpr (std::is_same_v<T, unsigned char>)
        return Kind::kByte;
    else if constexpr (std::is_same_v<T, short>)
        return Kind::kShort;
    else if constexpr (std::is_same_v<T, unsigned short>)
        return Kind::kWord;
    else if constexpr (std::is_same_v<T, int>)
        return Kind::kInt;
    else if constexpr (std::is_same_v<T, unsigned long>)
        return Kind::kLong;
    else if constexpr (std::is_same_v<T, float>)
        return Kind::kFloat;
    else if constexpr (std::is_same_v<T, zet::String_T<wchar_t>>)
        return Kind::kText;
    else if constexpr (std::is_same_v<T, zet::Uuid>)
        return Kind::kUuid;
    else if constexpr (std::is_same_v<T, zet::uuid_node_t>)
        return Kind::kNode;
    else if constexpr (std::is_same_v<T, zet::Buffer>)
        return Kind::kBuffer;
    else if constexpr (kIsPair<T>)
        return Kind::kPair;
    else
        return Kind::kRecord;
}

// The shape of a value of T, without name and place.
template <class T>
Field shapeOf()
{
    Field field;
    if constexpr (kIsRawBytes<T>)
    {
        field.kind = Kind::kBytes;
        field.extent = static_cast<int>(std::extent_v<T>);
    }
    else if constexpr (std::is_array_v<T>)
    {
        field.kind = Kind::kArray;
        field.extent = static_cast<int>(std::extent_v<T>);
        field.stride = sizeof(std::remove_extent_t<T>);
        field.parts.push_back(shapeOf<std::remove_extent_t<T>>());
    }
    else
    {
        field.kind = kindOf<T>();
        if constexpr (kIsPair<T>)
        {
            const T sample{};
            field.parts = {shapeOf<typename T::first_type>(), shapeOf<typename T::second_type>()};
            field.parts[1].offset = static_cast<size_t>(reinterpret_cast<const char*>(&sample.second) -
                                                        reinterpret_cast<const char*>(&sample));
        }
        else if constexpr (Record<T>)
        {
            field.record = &T::Wire();
        }
    }
    return field;
}

template <class C>
void walkOf(const void* container, const Visit& visit)
{
    for (const auto& element : *static_cast<const C*>(container))
    {
        if constexpr (kIsMap<C>)
            visit(&element.first, &element.second);
        else
            visit(nullptr, &element);
    }
}

template <class P>
std::pair<const unsigned char*, int> bytesOf(const void* member)
{
    const P& packager = *static_cast<const P*>(member);
    return {packager.GetBuffer(), packager.GetDataSize()};
}

class Describer
{
public:
    Describer(Schema& schema, const void* object) : m_Schema(schema), m_Object(static_cast<const char*>(object)) {}

    template <class... T>
    bool Fields(const char* names, const T&... values)
    {
        return add(names, "", values...);
    }
    template <class... T>
    bool SkippedOnFailure(const char* names, const T&... values)
    {
        return add(names, "SkippedOnFailure", values...);
    }
    template <class... T>
    bool UntestedFields(const char* names, const T&... values)
    {
        return add(names, "Untested", values...);
    }
    template <class... T>
    bool UntestedFromZero(const char* names, const T&... values)
    {
        return add(names, "Untested FromZero", values...);
    }
    bool Unlimited(const char* names, const zet::Buffer& buffer) { return add(names, "Unlimited", buffer); }
    // Remembered by no tool; the statement is for the reader of the source and for the test of completeness.
    template <class... T>
    bool NotSent(const char*, const T&...)
    {
        return true;
    }
    template <class Steps>
    bool EitherWay(Steps steps)
    {
        const size_t first = m_Schema.fields.size();
        steps();
        for (size_t i = first; i < m_Schema.fields.size(); ++i)
            m_Schema.fields[i].words += m_Schema.fields[i].words.empty() ? "EitherWay" : " EitherWay";
        return true;
    }
    template <class Base>
    bool Head(const Base& base)
    {
        const size_t shift = offsetOf(base);
        for (Field field : Base::Wire().fields)
        {
            field.offset += shift;
            field.sizeOffset += shift;
            m_Schema.fields.push_back(field);
        }
        return true;
    }

    template <class C, class... W>
    bool List(const char* names, const C& list, W...)
    {
        checkWords<C, W...>();
        addList(names, Kind::kList, kFlagsOf<W...>, list);
        return true;
    }
    template <class C>
    bool CountOf(const char* names, const C& list)
    {
        addList(names, Kind::kCountOf, 0, list);
        return true;
    }
    template <class C, class... W>
    bool ElementsOf(const char* names, const C& list, W...)
    {
        checkWords<C, W...>();
        static_assert(!(kFlagsOf<W...> & kClearedFirst),
                      "ClearedFirst empties a list before its count, which stands apart from ELEMENTS_OF");
        addList(names, Kind::kElementsOf, kFlagsOf<W...>, list);
        return true;
    }
    template <class... C>
    bool ThroughOneLocal(const char* names, const C&... lists)
    {
        constexpr unsigned flags = Untested.kFlags | kAppends | kThroughOneLocal;
        Names each(names);
        (m_Schema.fields.push_back(listField(each.next(), Kind::kList, flags, lists)), ...);
        return true;
    }
    template <class P>
    bool Payload(const char* names, const P& packager)
    {
        Field field;
        field.name = Names(names).next();
        field.kind = Kind::kPayload;
        field.offset = offsetOf(packager);
        field.bytes = &bytesOf<P>;
        m_Schema.fields.push_back(field);
        return true;
    }
    template <size_t N>
    bool SizedBytes(const char* names, const int& size, const unsigned char (&bytes)[N], int)
    {
        Field field;
        field.name = Names(names).next();
        field.kind = Kind::kSizedBytes;
        field.words = "Untested";
        field.offset = offsetOf(bytes);
        field.sizeOffset = offsetOf(size);
        field.extent = static_cast<int>(N);
        m_Schema.fields.push_back(field);
        return true;
    }
    template <class... C>
    bool Columns(const char* names, const C&... columns)
    {
        Names each(names);
        Field field;
        field.kind = Kind::kColumns;
        field.words = "Untested";
        (field.parts.push_back(listField(each.next(), Kind::kList, 0, columns)), ...);
        m_Schema.fields.push_back(field);
        return true;
    }
    template <class T>
    bool Ballast(const char* names, int count, const T& table)
    {
        Field literal;
        literal.kind = Kind::kLiteral;
        literal.extent = count;
        literal.words = "Ballast";
        m_Schema.fields.push_back(literal);
        return add(names, "Untested", table);
    }
    template <size_t Rows, size_t Columns, class... T>
    bool Interleaved(const char* names, const T&... tables)
    {
        addInterleaved(names, {static_cast<int>(Rows), static_cast<int>(Columns)}, tables...);
        return true;
    }
    template <size_t Rows, class... T>
    bool InterleavedRows(const char* names, const T&... tables)
    {
        addInterleaved(names, {static_cast<int>(Rows)}, tables...);
        return true;
    }

    // For the few classes that state their layout by hand.
    Schema& schema() { return m_Schema; }
    template <class T>
    size_t offsetOf(const T& member) const
    {
        return static_cast<size_t>(reinterpret_cast<const char*>(&member) - m_Object);
    }
    template <class T>
    Field fieldOf(const std::string& name, const T& member) const
    {
        Field field = shapeOf<T>();
        field.name = name;
        field.offset = offsetOf(member);
        return field;
    }

private:
    template <class... T>
    bool add(const char* names, const char* words, const T&... values)
    {
        Names each(names);
        (addOne(each.next(), words, values), ...);
        return true;
    }
    template <class T>
    void addOne(const std::string& name, const char* words, const T& value)
    {
        Field field = fieldOf(name, value);
        field.words = words;
        m_Schema.fields.push_back(field);
    }
    template <class C>
    Field listField(const std::string& name, Kind kind, unsigned flags, const C& list)
    {
        Field field;
        field.name = name;
        field.kind = kind;
        field.words = wordsOf(flags);
        field.offset = offsetOf(list);
        field.walk = &walkOf<C>;
        if constexpr (kIsMap<C>)
        {
            if (flags & (kPairs | kByPosition))
                field.parts.push_back(shapeOf<typename C::key_type>());
        }
        field.parts.push_back(shapeOf<typename ElementOf<C>::Type>());
        return field;
    }
    template <class C>
    void addList(const char* names, Kind kind, unsigned flags, const C& list)
    {
        m_Schema.fields.push_back(listField(Names(names).next(), kind, flags, list));
    }
    template <class... T>
    void addInterleaved(const char* names, std::vector<int> literals, const T&... tables)
    {
        Names each(names);
        Field field;
        field.kind = Kind::kInterleaved;
        field.words = "Untested";
        field.literals = std::move(literals);
        (field.parts.push_back(fieldOf(each.next(), tables)), ...);
        m_Schema.fields.push_back(field);
    }

    Schema& m_Schema;
    const char* m_Object;
};

// The schema of a class, from its walk over a default-made object of Instance: the class itself, or one that stands
// in for an abstract one.
template <class Class, class Instance = Class, class WalkOf>
Schema describe(const char* name, WalkOf walk)
{
    Schema schema;
    schema.name = name;
    // A member, since a record may have virtual operations and yet no virtual destructor.
    struct Holder
    {
        Instance m_Object{};
    };
    const auto holder = std::make_unique<Holder>();
    const Class& record = holder->m_Object;
    Describer describer(schema, &record);
    walk(describer, record);
    for (const Field& field : schema.fields)
        schema.smallest += smallestOf(field);
    return schema;
}

} // namespace wire
