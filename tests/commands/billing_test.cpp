#include "commands/billing.h"

#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::bytesOf;
using tests::writeHead;
using tests::written;

TEST(CurrencyReply, CountsAsGoodUnlessItsSenderSaysOtherwise)
{
    CCmdCurrencyReply reply;
    EXPECT_TRUE(reply.m_Flag1);

    CCmdPackager packager;
    writeHead(packager, command_id::CCmdCurrencyReply);
    packager.Write(5);
    EXPECT_FALSE(reply.Read(&packager));
    EXPECT_TRUE(reply.m_Flag1);
    EXPECT_EQ(reply.m_Value1, 5);

    packager.Write(false);
    packager.Reset();
    EXPECT_FALSE(reply.Read(&packager));
    EXPECT_FALSE(reply.m_Flag1);
}

TEST(BillFail, BeginsWithNumbersAndBillSuccessWithTexts)
{
    CCmdBillFail fail;
    fail.m_Value1 = 0x01020304;
    fail.m_Value2 = 0x05060708;
    CCmdPackager expected;
    writeHead(expected, command_id::CCmdBillFail);
    for (unsigned char byte = 1; byte <= 8; ++byte)
        expected.Write(byte);
    for (int text = 0; text < 3; ++text)
        expected.Write(static_cast<unsigned char>(0));
    EXPECT_EQ(written(fail), bytesOf(expected));

    CCmdPackager success;
    writeHead(success, command_id::CCmdBillSuccess);
    for (int text = 0; text < 3; ++text)
        success.Write(static_cast<unsigned char>(0));
    success.Write(0x01020304);
    CCmdBillSuccess command;
    EXPECT_FALSE(command.Read(&success));
    EXPECT_EQ(command.m_Value1, 0x01020304);
}

TEST(BillExchangeCodeReply, IsItsRequestAndOneMoreText)
{
    CCmdBillExchangeCodeRequest request;
    CCmdBillExchangeCodeReply reply;
    request.m_Value2 = reply.m_Value2 = 77;
    request.m_Text7 = reply.m_Text7 = L"seventh";
    tests::Bytes expected = written(request);
    expected.push_back(0);
    EXPECT_EQ(written(reply), expected);
}

TEST(BillSuccess, SecondReadReplacesTheItemsOfTheTrade)
{
    CCmdBillSuccess sent;
    sent.m_GameTrade.m_Items.resize(2);
    CCmdPackager packager;
    ASSERT_TRUE(sent.Write(&packager));
    CCmdBillSuccess received;
    ASSERT_TRUE(received.Read(&packager));
    packager.Reset();
    ASSERT_TRUE(received.Read(&packager));
    EXPECT_EQ(received.m_GameTrade.m_Items.size(), 2u);
}
