// The frozen schemas of all classes: a difference is a change of the protocol and is reviewed as one.
// wirelens prints them; scripts/freeze_schemas rewrites them.
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

void expectFrozen(const std::string& name, tools::Family family)
{
    std::istringstream one(frozen(name));
    std::istringstream other(printed(family));
    std::string a;
    std::string b;
    for (int line = 1;; ++line)
    {
        const bool more = static_cast<bool>(std::getline(one, a));
        const bool otherMore = static_cast<bool>(std::getline(other, b));
        if (!more && !otherMore)
            return;
        ASSERT_TRUE(more && otherMore && a == b)
            << "tests/schema/" << name << ", line " << line << "\n  frozen  " << (more ? a : "(end of file)")
            << "\n  printed " << (otherMore ? b : "(end of the schemas)")
            << "\nIf the change of the protocol is intended, run scripts/freeze_schemas and review the difference.";
    }
}

TEST(Schema, CommandsAreAsFrozen)
{
    expectFrozen("commands.txt", tools::Family::kCommand);
}

TEST(Schema, RecordsAreAsFrozen)
{
    expectFrozen("records.txt", tools::Family::kRecord);
}

TEST(Schema, MessagesAreAsFrozen)
{
    expectFrozen("messages.txt", tools::Family::kMessage);
}

} // namespace
