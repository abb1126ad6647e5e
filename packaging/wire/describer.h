// Turns an order into a schema, on a default-made object: a member's offset is its address less the object's. A
// describing runs once per class, so the steps hand names, addresses and types to functions that all classes share.
#pragma once

#include "packaging/wire/visit.h"

#include <atomic>
#include <initializer_list>
#include <string>

namespace wire
{

// Fills in what depends on a type alone.
using Shape = void (*)(Field& field);

struct Member
{
    const void* at;
    Shape shape;
};

COMMONGROUND_API void countShape(Field& field);
// Adds a part of this shape.
COMMONGROUND_API void addPart(Field& field, Shape shape, size_t offset = 0);

template <class T>
std::pair<const unsigned char*, int> bytesOf(const void* member)
{
    const T& block = *static_cast<const T*>(member);
    if constexpr (kIsPackager<T>)
        return {block.GetBuffer(), block.GetDataSize()};
    else
        return {static_cast<const unsigned char*>(block.getBuffer()), block.getBufferSize()};
}

template <class C>
[[gnu::cold]] void walkOf(const void* container, const Visit& visit)
{
    for (const auto& element : *static_cast<const C*>(container))
    {
        if constexpr (kIsA<std::map, C>)
            visit(&element.first, &element.second);
        else
            visit(nullptr, &element);
    }
}

// The shape of a field or a list. Of a map it has both parts.
template <class T>
[[gnu::cold]] void shapeOf(Field& field)
{
    field.smallest = static_cast<int>(smallest<T>());
    if constexpr (kIsA<std::vector, T> || kIsA<std::map, T>)
    {
        field.kind = Kind::kList;
        field.smallest = 0;
        field.walk = &walkOf<T>;
        if constexpr (kIsA<std::map, T>)
            addPart(field, &shapeOf<typename T::key_type>);
        addPart(field, &shapeOf<typename ElementOf<T>::Type>);
    }
    else if constexpr (std::is_array_v<T> && !kIsRawBytes<T>)
    {
        field.kind = Kind::kArray;
        field.extent = static_cast<int>(std::extent_v<T>);
        field.stride = sizeof(std::remove_extent_t<T>);
        addPart(field, &shapeOf<std::remove_extent_t<T>>);
    }
    else if constexpr (kIsA<std::pair, T>)
    {
        const T sample{};
        const char* const second = reinterpret_cast<const char*>(&sample.second);
        field.kind = Kind::kPair;
        addPart(field, &shapeOf<typename T::first_type>);
        addPart(field, &shapeOf<typename T::second_type>,
                static_cast<size_t>(second - reinterpret_cast<const char*>(&sample)));
    }
    else if constexpr (Record<T>)
    {
        field.kind = Kind::kRecord;
        field.record = &T::Wire();
    }
    else if constexpr (kIsPackager<T> || std::is_same_v<T, zet::Buffer>)
    {
        field.kind = kIsPackager<T> ? Kind::kPayload : Kind::kBuffer;
        field.type = kIsPackager<T> ? "payload" : kValueType<T>.name;
        field.bytes = &bytesOf<T>;
        if constexpr (std::is_same_v<T, CCmdPackager>)
            field.extent = CCmdPackager::kMaxDataSize;
        else if constexpr (kIsPackager<T>)
            field.extent = T().GetBufferSize();
    }
    else if constexpr (kFixedSize<T> == 0)
    {
        field.kind = std::is_same_v<T, float> ? Kind::kFloat : Kind::kText;
        field.type = kValueType<T>.name;
    }
    else if constexpr (std::is_integral_v<T>)
    {
        field.kind = Kind::kNumber;
        field.type = kValueType<T>.name;
        field.size = kFixedSize<T>;
        field.isBool = std::is_same_v<T, bool>;
        // A char is a small signed number on every machine.
        field.isSigned = std::is_signed_v<T> || std::is_same_v<T, char>;
    }
    else
    {
        field.kind = Kind::kRaw;
        field.type = kIsRawBytes<T> ? "" : kValueType<T>.name;
        field.extent = static_cast<int>(sizeof(T));
    }
}

// What a list's words say, as constant data that the steps refer to.
template <auto kWords>
inline constexpr Departures kHow = kWords;

// Where the key of a map is within its elements, in bytes.
template <auto kWords, class Element>
[[gnu::cold]] size_t keyOffset()
{
    // A constant of its own: read where it is used, it is a wrong offset with Clang 14.
    constexpr auto member = kWords.member;
    const Element sample{};
    return static_cast<size_t>(reinterpret_cast<const char*>(&(sample.*member)) -
                               reinterpret_cast<const char*>(&sample));
}

class COMMONGROUND_API Describer
{
public:
    explicit Describer(Schema& schema) : m_Schema(schema) {}
    ~Describer();
    Describer(const Describer&) = delete;
    Describer& operator=(const Describer&) = delete;

    // Names the object to which the members belong.
    Describer& of(const void* object);
    // Takes an object that is to be destroyed with the describer.
    void own(const void* sample, void (*destroy)(const void* sample));

    template <class... T>
    bool Fields(const char* names, const T&... values)
    {
        add(names, {{&values, &shapeOf<T>}...});
        return true;
    }
    template <class... T>
    bool UntestedFields(const char* names, const T&... values)
    {
        add(names, {{&values, &shapeOf<T>}...}, kHow<Untested>);
        return true;
    }
    template <class... T>
    bool NotSent(const char* names, const T&...)
    {
        addNotSent(names);
        return true;
    }
    template <class Steps>
    bool Marked(const char* word, Steps steps)
    {
        const size_t before = count();
        steps();
        mark(before, word);
        return true;
    }
    template <class Base>
    bool Head(const Base& record)
    {
        addHead(Base::Wire(), &record);
        return true;
    }

    template <auto kWords, class C>
    bool List(const char* names, const C& list)
    {
        if constexpr (makesSense<C, kWords, false>())
            addList<kWords>(names, list, Says::kCount);
        return true;
    }
    template <class C>
    bool CountOf(const char* names, const C& list)
    {
        if constexpr (isContainer<C>())
            add(names, {{&list, &countShape}});
        return true;
    }
    template <auto kWords, class C>
    bool ElementsOf(const char* names, const C& list)
    {
        if constexpr (makesSense<C, kWords, true>())
            addList<kWords>(names, list, Says::kCountBefore);
        return true;
    }
    template <class... C>
    bool ThroughOneLocal(const char* names, const C&... lists)
    {
        add(names, {{&lists, &shapeOf<C>}...}, kHow<Untested + Departures{.into = Into::kThroughOneLocal}>,
            Says::kCount);
        return true;
    }
    template <Rows kRows, class First, class... T>
    bool Table(const char* names, const First& first, const T&... rest)
    {
        static_assert(
            isColumn<First>(kRows) && (isColumn<T>(kRows) && ...),
            "the columns of a table are vectors under CountedRows, and arrays of the rows that SaidRows names");
        static_assert(kRows.says != Says::kType || sizeof...(T) == 0, "a table under OwnRows has one column");
        const Rows rows{kRows.says, kRows.says == Says::kType ? kCells<First> : kRows.rows, kRows.across};
        addTable(names, rows, {{&first, &shapeOf<First>}, {&rest, &shapeOf<T>}...});
        return true;
    }

    // For the few classes that state their layout by hand: a field with a name, and an array of which the int member
    // size says how much is sent.
    Field fieldOf(std::string name, const void* member, Shape shape) const;
    size_t offsetOf(const void* member) const;
    void addSized(Field field, const int& size);
    void addOne(Field field);
    // Marks all fields as those of a head.
    void showFirst();

private:
    template <auto kWords, class C>
    void addList(const char* names, const C& list, Says says)
    {
        add(names, {{&list, &shapeOf<C>}}, kHow<kWords>, says);
        if constexpr (kWords.key == Key::kMember)
            keyed(keyOffset<kWords, typename C::mapped_type>());
    }
    // Says where the key of the list added last is within its elements.
    void keyed(size_t offset);
    // Adds a field for each member.
    void add(const char* names, std::initializer_list<Member> members, const Departures& how = kHow<Departures{}>,
             Says says = Says::kType);
    void addTable(const char* names, const Rows& rows, std::initializer_list<Member> columns);
    void addHead(const Schema& base, const void* object);
    void addNotSent(const char* names);
    size_t count() const;
    // Adds the word to the fields from this one on.
    void mark(size_t first, const char* word);

    Schema& m_Schema;
    const void* m_Object = nullptr;
    const void* m_Sample = nullptr;
    void (*m_Destroy)(const void* sample) = nullptr;
};

// The type of the object that a class's schema is made from: the class itself; if that is made only with an id, as the
// bases of commands are, a class on it that gives 0. An abstract class names one that derives from it.
template <class Class>
struct SampleOf
{
    struct Made final : Class
    {
        Made() : Class(0) {}
    };
    using Type = std::conditional_t<std::is_default_constructible_v<Class>, Class, Made>;
};

template <class Holder>
[[gnu::cold]] void destroy(const void* sample)
{
    delete static_cast<const Holder*>(sample);
}

// Walks the order of Class, which its tag finds, over a default-made object. Cold, as all here: code that runs once is
// compiled for size.
template <class Class>
[[gnu::cold]] void describe(Describer& describer)
{
    // A member, since a record may have virtual operations and yet no virtual destructor.
    struct Holder
    {
        typename SampleOf<Class>::Type m_Object{};
    };
    // On the heap, since some objects are large.
    const Holder* const holder = new Holder();
    describer.own(holder, &destroy<Holder>);
    const Class& record = holder->m_Object;
    WalkOrder(describer.of(&record), record, Order<Class>());
}

// A class's schema, made when it is first asked for. If two threads ask at once, both make it and one is kept.
class COMMONGROUND_API LazySchema
{
public:
    const Schema& get(const char* name, void (*walk)(Describer& describer))
    {
        const Schema* const made = m_Made.load(std::memory_order_acquire);
        return made ? *made : make(name, walk);
    }

private:
    const Schema& make(const char* name, void (*walk)(Describer& describer));

    std::atomic<const Schema*> m_Made{nullptr};
};

} // namespace wire
