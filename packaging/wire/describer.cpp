#include "packaging/wire/describer.h"

#include <memory>
#include <string_view>

namespace wire
{

namespace
{

// Takes the next member of a statement, "r.m_A, r.m_B[2]", without its "r.".
std::string nextName(std::string_view& names)
{
    int depth = 0;
    size_t end = 0;
    while (end < names.size() && (names[end] != ',' || depth > 0))
    {
        const char c = names[end++];
        depth += c == '(' || c == '[' || c == '<' ? 1 : c == ')' || c == ']' || c == '>' ? -1 : 0;
    }
    std::string_view name = names.substr(0, end);
    names.remove_prefix(end < names.size() ? end + 1 : end);
    while (!name.empty() && (name.front() == ' ' || name.front() == '\n'))
        name.remove_prefix(1);
    if (name.substr(0, 2) == "r.")
        name.remove_prefix(2);
    return std::string(name);
}

} // namespace

void countShape(Field& field)
{
    field.kind = Kind::kCount;
    field.type = "count";
    field.smallest = kFixedSize<int>;
}

void addPart(Field& field, Shape shape, size_t offset)
{
    Field part;
    shape(part);
    part.offset = offset;
    field.parts.push_back(std::move(part));
}

Describer::~Describer()
{
    if (m_Sample)
        m_Destroy(m_Sample);
}

Describer& Describer::of(const void* object)
{
    m_Object = object;
    return *this;
}

void Describer::own(const void* sample, void (*destroy)(const void* sample))
{
    m_Sample = sample;
    m_Destroy = destroy;
}

size_t Describer::offsetOf(const void* member) const
{
    return static_cast<size_t>(static_cast<const char*>(member) - static_cast<const char*>(m_Object));
}

Field Describer::fieldOf(std::string name, const void* member, Shape shape) const
{
    Field field;
    shape(field);
    field.name = std::move(name);
    field.offset = offsetOf(member);
    return field;
}

void Describer::addOne(Field field)
{
    m_Schema.smallest += field.smallest;
    m_Schema.fields.push_back(std::move(field));
}

void Describer::addSized(Field field, const int& size)
{
    field.says = Says::kMember;
    field.smallest = 0;
    field.sizeOffset = offsetOf(&size);
    for (Field& other : m_Schema.fields)
        if (other.offset == field.sizeOffset && other.kind == Kind::kNumber)
            other.most = field.extent;
    addOne(std::move(field));
}

void Describer::add(const char* names, std::initializer_list<Member> members, const Departures& how, Says says)
{
    std::string_view left = names;
    for (const Member& member : members)
    {
        Field field = fieldOf(nextName(left), member.at, member.shape);
        field.how = how;
        field.says = says;
        if (says == Says::kCount)
            field.smallest = kFixedSize<int>;
        // The key is a member of the value.
        if (how.key == Key::kMember)
            field.parts.erase(field.parts.begin());
        addOne(std::move(field));
    }
}

void Describer::keyed(size_t offset)
{
    m_Schema.fields.back().keyOffset = offset;
}

void Describer::addTable(const char* names, const Rows& rows, std::initializer_list<Member> columns)
{
    Field table;
    table.kind = Kind::kTable;
    table.how = Untested;
    table.says = rows.says;
    table.rows = rows;
    table.smallest = rows.says == Says::kCountBefore ? 0 : kFixedSize<int> * (rows.across != 0 ? 2 : 1);
    std::string_view left = names;
    for (const Member& column : columns)
    {
        Field part = fieldOf(nextName(left), column.at, column.shape);
        if (rows.says == Says::kType)
        {
            part.how = Untested;
            table.smallest += part.smallest;
        }
        table.parts.push_back(std::move(part));
    }
    addOne(std::move(table));
}

void Describer::addHead(const Schema& base, const void* object)
{
    const size_t shift = offsetOf(object);
    for (Field field : base.fields)
    {
        field.offset += shift;
        field.sizeOffset += shift;
        for (Field& part : field.parts)
            part.offset += field.kind == Kind::kTable ? shift : 0;
        addOne(std::move(field));
    }
    m_Schema.notSent.insert(m_Schema.notSent.end(), base.notSent.begin(), base.notSent.end());
}

void Describer::addNotSent(const char* names)
{
    for (std::string_view left = names; !left.empty();)
        m_Schema.notSent.push_back(nextName(left));
}

size_t Describer::count() const
{
    return m_Schema.fields.size();
}

void Describer::mark(size_t first, const char* word)
{
    for (size_t i = first; i < m_Schema.fields.size(); ++i)
        m_Schema.fields[i].words.push_back(word);
}

void Describer::showFirst()
{
    for (Field& field : m_Schema.fields)
        field.head = true;
}

const Schema& LazySchema::make(const char* name, void (*walk)(Describer& describer))
{
    auto schema = std::make_unique<Schema>();
    schema->name = name;
    Describer describer(*schema);
    walk(describer);
    const Schema* made = nullptr;
    if (m_Made.compare_exchange_strong(made, schema.get(), std::memory_order_acq_rel))
        made = schema.release();
    return *made;
}

} // namespace wire
