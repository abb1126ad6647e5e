// Capture files, as wirelens decode reads them.
#include "tools/capture/capture_file.h"

#include "tests/support/captures.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <sstream>
#include <string>
#include <vector>

namespace
{

namespace capture = test::capture;

using Json = nlohmann::ordered_json;
using test::capture::ByteOrder;
using tools::Recognised;

std::vector<Json> jsonLines(const test::Run& run)
{
    std::vector<Json> lines;
    std::istringstream all(run.m_Output);
    for (std::string line; std::getline(all, line);)
        if (line.starts_with("{"))
            lines.push_back(Json::parse(line));
    return lines;
}

std::vector<std::string> packets()
{
    capture::Conversation all;
    all.open();
    all.send(true, capture::commands(0, 20), 40);
    all.close();
    return all.m_Packets;
}

TEST(CaptureFile, IsRecognisedByItsBeginning)
{
    for (const auto order : {ByteOrder::kLittle, ByteOrder::kBig})
    {
        EXPECT_EQ(tools::recogniseCapture(capture::pcap(1, {}, order)), Recognised::kYes);
        EXPECT_EQ(tools::recogniseCapture(capture::pcapng(1, {}, order)), Recognised::kYes);
        const std::string file = capture::pcapng(1, {}, order);
        for (size_t size = 0; size < tools::kMagicBytes; ++size)
            EXPECT_EQ(tools::recogniseCapture(file.substr(0, size)), Recognised::kUndecided) << size;
    }
    EXPECT_EQ(tools::recogniseCapture("\n\r\r\n00101400"), Recognised::kNo);
    EXPECT_EQ(tools::recogniseCapture("0010"), Recognised::kNo);
}

TEST(CaptureFile, WhiteSpaceBeforeHexadecimalIsNotACapture)
{
    const test::Run run = test::runProgram("wirelens", "decode -", "\n\r\r\n0010 14000000 0002000709\n");
    EXPECT_NE(run.m_Output.find("CCmdHostnameRequest"), std::string::npos) << run.m_Output;
    EXPECT_EQ(test::runProgram("wirelens", "decode -", "\n\r\r\n").m_Code, 0);
}

TEST(CaptureFile, ATimeAfterTheYear9999IsItsLastSecond)
{
    if (!tools::CaptureFile::isSupported())
        GTEST_SKIP() << "no libpcap";
    std::string file = capture::pcapng(capture::kLinkTypeRaw, packets(), ByteOrder::kLittle);
    // The time of each packet: after the blocks of the file and the interface, a block's head and its interface.
    for (size_t block = 28 + 20; block < file.size(); block += static_cast<unsigned char>(file[block + 4]))
        file.replace(block + 12, 8, std::string(8, '\xFF'));
    const test::Run run = test::runProgram("wirelens", "decode", file);
    const auto lines = jsonLines(run);
    ASSERT_EQ(lines.size(), 20u) << run.m_Output;
    EXPECT_EQ(lines[0]["time"], "9999-12-31T23:59:59.551615Z");
}

TEST(CaptureFile, EveryFormatGivesTheCommands)
{
    for (const auto order : {ByteOrder::kLittle, ByteOrder::kBig})
        for (const std::string& file : {capture::pcap(capture::kLinkTypeRaw, packets(), order),
                                        capture::pcapng(capture::kLinkTypeRaw, packets(), order)})
        {
            const test::Run run = test::runProgram("wirelens", "decode", file);
            if (!tools::CaptureFile::isSupported())
            {
                EXPECT_NE(run.m_Output.find("built without libpcap"), std::string::npos) << run.m_Output;
                EXPECT_EQ(run.m_Code, 2);
                continue;
            }
            const auto lines = jsonLines(run);
            ASSERT_EQ(lines.size(), 20u) << run.m_Output;
            EXPECT_EQ(lines[0]["time"], "2023-11-14T22:13:20.003000Z");
            EXPECT_EQ(lines[19]["fields"]["m_ServerType"], 19);
            EXPECT_NE(run.m_Output.find("20 commands"), std::string::npos) << run.m_Output;
            EXPECT_EQ(run.m_Code, 0);
        }
}

TEST(CaptureFile, NoticesAndTotalsAreLinesWithTheSwitch)
{
    if (!tools::CaptureFile::isSupported())
        GTEST_SKIP() << "without libpcap";
    auto all = packets();
    all.erase(all.begin() + 5);
    const auto lines = jsonLines(test::runProgram("wirelens", "decode --notices", capture::pcap(101, all)));
    ASSERT_GT(lines.size(), 2u);
    size_t notices = 0;
    for (const Json& line : lines)
        if (line.contains("notice"))
        {
            ++notices;
            EXPECT_EQ(line["direction"], "to_server");
            EXPECT_NE(line["notice"].get<std::string>().find("gap of 40 bytes"), std::string::npos) << line;
        }
    EXPECT_EQ(notices, 1u);
    EXPECT_EQ(lines.back()["totals"]["lost_bytes"], 40);
    EXPECT_EQ(lines.back()["totals"]["packets"], all.size());
}

TEST(CaptureFile, ACutFileGivesItsWholePacketsAndCodeOne)
{
    if (!tools::CaptureFile::isSupported())
        GTEST_SKIP() << "without libpcap";
    const std::string file = capture::pcap(101, packets());
    const test::Run run = test::runProgram("wirelens", "decode", file.substr(0, file.size() - 3));
    EXPECT_EQ(jsonLines(run).size(), 20u) << run.m_Output;
    EXPECT_NE(run.m_Output.find("truncated"), std::string::npos) << run.m_Output;
    EXPECT_EQ(run.m_Code, 1);
    EXPECT_EQ(test::runProgram("wirelens", "decode", file.substr(0, 10)).m_Code, 1);
}

} // namespace
