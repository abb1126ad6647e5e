// The schemas of all classes, frozen: a difference is a change of the protocol and is reviewed as one.
// wirelens prints them; scripts/freeze_schemas writes them anew.
#include "tests/support/places.h"
#include "tools/class_table.h"
#include "tools/schema_text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace
{

std::string frozen(const std::string& name)
{
    std::ifstream file(test::getTestsFolder() + "/schema/" + name, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string printed(tools::Family family)
{
    std::string text;
    for (const tools::ClassInfo& info : tools::classTable())
        if (info.m_Family == family)
            text += tools::schemaText(info) + "\n";
    return text;
}

void expectSame(const std::string& expected, const std::string& got)
{
    std::istringstream one(expected);
    std::istringstream other(got);
    std::string a;
    std::string b;
    for (int line = 1;; ++line)
    {
        const bool more = static_cast<bool>(std::getline(one, a));
        const bool otherMore = static_cast<bool>(std::getline(other, b));
        if (!more && !otherMore)
            return;
        ASSERT_TRUE(more && otherMore && a == b) << "line " << line << "\n  frozen  " << a << "\n  printed " << b;
    }
}

TEST(Schema, CommandsAreAsFrozen)
{
    expectSame(frozen("commands.txt"), printed(tools::Family::kCommand));
}

TEST(Schema, RecordsAreAsFrozen)
{
    expectSame(frozen("records.txt"), printed(tools::Family::kRecord));
}

TEST(Schema, MessagesAreAsFrozen)
{
    expectSame(frozen("messages.txt"), printed(tools::Family::kMessage));
}

} // namespace
