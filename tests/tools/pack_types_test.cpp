// Packs and tunnels opened by the tables of pack routers.
#include "tools/pack_types.h"

#include "commands/zone_tunnel.h"
#include "framework/string_helper.h"
#include "host/pack_router.h"
#include "packs/home.h"
#include "tests/support/run_program.h"
#include "tools/class_table.h"
#include "tools/frame_decoder.h"
#include "tools/object_json.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace
{

using Json = nlohmann::ordered_json;

constexpr int kStart = 7;

std::string tableOfRouter()
{
    host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply> home;
    home.number<HomePack_StartGame_Request>(kStart);
    home.number<HomePack_SaveData_Reply>(8);
    return zet::StringHelper::wideToUtf8(home.toJson().getBuffer()).getBuffer();
}

std::string frameOf(const CCmdHead& command)
{
    CCmdPackager packager;
    EXPECT_TRUE(command.Write(&packager));
    int size = 0;
    const auto* const frame = packager.FrameInPlace(size);
    return {reinterpret_cast<const char*>(frame), static_cast<size_t>(size)};
}

Json decoded(const std::string& frame, const tools::PackTypes* types)
{
    Json json;
    tools::FrameDecoder decoder(tools::Framing::kStream,
                                [&](std::string_view line, bool) { json = Json::parse(line); });
    decoder.setPackTypes(types);
    decoder.add(frame);
    decoder.finish();
    return json;
}

// In place, since an envelope copies deep.
void fill(CCmdHomePackRequest& envelope)
{
    HomePack_StartGame_Request start;
    start.m_Value1 = 41;
    start.m_Value3 = -3;
    envelope.SetClientIndex(1);
    envelope.m_PackType = kStart;
    EXPECT_TRUE(start.Write(&envelope.m_PackData));
}

TEST(PackTypes, TheTableOfARouterOpensItsMessages)
{
    tools::PackTypes types;
    ASSERT_EQ(types.add(tableOfRouter() + "\n" + R"({"messages":[]})"), "");
    ASSERT_NE(types.find("CCmdHomePackRequest", kStart), nullptr);
    EXPECT_STREQ(types.find("CCmdHomePackRequest", kStart)->m_Name, "HomePack_StartGame_Request");
    EXPECT_EQ(types.find("CCmdHomePackReply", kStart), nullptr);

    CCmdHomePackRequest envelope;
    fill(envelope);
    const std::string frame = frameOf(envelope);
    const Json plain = decoded(frame, nullptr);
    EXPECT_FALSE(plain.contains("message"));
    Json opened = decoded(frame, &types);
    EXPECT_EQ(opened["message"]["class"], "HomePack_StartGame_Request");
    EXPECT_EQ(opened["message"]["fields"]["m_Value1"], 41);
    EXPECT_EQ(opened["message"]["fields"]["m_Value3"], -3);
    EXPECT_FALSE(opened["message"].contains("error"));
    opened.erase("message");
    EXPECT_EQ(opened.dump(), plain.dump());
}

TEST(PackTypes, ANumberOrBytesThatDoNotFitAreSaid)
{
    tools::PackTypes types;
    ASSERT_EQ(types.add(tableOfRouter()), "");
    CCmdHomePackRequest other;
    fill(other);
    other.m_PackType = kStart + 100;
    EXPECT_EQ(decoded(frameOf(other), &types)["message"].dump(), R"({"error":"no message has this number"})");
    CCmdHomePackRequest longer;
    fill(longer);
    longer.m_PackData.Write(5);
    EXPECT_EQ(decoded(frameOf(longer), &types)["message"]["error"], "4 bytes after the last field");
    CCmdHomePackRequest empty;
    empty.SetClientIndex(1);
    empty.m_PackType = kStart;
    const Json line = decoded(frameOf(empty), &types);
    EXPECT_EQ(line["message"]["error"], "refused by Read");
    // The command itself is whole.
    EXPECT_FALSE(line.contains("error"));
}

TEST(PackTypes, PacksInTunnelsAndTunnelsInTunnelsAreOpened)
{
    tools::PackTypes types;
    ASSERT_EQ(types.add(tableOfRouter()), "");
    CCmdHomePackRequest envelope;
    fill(envelope);
    CCmdGZ_serverToClient first;
    first.SetClientIndex(1);
    ASSERT_TRUE(toCCmdGZ_serverToClient(&envelope, &first));
    CCmdGZ_clientToServer second;
    second.SetClientIndex(1);
    ASSERT_TRUE(toCCmdGZ_clientToServer(&first, &second));
    const Json plain = decoded(frameOf(second), nullptr);
    EXPECT_EQ(plain["inner"]["class"], "CCmdGZ_serverToClient");
    EXPECT_FALSE(plain["inner"].contains("inner"));
    const Json opened = decoded(frameOf(second), &types);
    EXPECT_EQ(opened["inner"]["inner"]["class"], "CCmdHomePackRequest");
    EXPECT_EQ(opened["inner"]["inner"]["message"]["fields"]["m_Value1"], 41);
}

TEST(PackTypes, TextsThatAreNotTablesAreRefused)
{
    const auto fault = [](const std::string& text) { return tools::PackTypes().add(text); };
    const auto row = [](const std::string& text) { return R"({"messages":[)" + text + "]}"; };
    EXPECT_EQ(fault("messages"), "it is not JSON");
    EXPECT_EQ(fault("{"), "it is not JSON");
    EXPECT_EQ(fault("[1]"), "a table has no \"messages\"");
    EXPECT_EQ(fault("{}"), "a table has no \"messages\"");
    EXPECT_EQ(fault(row("1")).find("an entry is not "), 0u);
    EXPECT_EQ(fault(row(R"({"number":1,"message":"HomePack_None","envelopes":[]})")),
              "there is no message HomePack_None");
    // A class template of the host is passed over; what is no class of the library is not.
    EXPECT_EQ(fault(row(R"({"number":1,"message":"host::Request<HomePack_None>","envelopes":[]})")), "");
    EXPECT_EQ(fault(row(R"({"number":1,"message":"CCmdLogin","envelopes":[]})")), "there is no message CCmdLogin");
    EXPECT_EQ(fault(row(R"({"number":1,"message":"HomePack_SaveData_Reply","envelopes":["CCmdLogin"]})")),
              "an envelope of HomePack_SaveData_Reply is not a class of packs");
    EXPECT_EQ(fault(row(R"({"number":9000000000,"message":"HomePack_SaveData_Reply","envelopes":[]})")),
              "the number of HomePack_SaveData_Reply is not one of a pack");
    EXPECT_EQ(fault(row(R"({"number":1,"message":"HomePack_SaveData_Reply","envelopes":["CCmdHomePackReply"]},)"
                        R"({"number":1,"message":"HomePack_LoadData_Reply","envelopes":["CCmdHomePackReply"]})")),
              "HomePack_LoadData_Reply and HomePack_SaveData_Reply have the same number in CCmdHomePackReply");
    EXPECT_EQ(fault("[" + tableOfRouter() + "," + tableOfRouter() + "]"), "");
    EXPECT_EQ(fault(" \n"), "");
}

TEST(PackTypes, WirelensReadsThemFromAFile)
{
    CCmdHomePackRequest envelope;
    fill(envelope);
    const std::string frame = frameOf(envelope);
    const auto path = std::filesystem::temp_directory_path() / "commonground_pack_types_test.json";
    std::ofstream(path) << tableOfRouter();
    const test::Run opened =
        test::runProgram("wirelens", "decode --pack-types " + path.string(), tools::hexOf(frame.data(), frame.size()));
    EXPECT_NE(opened.m_Output.find(R"("message":{"class":"HomePack_StartGame_Request")"), std::string::npos)
        << opened.m_Output;
    EXPECT_EQ(opened.m_Code, 0);
    std::ofstream(path) << "{}";
    const test::Run refused = test::runProgram("wirelens", "decode --pack-types " + path.string(), "");
    EXPECT_NE(refused.m_Output.find("a table has no \"messages\""), std::string::npos) << refused.m_Output;
    EXPECT_EQ(refused.m_Code, 1);
    std::filesystem::remove(path);
    EXPECT_EQ(test::runProgram("wirelens", "decode --pack-types " + path.string(), "").m_Code, 1);
}

} // namespace
