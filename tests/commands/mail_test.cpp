#include "commands/mail.h"

#include "tests/support/allocations.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <string>

using tests::writeHead;

namespace
{

void beginReply(CCmdPackager& packager)
{
    writeHead(packager, command_id::CCmdMailReceiveReply);
    packager.Write(zet::String_T<wchar_t>(L"letters"));
}

} // namespace

TEST(MailReceiveReply, CutCountEmptiesTheListAndReadsWell)
{
    CCmdPackager pk;
    beginReply(pk);
    CCmdMailReceiveReply reply;
    reply.m_Letters.resize(2);
    EXPECT_TRUE(reply.Read(&pk));
    EXPECT_TRUE(reply.m_Letters.empty());
}

TEST(MailReceiveReply, CutTextKeepsTheLetters)
{
    CCmdPackager pk;
    writeHead(pk, command_id::CCmdMailReceiveReply);
    CCmdMailReceiveReply reply;
    reply.m_Letters.resize(2);
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(reply.m_Letters.size(), 2u);
}

TEST(MailReceiveReply, CutLetterStaysAsFarAsItWasRead)
{
    CCmdPackager pk;
    beginReply(pk);
    pk.Write(2);
    pk.Write(5);
    CCmdMailReceiveReply reply;
    EXPECT_TRUE(reply.Read(&pk));
    ASSERT_EQ(reply.m_Letters.size(), 2u);
    EXPECT_EQ(reply.m_Letters[0].m_LetterId, 5);
    EXPECT_EQ(reply.m_Letters[1].m_LetterId, -1);
}

TEST(MailReceiveReply, MissingLettersAreDefaultMadeUpToTheCount)
{
    CCmdPackager pk;
    beginReply(pk);
    pk.Write(3);
    CLetter letter;
    letter.m_LetterId = 5;
    ASSERT_TRUE(letter.Write(&pk));
    CCmdMailReceiveReply reply;
    EXPECT_TRUE(reply.Read(&pk));
    ASSERT_EQ(reply.m_Letters.size(), 3u);
    EXPECT_EQ(reply.m_Letters[0].m_LetterId, 5);
    for (size_t i : {1, 2})
    {
        EXPECT_EQ(reply.m_Letters[i].m_LetterId, CLetter().m_LetterId);
        EXPECT_EQ(reply.m_Letters[i].m_Text1, L"");
    }
}

TEST(MailReceiveReply, HostileCountTakesNoMemory)
{
    CCmdPackager pk;
    beginReply(pk);
    pk.Write(0x7fffffff);
    CCmdMailReceiveReply reply;
    const test::AllocationCount allocations;
    EXPECT_TRUE(reply.Read(&pk));
    EXPECT_LT(allocations.bytes(), 10000);
}

// Only with 32-bit units can a text be too long to be written.
TEST(MailReceiveReply, WriterStopsAtALetterThatFails)
{
    CCmdMailReceiveReply reply;
    reply.m_Letters.resize(1);
    reply.m_Letters[0].m_Text3 = std::wstring(CCmdPackager::kMaxTextUnits + 1, L'x').c_str();
    CCmdPackager pk;
    EXPECT_EQ(reply.Write(&pk), sizeof(wchar_t) == 2);
}

TEST(MailSendRequest, LetterTravelsByItsOwnPair)
{
    CCmdMailSendRequest request;
    request.m_Letter.m_LetterId = 7;
    CCmdPackager pk;
    ASSERT_TRUE(request.Write(&pk));
    CCmdMailSendRequest received;
    ASSERT_TRUE(received.Read(&pk));
    EXPECT_EQ(received.m_Letter.m_LetterId, 7);
}
