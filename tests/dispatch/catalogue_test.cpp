#include "dispatch/command_ids.h"

#include "tests/support/places.h"
#include "tools/class_table.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>
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

std::string contentOf(const std::filesystem::path& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Two files list the families, and each could omit one.
TEST(Catalogue, EveryFileOfRowsIsInTheCatalogueAndInTheHeaderOfAllIds)
{
    const std::filesystem::path dispatch = std::filesystem::path(test::getTestsFolder()).parent_path() / "dispatch";
    const std::string catalogue = contentOf(dispatch / "commands.def");
    const std::string header = contentOf(dispatch / "command_ids.h");
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dispatch / "ids"))
    {
        const std::string name = entry.path().stem().string();
        ++files;
        EXPECT_NE(catalogue.find("#include \"dispatch/ids/" + name + ".def\"\n"), std::string::npos) << name;
        EXPECT_NE(header.find("#include \"dispatch/ids/" + name + ".h\"\n"), std::string::npos) << name;
        EXPECT_NE(contentOf(dispatch / "ids" / (name + ".h")).find("\"dispatch/ids/" + name + ".def\""),
                  std::string::npos)
            << name;
    }
    EXPECT_GT(files, 0);
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

TEST(Catalogue, TableOfClassesHasEveryRowInAscendingOrder)
{
    std::vector<std::pair<unsigned short, std::string>> expected;
    for (const Row& row : rows())
        expected.emplace_back(row.m_Id, row.m_Class);
    std::sort(expected.begin(), expected.end());
    std::vector<std::pair<unsigned short, std::string>> found;
    for (const tools::ClassInfo& info : tools::classTable())
        if (info.m_Family == tools::Family::kCommand)
            found.emplace_back(info.m_Id, info.m_Name);
    EXPECT_EQ(found, expected);
    EXPECT_EQ(found.back().first, kCommandIdLimit - 1);
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
