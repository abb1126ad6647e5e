// The query tool: columns of one length, decided by the head, and nine counts before nine lists.
#include "packs/query_tool.h"

#include "tests/packs/payload.h"

#include <gtest/gtest.h>

namespace
{

using test::Payload;
using test::written;
using Texts = std::vector<zet::String_T<wchar_t>>;

TEST(QueryTool, PaymentRequestsBeginWithOne)
{
    const std::string one = (Payload() << 1).bytes();
    EXPECT_EQ(written(QT_Payment_Pay_Request()).substr(0, 4), one);
    EXPECT_EQ(written(QT_Payment_Consumption_Request()).substr(0, 4), one);
    EXPECT_EQ(written(QT_Nib2Nib3_Pay_Request()).substr(0, 4), one);
}

TEST(QueryTool, AReportWithoutRowsIsTextAndZeroAndItsNumbers)
{
    EXPECT_EQ(written(QT_OnlineQuery_Hours24Online_Reply()), (Payload() << L"" << 0).bytes());
    EXPECT_EQ(written(QT_Nib2Nib3_Pay_Reply()), (Payload() << L"" << 0 << 0 << 0 << 0.0f << 0).bytes());
}

TEST(QueryTool, ColumnsShorterThanTheFirstAreSentWithDefaultsInTheirPlaces)
{
    QT_OnlineQuery_Hours24Online_Reply reply;
    reply.m_Column1 = {L"a", L"b"};
    reply.m_Column2 = {1};
    EXPECT_EQ(written(reply), (Payload() << L"" << 2 << L"a" << 1 << L"b" << 0).bytes());
    reply.m_Column2 = {1, 2, 3};
    EXPECT_EQ(written(reply), (Payload() << L"" << 2 << L"a" << 1 << L"b" << 2).bytes());
}

TEST(QueryTool, ColumnsAreReplacedAtFullSizeWhateverIsThere)
{
    QT_OnlineQuery_DaysOnline_Reply reply;
    reply.m_Column1 = {L"old", L"old", L"old", L"old"};
    reply.m_Column2 = {9, 9, 9, 9};
    EXPECT_TRUE((Payload() << L"m" << 3 << L"a" << 1).into(reply));
    EXPECT_EQ(reply.m_Column1, (Texts{L"a", L"", L""}));
    EXPECT_EQ(reply.m_Column2, (std::vector<int>{1, 0, 0}));
    EXPECT_EQ(reply.m_Column3, (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(reply.m_Column4, (std::vector<float>{0, 0, 0}));
}

TEST(QueryTool, ColumnsStayWhereTheHeadFails)
{
    QT_Payment_Consumption_Reply reply;
    reply.m_Column1 = {L"kept"};
    const Payload head = Payload() << L"m" << 0 << 1 << 2 << 3;
    for (int last = 1; last <= head.size(); ++last)
        EXPECT_FALSE(head.cut(last).into(reply)) << last;
    EXPECT_EQ(reply.m_Column1, Texts{L"kept"});
    EXPECT_TRUE(head.into(reply));
    EXPECT_TRUE(reply.m_Column1.empty());
}

TEST(QueryTool, AHostileRowCountCostsNoMoreThanThePayload)
{
    QT_BstFmy3_WeekMatchStats_Reply reply;
    EXPECT_TRUE((Payload() << L"m" << 0x7FFFFFFF << L"a" << 1 << 2 << 3 << 4 << 5).into(reply));
    ASSERT_FALSE(reply.m_Column1.empty());
    EXPECT_LE(reply.m_Column1.size(), 3u);
    EXPECT_EQ(reply.m_Column6[0], 5);
    EXPECT_EQ(reply.m_Column6.size(), reply.m_Column1.size());
}

TEST(QueryTool, ConditionsSendNineCountsBeforeTheirTexts)
{
    QT_QueryCondition_Reply reply;
    reply.m_List1 = {L"1"};
    reply.m_List9 = {L"9a", L"9b"};
    Payload expected;
    expected << L"" << 1;
    for (int i = 2; i < 9; ++i)
        expected << 0;
    expected << 2 << L"1" << L"9a" << L"9b";
    EXPECT_EQ(written(reply), expected.bytes());
}

TEST(QueryTool, ConditionsReplaceTheirListsUpToTheTextThatFails)
{
    Payload payload;
    payload << L"";
    for (int i = 1; i <= 9; ++i)
        payload << 1;
    payload << L"1";
    QT_QueryCondition_Reply reply;
    reply.m_List1 = {L"old"};
    reply.m_List9 = {L"old"};
    EXPECT_FALSE(payload.into(reply));
    EXPECT_EQ(reply.m_List1, Texts{L"1"});
    EXPECT_TRUE(reply.m_List2.empty());
    EXPECT_EQ(reply.m_List9, Texts{L"old"});
}

TEST(QueryTool, InsertedAddressesAreTested)
{
    QT_InsertMac_Request request;
    request.m_Texts = {L"old"};
    EXPECT_TRUE((Payload() << 1 << L"a").into(request));
    EXPECT_EQ(request.m_Texts, Texts{L"a"});
    EXPECT_FALSE((Payload() << 2 << L"b").into(request));
    EXPECT_EQ(request.m_Texts, Texts{L"b"});
}

} // namespace
