// Messages with few fields other than texts: friends, in-purchase, travel, the wizard and the world square.
#include "packs/friend.h"
#include "packs/in_purchase.h"
#include "packs/travel.h"
#include "packs/wizard_square.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;

TEST(FriendSystemPack, EmptyTextsStillTravel)
{
    EXPECT_EQ(written(FriendSystemPack_FriendAddWithInfoRequest()), std::string(13, '\0'));
    EXPECT_EQ(written(FriendSystemPack_MsgPush()), std::string(1, '\0'));
}

TEST(InPurchasePack, AListWithoutRowsKeepsTheRowsThatTheObjectHolds)
{
    InPurchasePack_GetFCodeList_Reply reply;
    reply.m_InPurchaseFCodeRows.resize(2);
    for (const Payload& payload : {Payload() << L"m" << 0, Payload() << L"m" << -1, Payload() << L"m", Payload()})
    {
        EXPECT_TRUE(payload.into(reply));
        EXPECT_EQ(reply.m_InPurchaseFCodeRows.size(), 2u);
    }
}

TEST(InPurchasePack, AListWithRowsReplacesThem)
{
    InPurchaseFCodeRow row;
    row.m_Text1 = L"F-1";
    row.m_Value1 = 6;
    InPurchasePack_GetFCodeList_Reply reply;
    reply.m_InPurchaseFCodeRows.resize(2);
    EXPECT_TRUE((Payload() << L"m" << 1 << row).into(reply));
    ASSERT_EQ(reply.m_InPurchaseFCodeRows.size(), 1u);
    EXPECT_EQ(reply.m_InPurchaseFCodeRows[0].m_Value1, 6);
}

TEST(InPurchasePack, RowsOfAListAreNotTested)
{
    InPurchasePack_GetFCodeList_Reply reply;
    EXPECT_TRUE((Payload() << L"m" << 2 << L"F-1").into(reply));
    EXPECT_EQ(reply.m_InPurchaseFCodeRows.size(), 2u);
    EXPECT_EQ(reply.m_InPurchaseFCodeRows[0].m_Text1, zet::String_T<wchar_t>(L"F-1"));
}

TEST(TravelWorldPack, AnUnlockWithoutAnAttractionSendsMinusOne)
{
    EXPECT_EQ(written(TravelWorldPack_AttractUnLock_Request()).substr(0, 8), (Payload() << -1 << 0).bytes());
}

TEST(WizardPack, RequestsWithoutFieldsHaveNoBytes)
{
    EXPECT_EQ(written(WizardPack_Login_Request()).size(), 0u);
    EXPECT_EQ(written(WizardPack_Logout_Request()).size(), 0u);
    EXPECT_EQ(written(WorldSquarePack_Login_Request()).size(), 0u);
    EXPECT_EQ(written(WorldSquarePack_Logout_Request()).size(), 0u);
}

TEST(WizardPack, WarAddsItsNumbersAndStopsAtTheFirstThatFails)
{
    WizardPack_GoWar_Request request;
    request.m_Numbers = {1};
    EXPECT_TRUE((Payload() << 0 << 2 << 2 << 3).into(request));
    EXPECT_EQ(request.m_Numbers, (std::vector<int>{1, 2, 3}));
    EXPECT_FALSE((Payload() << 0 << 3 << 4).into(request));
    EXPECT_EQ(request.m_Numbers, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_EQ(written(WizardPack_GoWar_Request()), (Payload() << 0 << 0).bytes());
}

TEST(WizardPack, AHostileCountIsRefusedWithThePayload)
{
    WizardPack_GoWar_Request request;
    EXPECT_FALSE((Payload() << 0 << 0x7FFFFFFF << 1).into(request));
    EXPECT_EQ(request.m_Numbers, std::vector<int>{1});
}

} // namespace
