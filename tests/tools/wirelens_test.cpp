// wirelens as used by a script: input and output lines.
#include "tests/support/run_program.h"
#include "tools/class_table.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <regex>
#include <set>
#include <string>

namespace
{

test::Run wirelens(const std::string& arguments, const std::string& input = "")
{
    return test::runProgram("wirelens", arguments, input);
}

nlohmann::ordered_json json(const std::string& text)
{
    return nlohmann::ordered_json::parse(text);
}

TEST(Wirelens, ReadsAPayloadAndWritesItAgain)
{
    const test::Run run = wirelens("read", "CCmdHostnameRequest cmd 0002000709\n");
    EXPECT_EQ(run.m_Output,
              "{\"class\":\"CCmdHostnameRequest\",\"form\":\"cmd\",\"read\":true,\"consumed\":5,\"size\":5,"
              "\"fields\":{\"m_ClientIndex\":7,\"m_ServerType\":9},\"write\":true,"
              "\"rewrite\":\"0002000709\"}\n");
    EXPECT_EQ(run.m_Code, 0);
}

TEST(Wirelens, ReadsNoBytesAsADash)
{
    const auto answer = json(wirelens("read", "CmdUserAddressRequest data -\n").m_Output);
    EXPECT_EQ(answer["size"], 0);
    EXPECT_EQ(answer["read"], true);
    EXPECT_EQ(answer["rewrite"], "");
}

TEST(Wirelens, FailedReadStillShowsFieldsAndRewrite)
{
    const auto answer = json(wirelens("read", "CCmdServerEcho cmd 0002000700\n").m_Output);
    EXPECT_EQ(answer["read"], false);
    EXPECT_EQ(answer["consumed"], 4);
    EXPECT_EQ(answer["fields"]["m_ClientIndex"], 7);
    EXPECT_EQ(answer["write"], true);
}

TEST(Wirelens, UnknownClassIsAnErrorAndTheNextLineGoesOn)
{
    const test::Run run = wirelens("read", "Nobody cmd 00\nCCmdHostnameRequest cmd 0002000709\n");
    const size_t end = run.m_Output.find('\n');
    const auto first = json(run.m_Output.substr(0, end));
    EXPECT_EQ(first["class"], "Nobody");
    EXPECT_EQ(first.size(), 2u);
    EXPECT_TRUE(first.contains("error"));
    EXPECT_EQ(json(run.m_Output.substr(end + 1))["read"], true);
}

TEST(Wirelens, NewShowsTheDefaults)
{
    const auto answer = json(wirelens("new FGameItem").m_Output);
    EXPECT_EQ(answer["class"], "FGameItem");
    EXPECT_EQ(answer["fields"]["m_Num"], 0);
    EXPECT_EQ(answer["fields"]["m_Name"], "");
    EXPECT_EQ(answer["write"], true);
}

TEST(Wirelens, ExplainGivesOffsetsAndSaysWhereBytesAreMissing)
{
    EXPECT_EQ(wirelens("explain CCmdHostnameRequest 0002000709").m_Output, "0  0002  (version)  2\n"
                                                                           "2  0007  m_ClientIndex  7\n"
                                                                           "4  09  m_ServerType  9\n");
    const test::Run cut = wirelens("explain CCmdHostnameResponse 000200070905");
    EXPECT_NE(cut.m_Output.find("needed 10, had 0 at m_IP"), std::string::npos) << cut.m_Output;
    EXPECT_EQ(cut.m_Code, 1);
}

TEST(Wirelens, ExplainTakesANegativeSizeForNone)
{
    const std::string json =
        R"({"class":"CCmdSkeletons","fields":{"m_Mask1Size":-1,"m_Mask2Size":3,"m_Mask2":"000102"}})";
    const test::Run payload = wirelens("encode --payload -", json + "\n");
    ASSERT_EQ(payload.m_Code, 0) << payload.m_Output;
    const test::Run run = wirelens("explain CCmdSkeletons " + payload.m_Output.substr(0, payload.m_Output.find('\n')));
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    EXPECT_NE(run.m_Output.find("ffffffff  m_Mask1Size  -1\n60    m_Mask1  \n60  00000000  m_Value1  0\n"),
              std::string::npos)
        << run.m_Output;
    EXPECT_NE(run.m_Output.find("000102  m_Mask2"), std::string::npos) << run.m_Output;
}

TEST(Wirelens, DecodesFramesFromHexadecimal)
{
    // Two stream frames: a hostname request, and one with an unassigned id.
    const test::Run run = wirelens("decode -", "0010 14000000 0002000709\n1240 00000000\n");
    const size_t end = run.m_Output.find('\n');
    const auto first = json(run.m_Output.substr(0, end));
    EXPECT_EQ(first["class"], "CCmdHostnameRequest");
    EXPECT_EQ(first["fields"]["m_ServerType"], 9);
    EXPECT_EQ(json(run.m_Output.substr(end + 1))["error"], "unknown id");
}

TEST(Wirelens, DecodesPacketsAndDatagrams)
{
    const auto packet = json(wirelens("decode --packets -", "0b000000 0010 14000000 0002000709").m_Output);
    EXPECT_EQ(packet["class"], "CCmdHostnameRequest");
    const auto datagram = json(wirelens("decode --datagram -", "0010 14 0002000709").m_Output);
    EXPECT_EQ(datagram["class"], "CCmdHostnameRequest");
}

TEST(Wirelens, DoubledIdGoesToTheClassThatFits)
{
    // 0x1200 without a field, and with one int after the head.
    const std::string head = "00020007" + std::string(32, '0') + "00";
    EXPECT_EQ(json(wirelens("decode -", "0012 54000000" + head).m_Output)["class"], "CCmdGS_AllRunDown");
    EXPECT_EQ(json(wirelens("decode -", "0012 64000000" + head + "00000005").m_Output)["class"],
              "CCmdInGamePlayerCountRequest");
}

TEST(Wirelens, CutFrameIsAnErrorThatEndsTheInput)
{
    const test::Run run = wirelens("decode -", "0010 14000000 0002");
    EXPECT_TRUE(json(run.m_Output).contains("error"));
    EXPECT_EQ(run.m_Code, 1);
}

TEST(Wirelens, CatalogueListsEveryClassOnce)
{
    const auto all = json(wirelens("catalogue --json").m_Output);
    std::set<std::string> listed;
    for (const auto& row : all)
        listed.insert(row["class"].get<std::string>());
    EXPECT_EQ(all.size(), tools::classTable().size());
    for (const tools::ClassInfo& info : tools::classTable())
        EXPECT_TRUE(listed.contains(info.m_Name)) << info.m_Name;
}

TEST(Wirelens, MisuseIsExitCodeTwo)
{
    EXPECT_EQ(wirelens("").m_Code, 2);
    EXPECT_EQ(wirelens("nothing").m_Code, 2);
    EXPECT_EQ(wirelens("read too much").m_Code, 2);
    EXPECT_EQ(wirelens("schema").m_Code, 2);
    EXPECT_EQ(wirelens("catalogue --jason").m_Code, 2);
    EXPECT_EQ(wirelens("decode --frames -").m_Code, 2);
    EXPECT_EQ(wirelens("decode --packets --datagram").m_Code, 2);
}

TEST(Wirelens, OptionsEndAtTwoDashes)
{
    // A file, which is not there, and not an option.
    const test::Run run = wirelens("decode --packets -- --datagram");
    EXPECT_NE(run.m_Output.find("cannot open --datagram"), std::string::npos) << run.m_Output;
    EXPECT_EQ(run.m_Code, 1);
}

TEST(Wirelens, MisuseNamesTheFaultAndTheUsageOfTheCommand)
{
    const test::Run option = wirelens("decode --frames -");
    EXPECT_NE(option.m_Output.find("--frames"), std::string::npos) << option.m_Output;
    EXPECT_NE(option.m_Output.find("usage: wirelens decode"), std::string::npos) << option.m_Output;
    const test::Run missing = wirelens("explain CCmdHostnameRequest");
    EXPECT_NE(missing.m_Output.find("HEX"), std::string::npos) << missing.m_Output;
    EXPECT_EQ(missing.m_Code, 2);
}

TEST(Wirelens, HelpDescribesEachOptionBesideIt)
{
    const std::string help = wirelens("decode --help").m_Output;
    for (const char* const option : {"--packets", "--datagram"})
        EXPECT_TRUE(std::regex_search(help, std::regex(std::string("\n +") + option + " +[a-z]"))) << help;
    EXPECT_EQ(wirelens("decode --packets -h -").m_Output, help);
}

TEST(Wirelens, BadInputIsExitCodeOne)
{
    EXPECT_EQ(wirelens("schema Nobody").m_Code, 1);
    EXPECT_EQ(wirelens("new Nobody").m_Code, 1);
    EXPECT_EQ(wirelens("explain CCmdHostnameRequest xyz").m_Code, 1);
    EXPECT_EQ(wirelens("decode is/not/there").m_Code, 1);
    EXPECT_EQ(wirelens("decode ..").m_Code, 1);
}

TEST(Wirelens, EveryCommandHasHelp)
{
    const test::Run all = wirelens("--help");
    EXPECT_EQ(all.m_Code, 0);
    for (const char* const command :
         {"catalogue", "schema", "new", "read", "explain", "decode", "encode", "send", "serve", "proxy", "replay"})
    {
        const std::string form = std::string("wirelens ") + command;
        EXPECT_NE(all.m_Output.find(form), std::string::npos) << all.m_Output;
        const test::Run one = wirelens(std::string(command) + " --help");
        EXPECT_EQ(one.m_Code, 0);
        EXPECT_EQ(one.m_Output.rfind("usage: " + form, 0), 0u) << one.m_Output;
        EXPECT_EQ(wirelens("help " + std::string(command)).m_Output, one.m_Output);
    }
}

TEST(Wirelens, SaysItsVersion)
{
    const test::Run run = wirelens("--version");
    EXPECT_EQ(run.m_Code, 0);
    EXPECT_TRUE(std::regex_match(run.m_Output, std::regex("wirelens [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << run.m_Output;
}

} // namespace
