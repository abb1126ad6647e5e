// The dissector for Wireshark as a text; tests/dissector runs it by tshark.
#include "tests/support/run_program.h"
#include "tools/class_table.h"
#include "tools/dissector/dissector_text.h"
#include "tools/schema_text.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(Dissector, HasTheOrderOfEveryClass)
{
    const std::string text = tools::dissectorText();
    for (const tools::ClassInfo& info : tools::classTable())
    {
        const size_t begin = text.find("\nclass(\"" + std::string(info.m_Name) + "\", ");
        ASSERT_NE(begin, std::string::npos) << info.m_Name;
        const std::string line = text.substr(begin, text.find('\n', begin + 1) - begin);
        if (info.m_Family != tools::Family::kCommand)
            continue;
        EXPECT_NE(line.find(", id = " + tools::idText(info)), std::string::npos) << line;
    }
}

TEST(Dissector, SaysTheQuirksOfAnOrder)
{
    const std::string text = tools::dissectorText();
    EXPECT_NE(text.find("{\"m_Mask1\", \"bytes\", size = 56448, by = \"m_Mask1Size\", tests = \"nothing\", "
                        "word = \"TriedAnyway\"},\n"),
              std::string::npos);
    EXPECT_NE(
        text.find("{\"m_PlayerNum\", \"count\", word = \"EitherWay\"},\n"
                  "    {\"m_PlayerNum\", \"list\", key = {\"\", \"int32\"}, of = {\"\", \"int32\"}, apart = true, "
                  "tests = \"count\"},\n"),
        std::string::npos);
}

TEST(Dissector, HasTheLimitsOfReaders)
{
    const std::string text = tools::dissectorText();
    for (const char* const line :
         {"MOST_TEXT_UNITS = 1000", "MOST_BUFFER = 10485760", "TRUSTED_COUNT = 1024", "HEAD_VERSION = 2",
          "STREAM_HEAD = 6", "PACKET_HEAD = 4", "STREAM_LENGTH = 2", "ADDRESS = 16", "MOST_PACKET = 268435493",
          "DEEPEST_FRAME = 4", "GREETING = \"\\122\\110\\115\\1\"", "SESSION_MESSAGE = \"Msg_NetCommand\""})
        EXPECT_NE(text.find("\nlocal " + std::string(line) + "\n"), std::string::npos) << line;
}

TEST(Dissector, IsWhatWirelensPrints)
{
    const test::Run run = test::runProgram("wirelens", "dissector");
    EXPECT_EQ(run.m_Code, 0);
    // Under Wine lines end in two characters.
    std::string printed = run.m_Output;
    std::erase(printed, '\r');
    EXPECT_EQ(printed, tools::dissectorText());
}

} // namespace
