// Counting commands by id, of which the fields are not read.
#include "tools/command_counts.h"

#include "tests/support/captures.h"
#include "tests/support/run_program.h"
#include "tools/capture/capture_file.h"
#include "tools/object_json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace
{

namespace capture = test::capture;

using Json = nlohmann::ordered_json;

std::vector<Json> linesOf(const std::string& output)
{
    std::vector<Json> lines;
    std::istringstream in(output);
    for (std::string line; std::getline(in, line);)
        if (line.starts_with('{'))
            lines.push_back(Json::parse(line));
    return lines;
}

// A stream frame in hexadecimal that no class reads.
constexpr const char* kDamaged = "0d12 0c000000 ffffff";

std::string hostname()
{
    return tools::hexOf(capture::command(7).data() + 4, capture::command(7).size() - 4);
}

TEST(CommandCounts, HasNumberBytesAndRateByIdMostBytesFirst)
{
    tools::CommandCounts counts;
    counts.add(0x120D, 10, 1'000'000);
    counts.add(0x1013, 100, 3'000'000);
    counts.add(0x120D, 10, 5'000'000);
    counts.add(0x0FFF, 1);
    counts.addError();
    EXPECT_EQ(counts.commands(), 4u);
    const std::vector<std::string> lines = counts.lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0], R"({"id":"0x1013","class":"CCmdLogin","commands":1,"bytes":100,"commands_per_second":0.25,)"
                        R"("bytes_per_second":25.0})");
    EXPECT_EQ(Json::parse(lines[1])["commands"], 2);
    EXPECT_EQ(Json::parse(lines[1])["bytes_per_second"], 5);
    EXPECT_FALSE(Json::parse(lines[2]).contains("class"));
    EXPECT_EQ(lines[3], R"({"all":{"commands":4,"bytes":121,"commands_per_second":1.0,"bytes_per_second":30.25,)"
                        R"("seconds":4.0,"errors":1}})");
}

TEST(CommandCounts, NamesBothClassesOfAnId)
{
    tools::CommandCounts counts;
    counts.add(0x1200, 1);
    const Json line = Json::parse(counts.lines().front());
    EXPECT_NE(line["class"].get<std::string>().find(" or "), std::string::npos) << line;
    EXPECT_FALSE(line.contains("bytes_per_second"));
}

TEST(CommandCounts, OfARecordingDoNotReadFields)
{
    const std::string input = hostname() + hostname() + kDamaged;
    EXPECT_EQ(test::runProgram("wirelens", "decode -", input).m_Code, 1);
    const test::Run count = test::runProgram("wirelens", "decode --count -", input);
    EXPECT_EQ(count.m_Output, "3\n");
    EXPECT_EQ(count.m_Code, 0);
    const test::Run summary = test::runProgram("wirelens", "decode --summary -", input);
    const std::vector<Json> lines = linesOf(summary.m_Output);
    ASSERT_EQ(lines.size(), 3u) << summary.m_Output;
    EXPECT_EQ(lines[0]["class"], "CCmdHostnameRequest");
    EXPECT_EQ(lines[0]["commands"], 2);
    EXPECT_EQ(lines[1]["bytes"], 3);
    EXPECT_EQ(lines[2]["all"]["errors"], 0);
}

TEST(CommandCounts, OfDamagedPacketsCountErrorsAndExitWithOne)
{
    const std::string frame = capture::command(7);
    const std::string packets = frame + std::string("\x02\0\0\0ab", 6) + frame;
    const std::string input = tools::hexOf(packets.data(), packets.size());
    const test::Run run = test::runProgram("wirelens", "decode --packets --summary -", input);
    EXPECT_EQ(run.m_Code, 1);
    EXPECT_EQ(linesOf(run.m_Output).back()["all"]["errors"], 1) << run.m_Output;
    EXPECT_EQ(linesOf(run.m_Output).back()["all"]["commands"], 2);
}

TEST(CommandCounts, OfFiltersCountWhatPasses)
{
    const std::string input = hostname() + hostname() + kDamaged;
    EXPECT_EQ(test::runProgram("wirelens", "decode --count --class CCmdHostnameRequest -", input).m_Output, "2\n");
    EXPECT_EQ(test::runProgram("wirelens", "decode --count --field \"m_ServerType == 8\" -", input).m_Output, "0\n");
    EXPECT_EQ(test::runProgram("wirelens", "decode --count --summary -", input).m_Code, 2);
}

TEST(CommandCounts, OfACaptureHaveRates)
{
    if (!tools::CaptureFile::isSupported())
        GTEST_SKIP() << "without libpcap";
    capture::Conversation all;
    all.open();
    for (int i = 0; i < 50; ++i)
        all.send(i % 2 == 0, capture::command(i));
    all.close();
    const std::string file = capture::pcap(capture::kLinkTypeRaw, all.m_Packets);
    for (const std::string filter : {"", "--class CCmdHostnameRequest "})
    {
        const test::Run run = test::runProgram("wirelens", "decode --summary " + filter + "-", file);
        const std::vector<Json> lines = linesOf(run.m_Output);
        ASSERT_EQ(lines.size(), 2u) << run.m_Output;
        EXPECT_EQ(lines[0]["commands"], 50);
        // Each packet is acknowledged a millisecond later.
        EXPECT_EQ(lines[1]["all"]["seconds"], 0.098);
        EXPECT_EQ(lines[0]["commands_per_second"], 510.204);
    }
    EXPECT_EQ(linesOf(test::runProgram("wirelens", "decode --summary --direction to_server -", file).m_Output)
                  .back()["all"]["commands"],
              25);
}

} // namespace
