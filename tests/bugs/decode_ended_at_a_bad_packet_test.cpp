// "wirelens decode --packets" ended at the first packet without a valid frame, although the packet's length gives the
// start of the next one. It now reports the error, continues there, and exits with code 1.
#include "tests/support/run_program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <vector>

namespace
{

using nlohmann::json;

constexpr char kGood[] = "0b000000 0010 14000000 0002000709 ";

std::vector<json> linesOf(const std::string& text)
{
    std::vector<json> lines;
    std::istringstream all(text);
    for (std::string line; std::getline(all, line);)
        lines.push_back(json::parse(line));
    return lines;
}

TEST(Bugs, DecodeGoesOnAfterABadPacket)
{
    // Between two good packets: one too short for a frame's head, one whose frame asks for more than the packet has,
    // and one whose size word is beyond all frames.
    const test::Run run = test::runProgram("wirelens", "decode --packets -",
                                           std::string(kGood) + "03000000 001014 " + "07000000 0010 14000000 00 " +
                                               "06000000 0010 ffffffff " + kGood);
    const auto lines = linesOf(run.m_Output);
    ASSERT_EQ(lines.size(), 5u) << run.m_Output;
    EXPECT_EQ(lines[0]["class"], "CCmdHostnameRequest");
    EXPECT_EQ(lines[1], json({{"offset", 19}, {"error", "no whole frame head"}}));
    EXPECT_EQ(lines[2], json({{"offset", 26}, {"error", "frame of 11 bytes, had 7"}}));
    EXPECT_EQ(lines[3]["offset"], 37);
    EXPECT_TRUE(lines[3].contains("error"));
    EXPECT_EQ(lines[4]["class"], "CCmdHostnameRequest");
    EXPECT_EQ(lines[4]["offset"], 47);
    EXPECT_EQ(run.m_Code, 1);
}

TEST(Bugs, DecodeSaysWhatAPacketHoldsAfterItsFrame)
{
    const test::Run run = test::runProgram("wirelens", "decode --packets -",
                                           std::string("0d000000 0010 14000000 0002000709 aabb ") + kGood);
    const auto lines = linesOf(run.m_Output);
    ASSERT_EQ(lines.size(), 3u) << run.m_Output;
    EXPECT_EQ(lines[0]["class"], "CCmdHostnameRequest");
    EXPECT_EQ(lines[1], json({{"offset", 15}, {"error", "2 bytes after the frame"}}));
    EXPECT_EQ(lines[2]["class"], "CCmdHostnameRequest");
    EXPECT_EQ(run.m_Code, 1);
}

} // namespace
