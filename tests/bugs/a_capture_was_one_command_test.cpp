// "wirelens decode" took a pcapng file for stream frames: the type and length of its first block came out as one
// command of 2.7 MB with an unknown id, without a word about the rest.
#include "tests/support/captures.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

namespace
{

namespace capture = test::capture;

TEST(Bugs, ACaptureIsNotTakenForFrames)
{
    // The length of the first block and what follows it read as a frame of 2.7 MB.
    for (std::string file : {capture::pcapng(1, {}), capture::pcap(1, {})})
        for (const char* const framing : {"", "--packets ", "--datagram "})
        {
            file.resize(3'000'000);
            const test::Run run = test::runProgram("wirelens", std::string("decode ") + framing + "-", file);
            EXPECT_EQ(run.m_Output.find("\"id\""), std::string::npos) << run.m_Output.substr(0, 200);
            EXPECT_NE(run.m_Code, 0);
        }
}

} // namespace
