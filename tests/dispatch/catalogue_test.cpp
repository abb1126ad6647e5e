#include "dispatch/command_ids.h"

#include "tools/class_table.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

namespace
{

struct Row
{
    unsigned short m_Id;
    std::string m_Class;
    bool m_Shared;
};

const std::vector<Row>& rows()
{
    static const std::vector<Row> all = {
#define COMMAND(id, Class, Base) {id, #Class, false},
#define SHARED(id, Class, Base) {id, #Class, true},
#include "dispatch/commands.def"
#undef COMMAND
#undef SHARED
    };
    return all;
}

TEST(Catalogue, Holds274ClassesOver267Ids)
{
    std::set<unsigned short> ids;
    std::set<std::string> names;
    for (const Row& row : rows())
    {
        ids.insert(row.m_Id);
        names.insert(row.m_Class);
    }
    EXPECT_EQ(rows().size(), 274u);
    EXPECT_EQ(names.size(), 274u);
    EXPECT_EQ(ids.size(), 267u);
}

TEST(Catalogue, SevenIdsAreSharedAndMarkedSo)
{
    std::map<unsigned short, int> classes;
    for (const Row& row : rows())
        ++classes[row.m_Id];
    std::set<unsigned short> doubled;
    for (const Row& row : rows())
    {
        EXPECT_EQ(row.m_Shared, classes[row.m_Id] == 2) << row.m_Class;
        EXPECT_LE(classes[row.m_Id], 2);
        if (row.m_Shared)
            doubled.insert(row.m_Id);
    }
    EXPECT_EQ(doubled, (std::set<unsigned short>{0x1119, 0x1200, 0x1201, 0x1202, 0x1203, 0x1204, 0x1208}));
}

TEST(Catalogue, RowsAscendAndTheHighestIdIsTheLastEntryOfTheAnalysers)
{
    for (size_t i = 1; i < rows().size(); ++i)
        EXPECT_LE(rows()[i - 1].m_Id, rows()[i].m_Id);
    EXPECT_EQ(rows().back().m_Id, kCommandIdLimit - 1);
}

TEST(Catalogue, EveryRowIsLive)
{
    int live = 0;
    for (const tools::ClassInfo& info : tools::classTable())
        live += info.m_Family == tools::Family::kCommand ? 1 : 0;
    EXPECT_EQ(live, 274);
}

TEST(Catalogue, NamesThatAreMisspeltStaySo)
{
    for (const char* const name :
         {"CCmdBillReusltNotify", "CCmdReplayPaytoKen", "CCmdRequestPaytoKen", "CCmdWechatdAccountLogin"})
        EXPECT_TRUE(tools::findClass(name)) << name;
}

TEST(Catalogue, UnassignedIdsBelongToNoClass)
{
    for (const int id : {0x0000, 0x0fff, 0x1007, 0x105b, 0x105d, 0x105f, 0x1080, 0x111a, 0x1812, 0x4012, 0x4019})
        EXPECT_TRUE(tools::classesOfId(static_cast<unsigned short>(id)).empty()) << id;
}

} // namespace
