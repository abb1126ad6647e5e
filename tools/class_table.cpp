#include "tools/class_table.h"

#include "tools/class_info.h"

#include <algorithm>
#include <string>
#include <unordered_map>

namespace tools
{

const std::vector<ClassInfo>& classTable()
{
    static const std::vector<ClassInfo> table = []
    {
        std::vector<ClassInfo> all;
        addCommands(all);
        addRecords(all);
        addMessages(all);
        return all;
    }();
    return table;
}

const ClassInfo* findClass(std::string_view name)
{
    static const auto byName = []
    {
        std::unordered_map<std::string_view, const ClassInfo*> index;
        for (const ClassInfo& info : classTable())
            index.emplace(info.m_Name, &info);
        return index;
    }();
    const auto place = byName.find(name);
    return place == byName.end() ? nullptr : place->second;
}

std::vector<const ClassInfo*> classesOfId(unsigned short id)
{
    std::vector<const ClassInfo*> found;
    for (const ClassInfo& info : classTable())
        if (info.m_Family == Family::kCommand && info.m_Id == id)
            found.push_back(&info);
    return found;
}

} // namespace tools
