// "wirelens decode --datagram" showed the first frame of its input and ended well, whatever followed. A datagram holds
// one frame, so what follows is an error with the number of its bytes.
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

// A frame with an address is packed with 16 bytes that the reader of datagrams does not pass over.
TEST(Bugs, DecodeSaysWhatAnAddressLeavesOfADatagram)
{
    const test::Run run =
        test::runProgram("wirelens", "decode --datagram -", "0010 15 " + std::string(32, '1') + " 0002000709");
    EXPECT_NE(run.m_Output.find("16 bytes after the frame"), std::string::npos) << run.m_Output;
    EXPECT_EQ(run.m_Code, 1);
}

} // namespace
