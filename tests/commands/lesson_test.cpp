#include "commands/lesson.h"

#include "tests/support/allocations.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::writeHead;

namespace
{

const zet::String_T<wchar_t> kText = L"text";

void beginReply(CCmdPackager& packager, unsigned short id)
{
    writeHead(packager, id);
    packager.Write(static_cast<unsigned char>(1));
    packager.Write(kText);
}

} // namespace

TEST(Lesson, CutValuesBecomeZeroInAUsedReply)
{
    CCmdPackager pk;
    beginReply(pk, command_id::CCmdMazurixEndGameReply);
    pk.Write(kText);
    pk.Write(21);
    CCmdMazurixEndGameReply reply;
    for (int& value : reply.m_Values)
        value = 9;
    EXPECT_TRUE(reply.Read(&pk));
    EXPECT_EQ(reply.m_Values[0], 21);
    for (int i = 1; i < 7; ++i)
        EXPECT_EQ(reply.m_Values[i], 0);
}

TEST(Lesson, CutTextKeepsTheValuesOfAUsedReply)
{
    CCmdPackager pk;
    beginReply(pk, command_id::CCmdMazurixEndGameReply);
    CCmdMazurixEndGameReply reply;
    reply.m_Values[6] = 9;
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(reply.m_Values[6], 9);
}

TEST(Lesson, ListIsReplacedAndTheLastEntryDecides)
{
    CCmdPackager pk;
    writeHead(pk, command_id::CCmdMazurixOnUsersLeaveLessonNotify);
    pk.Write(2);
    pk.Write30(1001);
    pk.Write(kText);
    CCmdMazurixOnUsersLeaveLessonNotify notify;
    notify.m_Texts.assign(5, L"old");
    EXPECT_TRUE(notify.Read(&pk));
    ASSERT_EQ(notify.m_Texts.size(), 2u);
    EXPECT_TRUE(notify.m_Texts[0].isEmpty());
    EXPECT_EQ(notify.m_Texts[1], kText);
}

TEST(Lesson, CutLastEntryIsStoredAndFails)
{
    CCmdPackager pk;
    writeHead(pk, command_id::CCmdMazurixOnUsersEnterLessonNotify);
    pk.Write(1);
    pk.Write(kText);
    CCmdMazurixOnUsersEnterLessonNotify notify;
    EXPECT_FALSE(notify.Read(&pk));
    ASSERT_EQ(notify.m_MazurixUserInfos.size(), 1u);
    EXPECT_EQ(notify.m_MazurixUserInfos[0].m_Text1, kText);
    EXPECT_TRUE(notify.m_MazurixUserInfos[0].m_Text2.isEmpty());
}

TEST(Lesson, CountOfNoneIsAGoodReplyWithAnEmptyList)
{
    CCmdPackager pk;
    beginReply(pk, command_id::CCmdMazurixGetLessonsReply);
    pk.Write(0);
    CCmdMazurixGetLessonsReply reply;
    reply.m_MazurixLessonInfos.resize(3);
    EXPECT_TRUE(reply.Read(&pk));
    EXPECT_TRUE(reply.m_MazurixLessonInfos.empty());
}

TEST(Lesson, HostileCountTakesNoMemory)
{
    CCmdPackager pk;
    writeHead(pk, command_id::CCmdMazurixSyncLessonsRequest);
    pk.Write(0x7fffffff);
    pk.Write(kText);
    CCmdMazurixSyncLessonsRequest request;
    const test::AllocationCount allocations;
    EXPECT_FALSE(request.Read(&pk));
    EXPECT_LT(allocations.bytes(), 10000);
}
