#include "tools/line_filter.h"

#include "tests/support/captures.h"
#include "tests/support/run_program.h"
#include "tools/capture/capture_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace
{

using tools::FieldTest;
using tools::LineFilter;

constexpr char kLine[] = R"({"time":"2023-11-14T22:13:20.003000Z","connection":"[2001:db8::1]:40000-10.0.0.2:7000",)"
                         R"("direction":"to_server","offset":4,"id":"0x1000","from":"00ff","size":5,)"
                         R"("class":"CCmdX","fields":{"m_Result":3,"m_Name":"joe","m_A.m_B":{"m_C":true},)"
                         R"("m_List":[{"m_Id":7},{"m_Id":8}]}})";

bool holds(const std::string& test)
{
    const auto parsed = FieldTest::parse(test);
    EXPECT_TRUE(parsed) << test;
    LineFilter filter;
    if (parsed)
        filter.m_Fields = {*parsed};
    return filter.passes(kLine);
}

TEST(LineFilter, ComparesFieldsByPath)
{
    for (const char* const test :
         {"m_Result != 0", "m_Result==3", "m_Result >= 3", "m_Result <= 3", "m_Result > 2", "m_Result < 3.5",
          "m_Name == joe", "m_Name == \"joe\"", "m_Name > alf", "m_A.m_B.m_C == true", "m_List[1].m_Id == 8"})
        EXPECT_TRUE(holds(test)) << test;
    for (const char* const test :
         {"m_Result == 0", "m_Result < 3", "m_Result > 3", "m_Name == jo", "m_None != 0", "m_Name < 3",
          "m_List[2].m_Id == 8", "m_List[x] == 1", "m_Res == 3", "m_A.m_B.m_C == false"})
        EXPECT_FALSE(holds(test)) << test;
    for (const char* const test : {"m_Result", "!= 3", "m_Result !=", "m_Result = 3", "m_Result ! 3", ""})
        EXPECT_FALSE(FieldTest::parse(test)) << test;
}

TEST(LineFilter, EachPartMustFit)
{
    LineFilter good;
    EXPECT_TRUE(good.isEmpty());
    good.m_Ids = {7, 0x1000};
    good.m_Classes = {"CCmdY", "CCmdX"};
    good.m_Directions = {"to_server"};
    good.m_Since = *tools::parseTime("2023-11-14T22:13:20.003");
    good.m_Until = *tools::parseTime("2023-11-14T22:13:21Z");
    for (const char* const address : {"2001:db8::1", "[2001:db8::1]:40000", "10.0.0.2", "10.0.0.2:7000", "00ff"})
    {
        good.m_Addresses = {address};
        EXPECT_TRUE(good.passes(kLine)) << address;
    }
    EXPECT_FALSE(good.isEmpty());
    const auto expectRefused = [&](auto change)
    {
        LineFilter changed = good;
        change(changed);
        EXPECT_FALSE(changed.passes(kLine));
    };
    expectRefused([](LineFilter& filter) { filter.m_Ids = {0x1001}; });
    expectRefused([](LineFilter& filter) { filter.m_Classes = {"CCmd"}; });
    expectRefused([](LineFilter& filter) { filter.m_Directions = {"to_client"}; });
    expectRefused([](LineFilter& filter) { filter.m_Addresses = {"10.0.0"}; });
    expectRefused([](LineFilter& filter) { filter.m_Since = *tools::parseTime("2023-11-14T22:13:20.003001"); });
    expectRefused([](LineFilter& filter) { filter.m_Until = *tools::parseTime("1700000000.003"); });
}

TEST(LineFilter, LinesThatAreNotCommandsPassAndCommandsWithoutATimeDoNot)
{
    LineFilter filter;
    filter.m_Since = "2023-11-14";
    EXPECT_TRUE(filter.passes(R"({"offset":0,"error":"no whole frame head"})"));
    EXPECT_FALSE(filter.passes(R"({"offset":0,"id":"0x1000","size":0})"));
}

TEST(LineFilter, TimesAreDatesOrSeconds)
{
    EXPECT_EQ(tools::parseTime("2023-11-14"), "2023-11-14");
    EXPECT_EQ(tools::parseTime("2023-11-14T22:13:20Z"), "2023-11-14T22:13:20");
    EXPECT_EQ(tools::parseTime("1700000000.5"), "2023-11-14T22:13:20.500000");
    for (const char* const text : {"", "yesterday", "2023-11", "12:00", "99999999999"})
        EXPECT_FALSE(tools::parseTime(text)) << text;
}

TEST(Wirelens, DecodeFiltersCommands)
{
    const std::string two = "0010 14000000 0002000709 0010 14000000 0002000708 1240 00000000";
    const auto lines = [&](const std::string& options)
    {
        const test::Run run = test::runProgram("wirelens", "decode " + options + " -", two);
        return std::count(run.m_Output.begin(), run.m_Output.end(), '\n');
    };
    EXPECT_EQ(lines(""), 3);
    EXPECT_EQ(lines("--id 0x1000"), 2);
    EXPECT_EQ(lines("--id 4096 --id 0x4012"), 3);
    EXPECT_EQ(lines("--class CCmdHostnameRequest"), 2);
    EXPECT_EQ(lines("--field \"m_ServerType != 8\""), 1);
    EXPECT_EQ(lines("--field \"m_ServerType > 7\" --field \"m_ServerType < 9\""), 1);
    // A line that is left out is no error.
    EXPECT_EQ(test::runProgram("wirelens", "decode --id 0x1000 -", two).m_Code, 0);
    for (const char* const wrong : {"--id x", "--id 0x10000", "--class Nobody", "--direction up", "--field m_Result",
                                    "--since yesterday", "--until now"})
        EXPECT_EQ(test::runProgram("wirelens", std::string("decode ") + wrong + " -", two).m_Code, 2) << wrong;
}

TEST(Wirelens, DecodeFiltersCaptures)
{
    if (!tools::CaptureFile::isSupported())
        GTEST_SKIP() << "without libpcap";
    test::capture::Conversation all;
    all.open();
    all.send(true, test::capture::commands(0, 3));
    all.send(false, test::capture::commands(10, 2));
    const auto lines = [&](const std::string& options)
    {
        const test::Run run = test::runProgram("wirelens", "decode --notices " + options,
                                               test::capture::pcap(test::capture::kLinkTypeRaw, all.m_Packets));
        // One line has the totals.
        return std::count(run.m_Output.begin(), run.m_Output.end(), '\n') - 1;
    };
    EXPECT_EQ(lines("--direction to_server"), 3);
    EXPECT_EQ(lines("--direction to_client"), 2);
    EXPECT_EQ(lines("--address 10.0.0.2:7000"), 5);
    EXPECT_EQ(lines("--address 10.0.0.3"), 0);
    EXPECT_EQ(lines("--since 1700000000.004"), 2);
    EXPECT_EQ(lines("--until 2023-11-14T22:13:20.004"), 3);
}

} // namespace
