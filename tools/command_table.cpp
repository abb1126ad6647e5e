#include "tools/class_info.h"

#include "tools/all_classes.h"

#include <algorithm>

namespace tools
{

namespace
{

template <class T>
void add(std::vector<ClassInfo>& table, unsigned short id, const char* name, const char* base, auto pair)
{
    ClassInfo info = infoOf<T>(name, Family::kCommand, base);
    info.m_Id = id;
    pair(info, static_cast<T*>(nullptr));
    table.push_back(info);
}

} // namespace

void addCommands(std::vector<ClassInfo>& table)
{
#define COMMAND(id, Class, Base)                                                                                       \
    add<Class>(table, id, #Class, #Base,                                                                               \
               [](ClassInfo& info, auto* of)                                                                           \
               {                                                                                                       \
                   using T = std::remove_pointer_t<decltype(of)>;                                                      \
                   info.m_Process = &T::Class##_Process;                                                               \
                   info.m_ProcessSocket = &T::Class##_ProcessSocket;                                                   \
               });
#define SHARED(id, Class, Base) COMMAND(id, Class, Base)
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
    std::sort(table.begin(), table.end(),
              [](const ClassInfo& a, const ClassInfo& b) {
                  return std::make_pair(a.m_Id, std::string_view(a.m_Name)) <
                         std::make_pair(b.m_Id, std::string_view(b.m_Name));
              });
}

} // namespace tools
