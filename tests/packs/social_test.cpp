#include "packs/social.h"

#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::Bytes;
using tests::bytesOf;
using tests::written;

TEST(SocialPlatform, AllCommandsOfAProcessCarryOneSeed)
{
    const zet::String_T<wchar_t> seed = CCmdSocialPlatform::g_VerifySeed.m_Node.convertToString();
    EXPECT_FALSE(CCmdSocialPlatform::g_VerifySeed.isNull());
    EXPECT_EQ(seed.getLength(), 12);
    EXPECT_EQ(CCmdSocialRequest().getVerifySeed(), seed);
    EXPECT_EQ(CCmdSocialReply().getVerifySeed(), seed);
}

TEST(SocialPlatform, SeedCanBeReplacedAndIsCopied)
{
    CCmdSocialRequest request;
    request.setVerifySeed(L"mine");
    EXPECT_EQ(request.m_VerifySeed, L"mine");
    const CCmdSocialRequest copy(request);
    EXPECT_EQ(copy.getVerifySeed(), L"mine");
}

TEST(SocialPlatform, ReadAddsToThePayloadAndReplacesTheSeed)
{
    CCmdSocialRequest request;
    request.setVerifySeed(L"theirs");
    request.setPackType(0xfffe);
    request.setPackIndex(9);
    request.getPackData()->Write(1);
    request.m_Extra = L"more";
    CCmdPackager pk;
    ASSERT_TRUE(request.Write(&pk));
    CCmdSocialRequest used;
    used.getPackData()->Write(true);
    ASSERT_TRUE(used.Read(&pk));
    EXPECT_EQ(used.getVerifySeed(), L"theirs");
    EXPECT_EQ(used.getPackType(), 0xfffe);
    EXPECT_EQ(used.getPackIndex(), 9);
    EXPECT_EQ(bytesOf(*used.getPackData()), (Bytes{1, 0, 0, 0, 1}));
    EXPECT_EQ(used.m_Extra, L"more");
}

TEST(SocialPlatform, HostileSizeIsRefused)
{
    for (int size : {-1, 5, CCmdPackager::kMaxDataSize + 1, 0x7fffffff})
    {
        CCmdPackager pk;
        tests::writeHead(pk, command_id::CCmdSocialRequest);
        pk.Write(zet::String_T<wchar_t>());
        pk.Write(static_cast<unsigned short>(1));
        pk.Write(static_cast<unsigned short>(2));
        pk.Write(size);
        pk.Write(0);
        CCmdSocialRequest request;
        EXPECT_FALSE(request.Read(&pk)) << size;
        EXPECT_EQ(request.getPackData()->GetDataSize(), 0);
    }
}

TEST(SocialReply, AnswerTakesTypeAndIndexOfTheRequestAlone)
{
    CCmdSocialRequest request;
    request.setVerifySeed(L"other process");
    request.setPackType(3);
    request.setPackIndex(65535);
    request.getPackData()->Write(1);
    request.m_Extra = L"extra";
    request.SetClientIndex(5);
    const CCmdSocialReply reply(&request);
    EXPECT_EQ(reply.getPackType(), 3);
    EXPECT_EQ(reply.getPackIndex(), 65535);
    EXPECT_EQ(reply.m_Error, 0);
    EXPECT_EQ(reply.getVerifySeed(), CCmdSocialReply().getVerifySeed());
    EXPECT_EQ(reply.getPackData()->GetDataSize(), 0);
    EXPECT_EQ(reply.GetID(), command_id::CCmdSocialReply);
}

TEST(SocialError, EveryValueHasItsWords)
{
    EXPECT_EQ(getSocialErrMsg(kSocialErrorNone), L"");
    EXPECT_EQ(getSocialErrMsg(kSocialErrorNoToken), L"创建access_token失败");
    EXPECT_EQ(getSocialErrMsg(kSocialErrorInvalidToken), L"无效的access_token");
    EXPECT_EQ(getSocialErrMsg(kSocialErrorNoFreeApi), L"没有空闲的API");
    EXPECT_EQ(getSocialErrMsg(4), L"Unknow Error");
    EXPECT_EQ(getSocialErrMsg(65535), L"Unknow Error");
    EXPECT_EQ(getSocialErrMsg(-1), L"Unknow Error");
}

TEST(SocialSubPack, RequestAndReplyHaveOneType)
{
    EXPECT_EQ(CmdSocialOccupyAPIRequest().getPackType(), 1);
    EXPECT_EQ(CmdSocialOccupyAPIReply().getPackType(), 1);
    EXPECT_EQ(CmdSocialReleaseAPIRequest().getPackType(), 2);
    EXPECT_EQ(CmdSocialReleaseAPIReply().getPackType(), 2);
    EXPECT_EQ(CmdSocialCreateAccessTokenRequest().getPackType(), 3);
    EXPECT_EQ(CmdSocialCreateAccessTokenReply().getPackType(), 3);
}

TEST(SocialSubPack, TypeIsNotAmongTheBytesAndReadingKeepsIt)
{
    CmdSocialSubPack pack(7);
    CCmdPackager pk;
    EXPECT_TRUE(pack.Write(&pk));
    EXPECT_EQ(pk.GetDataSize(), 0);
    EXPECT_TRUE(pack.Read(&pk));
    EXPECT_EQ(pack.getPackType(), 7);
    pack.setPackType(8);
    EXPECT_EQ(pack.getPackType(), 8);
}

TEST(SocialSubPack, GoesThroughTheEnvelopeByItsVirtualPair)
{
    CmdSocialCreateAccessTokenReply token;
    token.m_Text1 = L"one";
    token.m_Text2 = L"two";
    token.m_Value1 = 3600;
    const CmdSocialSubPack& sent = token;
    CCmdSocialReply reply;
    reply.setPackType(sent.getPackType());
    ASSERT_TRUE(sent.Write(reply.getPackData()));

    CmdSocialCreateAccessTokenReply received;
    CmdSocialSubPack& target = received;
    ASSERT_EQ(reply.getPackType(), target.getPackType());
    ASSERT_TRUE(target.Read(reply.getPackData()));
    EXPECT_EQ(received.m_Text1, L"one");
    EXPECT_EQ(received.m_Text2, L"two");
    EXPECT_EQ(received.m_Value1, 3600);
}
