// Every feature of the pack envelopes is played in a run of the platform: its load, a change and a refusal are in the
// transcript, and every message travels. A build without the platform or the players has no such run.
#include "framework/json.h"
#include "framework/string_helper.h"
#include "tests/support/run_program.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <sstream>
#include <string>

namespace
{

struct Row
{
    const char* m_Envelope;
    const char* m_Message;
};

constexpr Row kMessages[] = {
#define MESSAGE(Envelope, Class) {#Envelope, #Class},
#define EITHER_WAY(Request, Reply, Class) {#Request, #Class},
#include "packs/messages.def"
#undef MESSAGE
#undef EITHER_WAY
};

TEST(ArenaPacks, EveryMessageHasItsNumberInTheTables)
{
    const test::Run run = test::runProgram("arena", "numbers");
    ASSERT_EQ(run.m_Code, 0) << run.m_Output;
    std::set<std::string> numbered;
    std::istringstream lines(run.m_Output);
    for (std::string line; std::getline(lines, line);)
    {
        zet::JsonValue table;
        const zet::String_T<wchar_t> text = zet::StringHelper::utf8ToWide(line.c_str());
        ASSERT_TRUE(zet::Json::parseValue(text, table)) << line;
        const zet::JsonValue& messages = table[L"messages"];
        for (int i = 0; i < messages.size(); ++i)
            numbered.insert(zet::StringHelper::wideToUtf8(messages[i][L"message"].asString().getBuffer()).getBuffer());
    }
    for (const Row& row : kMessages)
        EXPECT_EQ(numbered.count(row.m_Message), 1U) << row.m_Message;
}

// A feature: the reply to its load or login, the reply to a change, and what was refused.
struct Family
{
    const char* m_Name;
    const char* m_Load;
    const char* m_Change;
    const char* m_Refusal;
};

constexpr Family kFamilies[] = {
    {"home", "HomePack_LoadData_Reply", "HomePack_StartGame_Reply", "loading the home before the login"},
    {"travel", "TravelWorldPack_LoadData_Reply", "TravelWorldPack_AttractUnLock_Reply", "unlocking again"},
    {"friend", "FriendSystemPack_SelfIdRespond", "FriendSystemPack_FriendListReply", "a friend a second time"},
    {"achievement", "AchievementPack_GetAllAchievement_Reply", "AchievementPack_SendAchievement_Reply",
     "reaching an achievement twice"},
    {"changing-room", "ChangingRoomPack_LoadUserDataReply", "ChangingRoomPack_BuyEquipReply", "buying a piece twice"},
    {"avatar", "CmdAvatarLoadDataReply", "CmdAvatarBuyDataReply", "buying wearables twice"},
    {"in-purchase", "InPurchasePack_CheckIfOpenInPurchase_Reply", "InPurchasePack_SaveOrderId_Reply",
     "saving an order twice"},
    {"wizard", "WizardPack_Login_Reply", "WizardPack_Logout_Reply", "entering the wizard's game twice"},
    {"world-square", "WorldSquarePack_Login_Reply", "WorldSquarePack_PlayerInfo", "entering the square twice"},
    {"match", "MatchPack_EnterBestFamily_Reply", "MatchPack_BestFamilyRandomDice_Reply", "joining twice"},
    {"match type", "MatchPackType_Login_Reply", "MatchPackType_SelectTeam_Reply", "entering the match twice"},
    {"match 4", "Match4Pack_EnterYundonghui_Reply", "Match4Pack_EndGameCalculate_Reply", "entering the meet twice"},
    {"combat", "CombatPack_Enroll_Reply", "CombatPack_PlayerSelectGroup_Reply", "enrolling twice"},
    {"BS4", "BS4Pack_GameSeason_Reply", "BS4Pack_SelectGroup_Reply", "a second group of the season"},
    {"profiling", "CmdProfilingPack_GetMaxValues", "CmdProfilingPack_SubmitMaxValues", "a quantity without a value"},
    {"query-tool", "QT_Login_Reply", "QT_SendProductType", "a report before the tool's login"},
    {"social", "CmdSocialOccupyAPIReply", "CmdSocialCreateAccessTokenReply", "a second API"},
};

// The envelopes that other parts of the platform use.
const std::map<std::string, std::string> kElsewhere = {
    {"CCmdSportPackRequest", "the sport server"},
    {"CCmdSportPackReply", "the sport server"},
    {"CCmdSportPackNotify", "the sport server"},
    {"CCmdVoidDataRequest", "the platform's account handlers"},
    {"CCmdVoidDataReply", "the platform's account handlers"},
};

struct Transcript
{
    // How often a message was sent or received.
    std::map<std::string, int> m_Messages;
    // "a second API: one API for each player" in most cases, else without the reason.
    std::set<std::string> m_Refusals;
};

Transcript readTranscript(const std::string& output)
{
    Transcript transcript;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);)
    {
        for (const std::string what : {" sends ", " receives "})
            if (const size_t at = line.find(what); at != std::string::npos)
                ++transcript.m_Messages[line.substr(at + what.size())];
        constexpr char kRefused[] = ": refused: ";
        if (const size_t at = line.find(kRefused); at != std::string::npos)
            transcript.m_Refusals.insert(line.substr(at + sizeof kRefused - 1));
    }
    return transcript;
}

bool hasRefusal(const Transcript& transcript, const std::string& what)
{
    const auto found = transcript.m_Refusals.lower_bound(what);
    return found != transcript.m_Refusals.end() && found->starts_with(what);
}

TEST(ArenaPacks, EveryFamilyIsPlayedInARun)
{
    const std::string roles = test::runProgram("arena", "--help").m_Output;
    if (roles.find("\n  platform ") == std::string::npos || roles.find("\n  run ") == std::string::npos)
        GTEST_SKIP() << "arena is built without the platform or without players";
    const test::Run run = test::runProgram("arena", "run --players 2 --seconds 0 --verbose");
    EXPECT_EQ(run.m_Code, 0) << run.m_Output;
    const Transcript transcript = readTranscript(run.m_Output);
    for (const Family& family : kFamilies)
    {
        EXPECT_EQ(transcript.m_Messages.count(family.m_Load), 1U) << family.m_Name << ": no " << family.m_Load;
        EXPECT_EQ(transcript.m_Messages.count(family.m_Change), 1U) << family.m_Name << ": no " << family.m_Change;
        EXPECT_TRUE(hasRefusal(transcript, family.m_Refusal)) << family.m_Name << ": not refused: " << family.m_Refusal;
    }
    for (const Row& row : kMessages)
    {
        const bool isAvatar = std::string(row.m_Message).starts_with("CmdAvatar");
        EXPECT_TRUE((kElsewhere.count(row.m_Envelope) > 0 && !isAvatar) ||
                    transcript.m_Messages.count(row.m_Message) > 0)
            << row.m_Message << " did not travel";
    }
    EXPECT_GE(transcript.m_Refusals.size(), 85U);
}

} // namespace
