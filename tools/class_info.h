// Builds a class's row of the table; the compiler determines which operations the class has.
#pragma once

#include "tools/class_table.h"

namespace tools
{

template <class T, class P>
concept Readable = requires(T& object, P* packager)
{
    object.Read(packager);
};

template <class T>
ClassInfo infoOf(const char* name, Family family, const char* base)
{
    ClassInfo info;
    info.m_Name = name;
    info.m_Family = family;
    info.m_Base = base;
    info.m_Wire = &T::Wire;
    // Held as a member, since a record may have virtual functions without a virtual destructor.
    struct Holder
    {
        T m_Object{};
    };
    info.m_New = []() -> void* { return new Holder(); };
    info.m_Delete = [](void* object) { delete static_cast<Holder*>(object); };
    if constexpr (Readable<T, CCmdPackager>)
    {
        info.m_ReadCmd = [](void* object, CCmdPackager& pk) { return static_cast<T*>(object)->Read(&pk); };
        info.m_WriteCmd = [](const void* object, CCmdPackager& pk)
        { return static_cast<const T*>(object)->Write(&pk); };
    }
    if constexpr (Readable<T, CDataPackager>)
    {
        info.m_ReadData = [](void* object, CDataPackager& pk) { return static_cast<T*>(object)->Read(&pk); };
        info.m_WriteData = [](const void* object, CDataPackager& pk)
        { return static_cast<const T*>(object)->Write(&pk); };
    }
    return info;
}

// The three parts of the table, one file each.
void addCommands(std::vector<ClassInfo>& table);
void addRecords(std::vector<ClassInfo>& table);
void addMessages(std::vector<ClassInfo>& table);

} // namespace tools
