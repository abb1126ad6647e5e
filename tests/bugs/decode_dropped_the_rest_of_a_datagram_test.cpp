// "wirelens decode --datagram" printed the first frame of its input and succeeded, whatever followed. A datagram has
// one frame, so extra bytes are now reported as an error with their number.
#include "tests/support/run_program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace
{

using nlohmann::json;

TEST(Bugs, DecodeSaysWhatFollowsTheFrameOfADatagram)
{
    const test::Run run = test::runProgram("wirelens", "decode --datagram -", "0010 14 0002000709 0010 14 0002000709");
    const size_t end = run.m_Output.find('\n');
    EXPECT_EQ(json::parse(run.m_Output.substr(0, end))["class"], "CCmdHostnameRequest");
    ASSERT_LT(end + 1, run.m_Output.size()) << run.m_Output;
    EXPECT_EQ(json::parse(run.m_Output.substr(end + 1)), json({{"offset", 8}, {"error", "8 bytes after the frame"}}));
    EXPECT_EQ(run.m_Code, 1);
}

// A frame with an address is packed with 16 bytes that the reader of datagrams does not consume.
TEST(Bugs, DecodeSaysWhatAnAddressLeavesOfADatagram)
{
    const test::Run run =
        test::runProgram("wirelens", "decode --datagram -", "0010 15 " + std::string(32, '1') + " 0002000709");
    EXPECT_NE(run.m_Output.find("16 bytes after the frame"), std::string::npos) << run.m_Output;
    EXPECT_EQ(run.m_Code, 1);
}

} // namespace
