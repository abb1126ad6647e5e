// Member tables: the members of a structure's stream form, in order.
#pragma once

#include "framework/stream.h"

#include <cstddef>

namespace zet
{

// One row. A table is a constant array of rows, so it is initialized before any code runs. The name is not
// written; it must outlive the table, as a literal does.
template <class Class>
struct Member_T
{
    const wchar_t* m_Name;
    void (*m_Write)(OutputStream& stream, const Class& object);
    void (*m_Read)(InputStream& stream, Class& object);
};

namespace member_table
{

template <class Pointer>
struct Owner;
template <class Class, class Value>
struct Owner<Value Class::*>
{
    using Type = Class;
};

} // namespace member_table

// The row of a member, which is written and read by the stream operators.
template <auto Member>
constexpr auto memberOf(const wchar_t* name)
{
    using Class = typename member_table::Owner<decltype(Member)>::Type;
    return Member_T<Class>{name, [](OutputStream& stream, const Class& object) { stream << object.*Member; },
                           [](InputStream& stream, Class& object) { stream >> object.*Member; }};
}

// Writes or reads the members of a table in order. An exception from an operator (Exception for a short stream) goes to
// the caller; the members before it have then been written or read.
template <class Class, size_t Count>
void writeMtbl(OutputStream& stream, const Class& object, const Member_T<Class> (&table)[Count])
{
    for (const Member_T<Class>& member : table)
        member.m_Write(stream, object);
}
template <class Class, size_t Count>
void readMtbl(InputStream& stream, Class& object, const Member_T<Class> (&table)[Count])
{
    for (const Member_T<Class>& member : table)
        member.m_Read(stream, object);
}

} // namespace zet
