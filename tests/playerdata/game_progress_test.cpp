#include "playerdata/game_progress.h"

#include "framework/time.h"
#include "packaging/cmd_packager.h"
#include "packaging/data_packager.h"
#include "tests/support/record_helpers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <type_traits>

namespace
{

using test::bytesOf;
using test::secondsOf;

// Every field of the base differs from its default.
FGameObject filledObject()
{
    FGameObject object;
    object.m_GameType = 77;
    object.m_GameId = 17;
    object.m_Level = 3;
    object.m_Text0 = L"t0";
    object.m_Text1 = L"t1";
    object.m_Text2 = L"t2";
    object.m_Text3 = L"t3";
    object.m_Text4 = L"t4";
    object.m_Text5 = L"t5";
    object.m_BestScore = 85.5f;
    object.m_SecondScore = 7.25f;
    return object;
}

void expectBase(const FGameObject& object, int gameType)
{
    EXPECT_EQ(object.m_GameType, gameType);
    EXPECT_EQ(object.m_GameId, 17);
    EXPECT_EQ(object.m_Level, 3);
    EXPECT_TRUE(object.m_Text0 == L"t0");
    EXPECT_TRUE(object.m_Text1 == L"t1");
    EXPECT_TRUE(object.m_Text2 == L"t2");
    EXPECT_TRUE(object.m_Text3 == L"t3");
    EXPECT_TRUE(object.m_Text4 == L"t4");
    EXPECT_TRUE(object.m_Text5 == L"t5");
    EXPECT_EQ(object.m_BestScore, 85.5f);
    EXPECT_EQ(object.m_SecondScore, 7.25f);
}

template <class Game>
class CoolingGame : public testing::Test
{
};
using CoolingGames = testing::Types<FGameTraining, FGameKinect>;
TYPED_TEST_SUITE(CoolingGame, CoolingGames);

} // namespace

TEST(GameObject, GradesWithABorderInTheHigherGrade)
{
    FGameObject object;
    EXPECT_EQ(object.EvaluateGameScore(-1.0f), 0);
    EXPECT_EQ(object.EvaluateGameScore(0.0f), 0);
    EXPECT_EQ(object.EvaluateGameScore(0.01f), 1);
    EXPECT_EQ(object.EvaluateGameScore(59.99f), 1);
    EXPECT_EQ(object.EvaluateGameScore(60.0f), 2);
    EXPECT_EQ(object.EvaluateGameScore(79.99f), 2);
    EXPECT_EQ(object.EvaluateGameScore(80.0f), 3);
    EXPECT_EQ(object.EvaluateGameScore(100000.0f), 3);
    EXPECT_EQ(object.EvaluateGameScore(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(GameObject, KnowsWhichGamesThereAre)
{
    FGameObject object;
    for (const int id : {-1, 0, 5, 100, 1000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()})
    {
        object.m_GameId = id;
        EXPECT_FALSE(object.IsValid()) << id;
    }
    for (const int id : {1, 4, 6, 99})
    {
        object.m_GameId = id;
        EXPECT_TRUE(object.IsValid()) << id;
    }
}

TEST(GameObject, ScoreOperationsDoNothing)
{
    FGameRush rush;
    FGameObject& object = rush;
    const std::string before = bytesOf(rush);
    object.SetBetterScore(99.0f);
    EXPECT_EQ(object.CaculateGameScore(99.0f), 0);
    EXPECT_EQ(bytesOf(rush), before);
}

TEST(GameObject, IsWrittenAndReadAsWhatItIs)
{
    FGameBrain brain;
    brain.m_BrainText = L"brain";
    const FGameObject& object = brain;
    EXPECT_EQ(bytesOf(object), bytesOf(brain));

    CDataPackager packager;
    ASSERT_TRUE(object.Write(&packager));
    FGameBrain other;
    FGameObject& target = other;
    EXPECT_TRUE(target.Read(&packager));
    EXPECT_TRUE(other.m_BrainText == L"brain");
    EXPECT_EQ(packager.GetReadPointer(), packager.GetDataSize());
}

TEST(GameMusic, GradesWithABorderInTheLowerGrade)
{
    FGameMusic music;
    FGameObject& object = music;
    EXPECT_EQ(object.EvaluateGameScore(2.0f), 0);
    EXPECT_EQ(object.EvaluateGameScore(2.01f), 1);
    EXPECT_EQ(object.EvaluateGameScore(4.0f), 1);
    EXPECT_EQ(object.EvaluateGameScore(4.01f), 2);
    EXPECT_EQ(object.EvaluateGameScore(6.0f), 2);
    EXPECT_EQ(object.EvaluateGameScore(6.01f), 3);
    EXPECT_EQ(object.EvaluateGameScore(std::numeric_limits<float>::quiet_NaN()), 0);
}

TEST(GameMusic, IsNumberedFrom1000)
{
    FGameMusic music;
    FGameObject& object = music;
    music.m_GameId = 999;
    EXPECT_FALSE(object.IsValid());
    music.m_GameId = 1000;
    EXPECT_TRUE(object.IsValid());
    music.m_GameId = 7;
    EXPECT_FALSE(object.IsValid());
    EXPECT_TRUE(music.FGameObject::IsValid());
}

TEST(GameKinds, ReturnTheirKindFromTheStart)
{
    EXPECT_EQ(FGameObject().m_GameType, 0);
    EXPECT_EQ(FGameTraining().m_GameType, 1);
    EXPECT_EQ(FGameMission().m_GameType, 2);
    EXPECT_EQ(FGameMatch().m_GameType, 3);
    EXPECT_EQ(FGameRush().m_GameType, 10);
    EXPECT_EQ(FGameMusic().m_GameType, 11);
    EXPECT_EQ(FGameBrain().m_GameType, 12);
    EXPECT_EQ(FGameKinect().m_GameType, 14);
    EXPECT_EQ(FGameNewbie().m_GameType, 15);
}

TEST(GameKinds, HaveFixedAnswers)
{
    const FGameMission mission;
    EXPECT_TRUE(mission.GetGoldenDescription().isEmpty());
    EXPECT_TRUE(mission.GetSilverDescription().isEmpty());
    EXPECT_TRUE(mission.GetCopperDescription().isEmpty());
    EXPECT_EQ(mission.GetMissionCompleteState(), 0);
    FGameMatch match;
    match.m_MatchFlag = true;
    EXPECT_TRUE(match.GetMatchDescription().isEmpty());
    EXPECT_FALSE(match.IsMatchComplete());
    FGameRush rush;
    rush.m_RushStars = 3;
    rush.m_RushText = L"text";
    EXPECT_TRUE(rush.GetRushDescription().isEmpty());
    EXPECT_FALSE(rush.IsComplete());
}

TEST(GameKinds, AssignmentFromTheBasePutsTheirOwnKindIn)
{
    const FGameObject object = filledObject();

    FGameMission mission;
    mission.m_GoldenTarget = 1.5f;
    mission.m_SilverTarget = 2.5f;
    mission.m_CopperTarget = 3.5f;
    mission.m_MissionState = 4;
    mission = object;
    expectBase(mission, 2);
    EXPECT_EQ(mission.m_GoldenTarget, 1.5f);
    EXPECT_EQ(mission.m_SilverTarget, 2.5f);
    EXPECT_EQ(mission.m_CopperTarget, 3.5f);
    EXPECT_EQ(mission.m_MissionState, 4);

    FGameMatch match;
    match.m_MatchScore = 1.5f;
    match.m_MatchFlag = true;
    match.m_MatchValue = 3;
    match.m_MatchKind = 4;
    match = object;
    expectBase(match, 3);
    EXPECT_EQ(match.m_MatchScore, 1.5f);
    EXPECT_TRUE(match.m_MatchFlag);
    EXPECT_EQ(match.m_MatchValue, 3);
    EXPECT_EQ(match.m_MatchKind, 4);

    FGameRush rush;
    rush.m_RushText = L"text";
    rush.m_RushKind = L"kind";
    rush.m_RushParam1 = 6;
    rush = object;
    expectBase(rush, 10);
    EXPECT_TRUE(rush.m_RushText == L"text");
    EXPECT_TRUE(rush.m_RushKind == L"kind");
    EXPECT_EQ(rush.m_RushParam1, 6);

    FGameMusic music;
    music.m_MusicSlot = 5;
    music.m_MusicRowC[1] = 6;
    music = object;
    expectBase(music, 11);
    EXPECT_EQ(music.m_MusicSlot, 5);
    EXPECT_EQ(music.m_MusicRowC[1], 6);

    FGameBrain brain;
    brain.m_BrainText = L"brain";
    brain.m_BrainFlag = false;
    brain = object;
    expectBase(brain, 12);
    EXPECT_TRUE(brain.m_BrainText == L"brain");
    EXPECT_FALSE(brain.m_BrainFlag);
}

TEST(GameNewbie, AssignmentFromTheBaseKeepsTheKindOfTheSource)
{
    FGameObject object = filledObject();
    object.m_GameType = 2;
    FGameNewbie newbie;
    newbie = object;
    expectBase(newbie, 2);
}

TEST(GameTraining, AssignmentFromTheBasePutsAllBackButTheGroup)
{
    FGameTraining training;
    training.m_Group = 9;
    training.m_DateSlot = 3;
    training.m_Param0 = 4;
    training.m_Param1 = 5;
    training.m_Param2 = 6;
    training.m_Flag = true;
    training.m_Link = 7;
    training.m_Param3 = 8;
    training.m_Locked = false;
    training.m_LastPlayTime = L"2020-1-1 00:00:00";
    training.m_PlayTimes = 2;
    training.m_CDDuration = 900;
    training.m_CDTime = 12.5f;
    training = filledObject();
    expectBase(training, 1);

    FGameTraining expected;
    static_cast<FGameObject&>(expected) = training;
    expected.m_Group = 9;
    EXPECT_EQ(bytesOf(training), bytesOf(expected));
    EXPECT_TRUE(training.m_LastPlayTime == L"2013-1-1 00:00:00");
}

TEST(GameKinect, AssignmentFromTheBaseResetsItsOwnFields)
{
    FGameKinect kinect;
    kinect.m_LastPlayTime = L"2020-1-1 00:00:00";
    kinect.m_PlayTimes = 2;
    kinect.m_CDDuration = 900;
    kinect.m_CDTime = 12.5f;
    kinect = filledObject();
    expectBase(kinect, 14);

    FGameKinect expected;
    static_cast<FGameObject&>(expected) = kinect;
    EXPECT_EQ(bytesOf(kinect), bytesOf(expected));
}

TEST(GameKinect, ResetLeavesTheBase)
{
    FGameKinect kinect;
    static_cast<FGameObject&>(kinect) = filledObject();
    kinect.m_LastPlayTime = L"2020-1-1 00:00:00";
    kinect.m_PlayTimes = 2;
    kinect.m_CDDuration = 900;
    kinect.m_CDTime = 12.5f;
    kinect.Reset();
    expectBase(kinect, 77);
    EXPECT_TRUE(kinect.m_LastPlayTime == L"2013-1-1 00:00:00");
    EXPECT_EQ(kinect.m_PlayTimes, 0);
    EXPECT_EQ(kinect.m_CDDuration, 0);
    EXPECT_EQ(kinect.m_CDTime, 0.0f);
}

TEST(GameRush, AssignmentLeavesTheTextAndWhatIsNotSent)
{
    FGameRush source;
    static_cast<FGameObject&>(source) = filledObject();
    source.m_RushScore = 1.5f;
    source.m_RushLevel = 2;
    source.m_RushStars = 3;
    source.m_RushText = L"new text";
    source.m_RushFlag0 = true;
    source.m_RushFlag1 = true;
    source.m_RushFlag2 = true;
    source.m_RushParam0 = 4;
    source.m_RushParam1 = 5;
    source.m_RushParam2 = 6;
    source.m_RushKind = L"new kind";
    source.m_RushNote = L"new note";
    source.m_RushLocal0 = 7;
    source.m_RushLocal1 = 8;
    source.m_RushLocal2 = 9;

    FGameRush target;
    target.m_RushText = L"old text";
    target.m_RushNote = L"old note";
    target.m_RushLocal0 = -7;
    target.m_RushLocal1 = -8;
    target.m_RushLocal2 = -9;
    FGameRush moved = target;

    target = source;
    EXPECT_TRUE(target.m_RushText == L"old text");
    EXPECT_TRUE(target.m_RushNote == L"old note");
    EXPECT_EQ(target.m_RushLocal0, -7);
    EXPECT_EQ(target.m_RushLocal1, -8);
    EXPECT_EQ(target.m_RushLocal2, -9);
    // All other fields are equal.
    target.m_RushText = L"new text";
    EXPECT_EQ(bytesOf(target), bytesOf(source));

    const FGameRush copy = source;
    EXPECT_TRUE(copy.m_RushText == L"new text");
    EXPECT_TRUE(copy.m_RushNote == L"new note");
    EXPECT_EQ(copy.m_RushLocal2, 9);

    // Assignment from a temporary follows the same rule.
    moved = FGameRush(source);
    EXPECT_TRUE(moved.m_RushText == L"old text");
    EXPECT_TRUE(moved.m_RushNote == L"old note");
    EXPECT_EQ(moved.m_RushLevel, 2);
}

TEST(GameRush, WhatIsNotSentStaysOnReading)
{
    FGameRush rush;
    rush.m_RushNote = L"note";
    rush.m_RushLocal0 = 1;
    rush.m_RushLocal1 = 2;
    rush.m_RushLocal2 = 3;
    CCmdPackager packager;
    ASSERT_TRUE(FGameRush().Write(&packager));
    ASSERT_TRUE(rush.Read(&packager));
    EXPECT_TRUE(rush.m_RushNote == L"note");
    EXPECT_EQ(rush.m_RushLocal0, 1);
    EXPECT_EQ(rush.m_RushLocal1, 2);
    EXPECT_EQ(rush.m_RushLocal2, 3);
}

TYPED_TEST(CoolingGame, CoolDownGrowsWithThePlaysOfTheDay)
{
    const zet::TestClock clock(secondsOf(L"2020-5-6 12:00:00"));
    const int expected[][2] = {{std::numeric_limits<int>::min(), 0},
                               {-1, 0},
                               {0, 0},
                               {1, 300},
                               {2, 900},
                               {3, 1800},
                               {4, 3600},
                               {5, 14400},
                               {6, 28800},
                               {7, 86400},
                               {8, 86400},
                               {std::numeric_limits<int>::max(), 86400}};
    for (const auto& [plays, seconds] : expected)
    {
        TypeParam game;
        game.m_LastPlayTime = L"2020-5-6 12:00:00";
        game.m_PlayTimes = plays;
        game.SetCDTimeByPlayTimes();
        EXPECT_EQ(game.m_CDDuration, seconds) << plays;
        EXPECT_EQ(game.m_CDTime, static_cast<float>(seconds)) << plays;
    }
}

TYPED_TEST(CoolingGame, WhatIsLeftOfTheCoolDownCountsFromTheLastPlay)
{
    zet::TestClock clock(secondsOf(L"2020-5-6 12:00:00"));
    TypeParam game;
    game.m_PlayTimes = 3;

    game.m_LastPlayTime = L"2020-5-6 11:00:00";
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDDuration, 1800);
    EXPECT_EQ(game.m_CDTime, 0.0f);

    game.m_LastPlayTime = L"2020-5-6 11:50:00";
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDTime, 1200.0f);

    clock.setTime(secondsOf(L"2020-5-6 12:19:59"));
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDTime, 1.0f);
    clock.advance(1000);
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDTime, 0.0f);
}

TYPED_TEST(CoolingGame, WithoutPlaysTheCoolDownThatRunsStays)
{
    TypeParam game;
    game.m_CDTime = 50.0f;
    game.m_CDDuration = 900;
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDDuration, 0);
    EXPECT_EQ(game.m_CDTime, 50.0f);
}

TYPED_TEST(CoolingGame, DateThatIsNoneCountsAsLongPast)
{
    const zet::TestClock clock(secondsOf(L"2020-5-6 12:00:00"));
    TypeParam game;
    game.m_PlayTimes = 7;
    game.m_CDTime = 5.0f;
    game.m_LastPlayTime = L"yesterday";
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDDuration, 86400);
    EXPECT_EQ(game.m_CDTime, 0.0f);
}

// 2^32 seconds after the last play the low half of the difference is 0 again.
TYPED_TEST(CoolingGame, DifferenceKeepsItsLowHalf)
{
    TypeParam game;
    game.m_PlayTimes = 1;
    game.m_LastPlayTime = L"2020-5-6 12:00:00";
    zet::TestClock clock(secondsOf(L"2020-5-6 12:00:00") + (1LL << 32) + 100);
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDTime, 200.0f);
    // The smallest difference; the remainder needs more than an int.
    clock.setTime(secondsOf(L"2020-5-6 12:00:00") + (1LL << 31));
    game.SetCDTimeByPlayTimes();
    EXPECT_EQ(game.m_CDTime, 2147483948.0f);
}

TYPED_TEST(CoolingGame, TickStopsBelowZeroAndLeavesItThere)
{
    TypeParam game;
    game.m_CDTime = 2.5f;
    game.TickCD(1.0f);
    EXPECT_EQ(game.m_CDTime, 1.5f);
    game.TickCD(1.0f);
    game.TickCD(1.0f);
    EXPECT_EQ(game.m_CDTime, -0.5f);
    game.TickCD(1.0f);
    EXPECT_EQ(game.m_CDTime, -0.5f);
    game.m_CDTime = 0.0f;
    game.TickCD(1.0f);
    EXPECT_EQ(game.m_CDTime, 0.0f);
}

TEST(GameRecords, MoveWithoutCopying)
{
    static_assert(std::is_nothrow_move_constructible_v<FGameTraining>);
    static_assert(std::is_nothrow_move_constructible_v<FGameKinect>);
    static_assert(std::is_nothrow_move_constructible_v<FGameRush>);
    static_assert(!std::has_virtual_destructor_v<FGameObject>);
    FGameTraining source;
    const wchar_t* block = source.m_LastPlayTime;
    const FGameTraining target = std::move(source);
    EXPECT_EQ(target.m_LastPlayTime.getBuffer(), block);
}
