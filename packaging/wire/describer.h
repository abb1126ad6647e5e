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

// What people call a value of T.
template <class T>
constexpr const char* typeName()
{
    if constexpr (std::is_same_v<T, bool>)
        return "bool";
    else if constexpr (std::is_same_v<T, char>)
        return "char";
    else if constexpr (std::is_same_v<T, unsigned char>)
        return "unsigned char";
    else if constexpr (std::is_same_v<T, short>)
        return "short";
    else if constexpr (std::is_same_v<T, unsigned short>)
        return "unsigned short";
    else if constexpr (std::is_same_v<T, int>)
        return "int";
    else if constexpr (std::is_same_v<T, unsigned long>)
        return "unsigned long"; // 32 bits on the wire
    else if constexpr (std::is_same_v<T, float>)
        return "float";
    else if constexpr (std::is_same_v<T, zet::String_T<wchar_t>>)
        return "text";
    else if constexpr (std::is_same_v<T, zet::Uuid>)
        return "uuid";
    else if constexpr (std::is_same_v<T, zet::uuid_node_t>)
        return "node";
    else if constexpr (std::is_same_v<T, zet::Buffer>)
        return "buffer";
    else
        return "";
}

template <class T>
long long loadNumber(const void* at)
{
    if constexpr (std::is_same_v<T, char>)
        return *static_cast<const signed char*>(at);
    else if constexpr (std::is_same_v<T, unsigned long>)
        return static_cast<uint32_t>(*static_cast<const unsigned long*>(at));
    else
        return *static_cast<const T*>(at);
}
// A char is a small signed number on every machine.
template <class T>
inline constexpr Number kNumberOf{kFixedSize<T>, std::is_same_v<T, bool>,
                                  std::is_signed_v<T> || std::is_same_v<T, char>, &loadNumber<T>};

template <class P>
std::pair<const unsigned char*, int> bytesOf(const void* member)
{
    const P& block = *static_cast<const P*>(member);
    if constexpr (std::is_same_v<P, zet::Buffer>)
        return {static_cast<const unsigned char*>(block.getBuffer()), block.getBufferSize()};
    else
        return {block.GetBuffer(), block.GetDataSize()};
}

// The shape of a value of T, without name and place.
template <class T>
[[gnu::noinline]] Field shapeOf()
{
    Field field;
    field.smallest = static_cast<int>(smallest<T>());
    if constexpr (kIsRawBytes<T> || std::is_same_v<T, zet::Uuid> || std::is_same_v<T, zet::uuid_node_t>)
    {
        field.kind = Kind::kRaw;
        field.type = typeName<T>();
        field.extent = static_cast<int>(sizeof(T));
    }
    else if constexpr (std::is_array_v<T>)
    {
        field.kind = Kind::kArray;
        field.extent = static_cast<int>(std::extent_v<T>);
        field.stride = sizeof(std::remove_extent_t<T>);
        field.parts.push_back(shapeOf<std::remove_extent_t<T>>());
    }
    else if constexpr (kFixedSize<T> != 0)
    {
        field.kind = Kind::kNumber;
        field.number = &kNumberOf<T>;
        field.type = typeName<T>();
    }
    else if constexpr (std::is_same_v<T, zet::Buffer>)
    {
        field.kind = Kind::kBuffer;
        field.type = typeName<T>();
        field.bytes = &bytesOf<T>;
    }
    else if constexpr (kIsPair<T>)
    {
        const T sample{};
        field.kind = Kind::kPair;
        field.parts = {shapeOf<typename T::first_type>(), shapeOf<typename T::second_type>()};
        field.parts[1].offset =
            static_cast<size_t>(reinterpret_cast<const char*>(&sample.second) - reinterpret_cast<const char*>(&sample));
    }
    else if constexpr (std::is_same_v<T, float> || std::is_same_v<T, zet::String_T<wchar_t>>)
    {
        field.kind = std::is_same_v<T, float> ? Kind::kFloat : Kind::kText;
        field.type = typeName<T>();
    }
    else
    {
        static_assert(Record<T>, "an order holds packager values, records with Wire(), arrays and pairs of these; "
                                 "a container needs LIST");
        if constexpr (Record<T>)
        {
            field.kind = Kind::kRecord;
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

// Adds a field to those of a schema.
COMMONGROUND_API void push(Schema& schema, Field&& field);

class Describer
{
public:
    Describer(Schema& schema, const void* object) : m_Schema(schema), m_Object(static_cast<const char*>(object)) {}

    template <class... T>
    bool Fields(const char* names, const T&... values)
    {
        Names each(names);
        (addOne(each, values), ...);
        return true;
    }
    template <class... T>
    bool UntestedFields(const char* names, const T&... values)
    {
        const size_t before = m_Schema.fields.size();
        Fields(names, values...);
        for (size_t i = before; i < m_Schema.fields.size(); ++i)
            decideNothing(m_Schema.fields[i]);
        return true;
    }
    template <class... T>
    bool NotSent(const char* names, const T&...)
    {
        Names each(names);
        for (size_t i = 0; i < sizeof...(T); ++i)
            m_Schema.notSent.push_back(each.next());
        return true;
    }
    template <class Steps>
    bool Marked(const Word& word, Steps steps)
    {
        const size_t before = m_Schema.fields.size();
        steps();
        for (size_t i = before; i < m_Schema.fields.size(); ++i)
            m_Schema.fields[i].words.push_back(&word);
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
            for (Field& part : field.parts)
                part.offset += field.kind == Kind::kTable ? shift : 0;
            push(std::move(field));
        }
        for (const std::string& name : Base::Wire().notSent)
            m_Schema.notSent.push_back(name);
        return true;
    }

    template <auto Form, class C>
    bool List(const char* names, const C& list)
    {
        refuseNonsense<C, Form, false>();
        if constexpr (nonsenseOf<C>(Form, false) == Nonsense::kNone)
            push(listField(Names(names).next(), Form.parts, Says::kCount, list));
        return true;
    }
    template <class C>
    bool CountOf(const char* names, const C& list)
    {
        static_assert(kIsMap<C> || kIsVector<C>, "LIST, COUNT_OF and ELEMENTS_OF take a std::vector or a std::map; "
                                                 "other members go in FIELDS");
        Field field;
        field.name = Names(names).next();
        field.kind = Kind::kCount;
        field.type = "count";
        field.offset = offsetOf(list);
        field.smallest = kFixedSize<int>;
        push(std::move(field));
        return true;
    }
    template <auto Form, class C>
    bool ElementsOf(const char* names, const C& list)
    {
        refuseNonsense<C, Form, true>();
        if constexpr (nonsenseOf<C>(Form, true) == Nonsense::kNone)
            push(listField(Names(names).next(), Form.parts, Says::kCountBefore, list));
        return true;
    }
    template <class... C>
    bool ThroughOneLocal(const char* names, const C&... lists)
    {
        constexpr Departures how = formOf(Untested, Into::kThroughOneLocal).parts;
        Names each(names);
        (push(listField(each.next(), how, Says::kCount, lists)), ...);
        return true;
    }
    template <class P>
    bool Payload(const char* names, const P& packager)
    {
        Field field;
        field.name = Names(names).next();
        field.kind = Kind::kPayload;
        field.type = "payload";
        field.offset = offsetOf(packager);
        field.bytes = &bytesOf<P>;
        field.smallest = kFixedSize<int>;
        push(std::move(field));
        return true;
    }
    template <Rows kRows, class First, class... T>
    bool Table(const char* names, const First& first, const T&... rest)
    {
        static_assert(
            isColumn<First>(kRows) && (isColumn<T>(kRows) && ...),
            "the columns of a table are vectors under CountedRows, and arrays of the rows that SaidRows names");
        static_assert(kRows.says != Says::kType || sizeof...(T) == 0, "a table under OwnRows has one column");
        Field field;
        field.kind = Kind::kTable;
        decideNothing(field);
        field.says = kRows.says;
        field.rows = kRows;
        if constexpr (kRows.says == Says::kType)
            field.rows.rows = kCells<First>;
        field.smallest = kRows.says == Says::kCountBefore ? 0 : kFixedSize<int> * (kRows.across != 0 ? 2 : 1);
        Names each(names);
        column(field, each.next(), first);
        (column(field, each.next(), rest), ...);
        push(std::move(field));
        return true;
    }

    // For the few classes that state their layout by hand: an array of which the int member size says how much is sent.
    void Sized(Field field, const int& size)
    {
        field.says = Says::kMember;
        field.smallest = 0;
        field.sizeOffset = offsetOf(size);
        for (Field& other : m_Schema.fields)
            if (other.offset == field.sizeOffset && other.number)
                other.most = field.extent;
        push(std::move(field));
    }
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
    void push(Field&& field) { wire::push(m_Schema, std::move(field)); }

private:
    static void decideNothing(Field& field) { field.how.reading = field.how.writing = Decides::kNothing; }

    // Not inline: a describing runs once, and there is one for each class.
    template <class T>
    [[gnu::noinline]] void addOne(Names& names, const T& value)
    {
        push(fieldOf(names.next(), value));
    }
    template <class C>
    [[gnu::noinline]] Field listField(const std::string& name, Departures how, Says says, const C& list)
    {
        Field field;
        field.name = name;
        field.kind = Kind::kList;
        field.how = how;
        field.says = says;
        field.offset = offsetOf(list);
        field.smallest = says == Says::kCount ? kFixedSize<int> : 0;
        field.walk = &walkOf<C>;
        if constexpr (kIsMap<C>)
        {
            if (how.key != Key::kMember)
                field.parts.push_back(shapeOf<typename C::key_type>());
        }
        field.parts.push_back(shapeOf<typename ElementOf<C>::Type>());
        return field;
    }
    template <class T>
    void column(Field& table, const std::string& name, const T& values)
    {
        if constexpr (kIsVector<T>)
        {
            table.parts.push_back(listField(name, {}, Says::kType, values));
        }
        else
        {
            table.parts.push_back(fieldOf(name, values));
            if (table.says == Says::kType)
            {
                decideNothing(table.parts.back());
                table.smallest += table.parts.back().smallest;
            }
        }
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
    return schema;
}

} // namespace wire
