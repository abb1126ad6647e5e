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

const std::vector<const ClassInfo*>& classesOfId(unsigned short id)
{
    static const auto byId = []
    {
        std::unordered_map<unsigned short, std::vector<const ClassInfo*>> index;
        for (const ClassInfo& info : classTable())
            if (info.m_Family == Family::kCommand)
                index[info.m_Id].push_back(&info);
        return index;
    }();
    static const std::vector<const ClassInfo*> none;
    const auto place = byId.find(id);
    return place == byId.end() ? none : place->second;
}

} // namespace tools
