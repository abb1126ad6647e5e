#include "packs/avatar.h"

#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::Bytes;
using tests::written;

namespace
{

CmdAvatarLoadDataReply usedReply()
{
    CmdAvatarLoadDataReply reply;
    reply.m_CmdAvatarItems1.resize(2);
    reply.m_CmdAvatarItems10.resize(1);
    reply.m_Map1[1] = 2;
    reply.m_Map6[3] = 4;
    reply.m_Owned = {5, 6};
    return reply;
}

} // namespace

TEST(Avatar, EmptyReplyHasSeventeenZerosAfterItsText)
{
    const Bytes bytes = written<CDataPackager>(CmdAvatarLoadDataReply());
    EXPECT_EQ(bytes, Bytes(4 + 1 + 17 * 4, 0));
}

TEST(Avatar, ReplyCutAfterItsTextEmptiesAllThatItHeld)
{
    CDataPackager pk;
    pk.Write(1);
    pk.Write(zet::String_T<wchar_t>(L"ok"));
    CmdAvatarLoadDataReply reply = usedReply();
    EXPECT_TRUE(reply.Read(&pk));
    EXPECT_TRUE(reply.m_CmdAvatarItems1.empty());
    EXPECT_TRUE(reply.m_CmdAvatarItems10.empty());
    EXPECT_TRUE(reply.m_Map1.empty());
    EXPECT_TRUE(reply.m_Map6.empty());
    EXPECT_TRUE(reply.m_Owned.empty());
}

TEST(Avatar, ReplyCutInItsTextKeepsWhatItHeld)
{
    CDataPackager pk;
    pk.Write(1);
    CmdAvatarLoadDataReply reply = usedReply();
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(reply.m_Value1, 1);
    EXPECT_EQ(reply.m_CmdAvatarItems1.size(), 2u);
    EXPECT_EQ(reply.m_Owned.size(), 2u);
}

TEST(Avatar, PairWithoutItsValueHoldsZero)
{
    CDataPackager pk;
    for (int value : {1, 1, 5})
        pk.Write(value);
    CmdAvatarSaveDataRequest request;
    request.m_Map1[7] = 8;
    EXPECT_TRUE(request.Read(&pk));
    EXPECT_EQ(request.m_Map1, (std::map<int, int>{{5, 0}}));
}

TEST(Avatar, WriterStopsWhereItsPackagerIsFull)
{
    CmdAvatarBuyDataRequest request;
    request.m_Items.assign(20000, 1);
    CDataPackager pk;
    EXPECT_FALSE(request.Write(&pk));
    EXPECT_EQ(pk.GetDataSize(), pk.GetBufferSize());
}
