// wirelens encode, as used by a script.
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

test::Run encode(const std::string& arguments, const std::string& input)
{
    return test::runProgram("wirelens", "encode " + arguments, input);
}

const char kLine[] = "{\"class\":\"CCmdHostnameRequest\",\"fields\":{\"m_ClientIndex\":7,\"m_ServerType\":9}}\n";

TEST(WirelensEncode, PrintsTheFrameThatDecodeReads)
{
    const test::Run run = encode("", kLine);
    EXPECT_EQ(run.m_Output, "0010140000000002000709\n");
    EXPECT_EQ(run.m_Code, 0);
    const std::string line = test::runProgram("wirelens", "decode", run.m_Output).m_Output;
    EXPECT_EQ(encode("", line).m_Output, run.m_Output) << line;
}

TEST(WirelensEncode, PrintsEachFraming)
{
    EXPECT_EQ(encode("--payload", kLine).m_Output, "0002000709\n");
    EXPECT_EQ(encode("--packets", kLine).m_Output, "0b0000000010140000000002000709\n");
    EXPECT_EQ(encode("--datagram", kLine).m_Output, "0010140002000709\n");
    EXPECT_EQ(encode("--raw --payload", kLine).m_Output, std::string("\x00\x02\x00\x07\x09", 5));
}

TEST(WirelensEncode, PrintsARecordWithoutAFrame)
{
    const std::string line = test::runProgram("wirelens", "new FGameItem").m_Output;
    const std::string hex = encode("", line).m_Output;
    EXPECT_NE(line.find("\"rewrite\":\"" + hex.substr(0, hex.size() - 1) + "\""), std::string::npos) << hex << line;
    const test::Run framed = encode("--packets", line);
    EXPECT_NE(framed.m_Output.find("FGameItem is not a command"), std::string::npos) << framed.m_Output;
    EXPECT_EQ(framed.m_Code, 1);
}

TEST(WirelensEncode, ABadLineIsReportedAndTheNextOneFollows)
{
    const test::Run run = encode("", "\nnothing\n{\"notice\":\"cut\"}\n" + std::string(kLine));
    EXPECT_EQ(run.m_Output, "wirelens: line 2: it is not valid JSON\n0010140000000002000709\n");
    EXPECT_EQ(run.m_Code, 1);
}

TEST(WirelensEncode, MisuseIsExitCodeTwo)
{
    EXPECT_EQ(encode("--packets --payload", "").m_Code, 2);
    EXPECT_EQ(encode("--width 8", "").m_Code, 2);
    EXPECT_EQ(encode("is/not/there", "").m_Code, 1);
}

} // namespace
