#include "packs/envelope.h"

#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <utility>

using tests::Bytes;
using tests::bytesOf;
using tests::writeHead;
using tests::written;

namespace
{

constexpr int kDataCapacity = 65536;

// The payload of an envelope with two words, up to its bytes.
void beginTwoWords(CCmdPackager& packager, unsigned short id, int size)
{
    writeHead(packager, id);
    packager.Write(11);
    packager.Write(12);
    packager.Write(size);
}

void beginOneWord(CCmdPackager& packager, unsigned short id, int size)
{
    writeHead(packager, id);
    packager.Write(11);
    packager.Write(size);
}

void writeBytes(CCmdPackager& packager, int size)
{
    const Bytes bytes(static_cast<size_t>(size), 0x5a);
    packager.Write(bytes.data(), size);
}

template <class Envelope>
void expectSame(const Envelope& a, const Envelope& b)
{
    EXPECT_EQ(a.m_PackType, b.m_PackType);
    EXPECT_EQ(bytesOf(a.m_PackData), bytesOf(b.m_PackData));
    EXPECT_EQ(a.m_PackData.GetReadPointer(), b.m_PackData.GetReadPointer());
    EXPECT_NE(a.m_PackData.GetBuffer(), b.m_PackData.GetBuffer());
}

int g_Handled = 0;

void countHandled(CCmdHead*, unsigned long, unsigned long)
{
    ++g_Handled;
}

} // namespace

TEST(PackEnvelope, MessageRoundTrips)
{
    CCmdHomePackRequest sent;
    sent.m_PackType = 7;
    sent.m_PackData.Write(3);
    CCmdPackager pk;
    ASSERT_TRUE(sent.Write(&pk));
    CCmdHomePackRequest received;
    ASSERT_TRUE(received.Read(&pk));
    EXPECT_EQ(received.m_PackType, 7);
    EXPECT_EQ(received.m_PackIndex, 0);
    int value = 0;
    EXPECT_TRUE(received.m_PackData.Read(&value));
    EXPECT_EQ(value, 3);
}

TEST(PackEnvelope, WriteSendsBytesThatWereReadToo)
{
    CCmdMatchPackRequest request;
    request.m_PackData.Write(3);
    const Bytes before = written(request);
    int value = 0;
    request.m_PackData.Read(&value);
    EXPECT_EQ(written(request), before);
}

TEST(PackEnvelope, ReadAppendsToOlderBytesAndKeepsTheReadPointer)
{
    CCmdFriendSystemPackReply reply;
    reply.m_PackData.Write(1);
    reply.m_PackData.Write(2);
    int value = 0;
    reply.m_PackData.Read(&value);
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdFriendSystemPackReply, 4);
    pk.Write(3);
    ASSERT_TRUE(reply.Read(&pk));
    EXPECT_EQ(reply.m_PackData.GetDataSize(), 12);
    EXPECT_EQ(reply.m_PackData.GetReadPointer(), 4);
    reply.m_PackData.Read(&value);
    EXPECT_EQ(value, 2);
    reply.m_PackData.Read(&value);
    EXPECT_EQ(value, 3);
}

TEST(PackEnvelope, PayloadOf65536BytesStaysInsideTheObject)
{
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdWizardPackRequest, kDataCapacity);
    writeBytes(pk, kDataCapacity);
    CCmdWizardPackRequest request;
    const test::AllocationCount allocations;
    ASSERT_TRUE(request.Read(&pk));
    EXPECT_EQ(allocations.blocks(), 0);
    EXPECT_EQ(request.m_PackData.GetDataSize(), kDataCapacity);
    EXPECT_EQ(request.m_PackData.GetBufferSize(), kDataCapacity);
}

TEST(PackEnvelope, OneByteMoreTakesABlockOf131072)
{
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdWizardPackRequest, kDataCapacity + 1);
    writeBytes(pk, kDataCapacity + 1);
    CCmdWizardPackRequest request;
    ASSERT_TRUE(request.Read(&pk));
    EXPECT_EQ(request.m_PackData.GetDataSize(), kDataCapacity + 1);
    EXPECT_EQ(request.m_PackData.GetBufferSize(), 131072);
}

TEST(PackEnvelope, SizeBeyondEveryPackagerIsLogged)
{
    test::LogLines log;
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdQueryToolReply, CCmdPackager::kMaxDataSize + 1);
    CCmdQueryToolReply reply;
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(reply.m_PackType, 11);
    EXPECT_EQ(reply.m_PackIndex, 12);
    EXPECT_TRUE(log.has(zet::Log::Level::kError, L"Command Package extends max length limit(268435455)"));
}

TEST(PackEnvelope, SizeBeyondTheFrameReservesNothing)
{
    test::LogLines log;
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdQueryToolReply, CCmdPackager::kMaxDataSize);
    CCmdQueryToolReply reply;
    const test::AllocationCount allocations;
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(allocations.blocks(), 0);
    EXPECT_EQ(reply.m_PackData.GetBufferSize(), kDataCapacity);
    EXPECT_TRUE(log.texts().empty());
}

TEST(PackEnvelope, RefusedSizeLeavesOlderBytesAlone)
{
    for (int size : {-1, static_cast<int>(0x80000000u), 5})
    {
        CCmdAchievementPackRequest request;
        request.m_PackData.Write(7);
        CCmdPackager pk;
        beginTwoWords(pk, command_id::CCmdAchievementPackRequest, size);
        writeBytes(pk, 4);
        EXPECT_FALSE(request.Read(&pk)) << size;
        EXPECT_EQ(request.m_PackType, 11);
        EXPECT_EQ(request.m_PackData.GetDataSize(), 4);
    }
}

TEST(PackEnvelope, CopiesAreIndependentWhereverThePayloadLies)
{
    for (int size : {10, kDataCapacity + 1})
    {
        CCmdTravelWorldPackRequest source;
        source.m_PackType = 4;
        source.m_PackIndex = 5;
        writeBytes(source.m_PackData, size);
        short read = 0;
        source.m_PackData.Read(&read);

        CCmdTravelWorldPackRequest assigned;
        assigned = source;
        expectSame(assigned, source);
        EXPECT_EQ(assigned.m_PackIndex, 5);
        const CCmdTravelWorldPackRequest copied(source);
        expectSame(copied, source);
        CCmdTravelWorldPackRequest spare(source);
        const CCmdTravelWorldPackRequest moved(std::move(spare));
        expectSame(moved, source);

        source.m_PackData.Clear();
        source.m_PackData.Write(1);
        EXPECT_EQ(copied.m_PackData.GetDataSize(), size);
        EXPECT_EQ(copied.m_PackData.GetBuffer()[0], 0x5a);
    }
}

TEST(PackEnvelope, DispatchTakesAnEmptyMessage)
{
    g_Handled = 0;
    CCmdPackager pk;
    ASSERT_TRUE(CCmdInPurchasePackRequest().Write(&pk));
    EXPECT_TRUE(CCmdInPurchasePackRequest::CCmdInPurchasePackRequest_Process(&pk, countHandled, 0, 0));
    EXPECT_EQ(g_Handled, 1);
}

TEST(RecordEnvelope, CopiesAreIndependent)
{
    CCmdSportPackNotify source;
    source.m_PackType = 4;
    source.m_PackData.Write(7);
    char read = 0;
    source.m_PackData.Read(&read);
    CCmdSportPackNotify assigned;
    assigned = source;
    expectSame(assigned, source);
    const CCmdSportPackNotify copied(source);
    expectSame(copied, source);
}

TEST(RecordEnvelope, PayloadBeyondItsPackagerIsTakenFromTheFrameAndRefused)
{
    test::LogLines log;
    CCmdPackager pk;
    beginOneWord(pk, command_id::CCmdSportPackRequest, 70000);
    writeBytes(pk, 70000);
    CCmdSportPackRequest request;
    EXPECT_FALSE(request.Read(&pk));
    EXPECT_EQ(request.m_PackType, 11);
    EXPECT_EQ(request.m_PackData.GetDataSize(), 0);
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
    EXPECT_TRUE(log.has(zet::Log::Level::kError,
                        L"CDataPackager Alloc Error: m_iBufSize 65536, m_iDataSize 0, allocSize 70000"));
}

TEST(RecordEnvelope, OlderBytesCountAgainstItsSpace)
{
    CCmdSportPackReply reply;
    reply.m_PackData.Write(1);
    CCmdPackager pk;
    beginOneWord(pk, command_id::CCmdSportPackReply, kDataCapacity - 3);
    writeBytes(pk, kDataCapacity - 3);
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(reply.m_PackData.GetDataSize(), 4);
}

TEST(VoidDataEnvelope, CutHeadIsReadWellAndKeepsTheWords)
{
    for (int bytes : {0, 1, 3, 12, 20})
    {
        CCmdVoidDataRequest request;
        request.m_PackType = 21;
        request.m_PackIndex = 22;
        CCmdPackager whole;
        writeHead(whole, command_id::CCmdVoidDataRequest);
        CCmdPackager pk;
        pk.SetCmdID(command_id::CCmdVoidDataRequest);
        pk.Write(whole.GetBuffer(), bytes);
        EXPECT_TRUE(request.Read(&pk)) << bytes;
        EXPECT_EQ(request.m_PackType, 21);
        EXPECT_EQ(request.m_PackIndex, 22);
    }
}

TEST(VoidDataEnvelope, FrameOfAnotherIdIsReadWellToo)
{
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdVoidDataReply, 0);
    CCmdVoidDataRequest request;
    EXPECT_TRUE(request.Read(&pk));
    EXPECT_EQ(pk.GetReadPointer(), 0);
}

TEST(VoidDataEnvelope, DispatchRefusesWhatTheCutHeadLeaves)
{
    g_Handled = 0;
    CCmdPackager pk;
    writeHead(pk, command_id::CCmdVoidDataReply);
    pk.Write(true);
    EXPECT_FALSE(CCmdVoidDataReply::CCmdVoidDataReply_Process(&pk, countHandled, 0, 0));
    EXPECT_EQ(g_Handled, 0);
}

TEST(VoidDataEnvelope, LargestPayloadFits)
{
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdVoidDataReply, kDataCapacity);
    writeBytes(pk, kDataCapacity);
    CCmdVoidDataReply reply;
    ASSERT_TRUE(reply.Read(&pk));
    EXPECT_EQ(reply.m_PackData.GetDataSize(), kDataCapacity);
    EXPECT_EQ(written(reply), bytesOf(pk));
}

TEST(VoidDataEnvelope, HostileSizesAreRefusedWithoutATrace)
{
    for (int size : {kDataCapacity + 1, CCmdPackager::kMaxDataSize + 1, 0x7fffffff})
    {
        test::LogLines log;
        CCmdPackager pk;
        beginTwoWords(pk, command_id::CCmdVoidDataReply, size);
        writeBytes(pk, kDataCapacity + 1);
        CCmdVoidDataReply reply;
        EXPECT_FALSE(reply.Read(&pk)) << size;
        EXPECT_EQ(reply.m_PackData.GetDataSize(), 0);
        EXPECT_TRUE(log.texts().empty());
    }
}

TEST(VoidDataEnvelope, SizeOfZeroOrLessIsGoodAndAddsNothing)
{
    for (int size : {0, -1, -0x7fffffff})
    {
        CCmdPackager pk;
        beginTwoWords(pk, command_id::CCmdVoidDataReply, size);
        CCmdVoidDataReply reply;
        EXPECT_TRUE(reply.Read(&pk)) << size;
        EXPECT_EQ(reply.m_PackData.GetDataSize(), 0);
        EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
    }
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdMatchPackReply, -1);
    EXPECT_FALSE(CCmdMatchPackReply().Read(&pk));
}

TEST(VoidDataEnvelope, SizeThatCannotBeReadIsRefused)
{
    CCmdPackager whole;
    beginTwoWords(whole, command_id::CCmdVoidDataReply, 4);
    for (int missing : {1, 4})
    {
        CCmdPackager pk;
        pk.SetCmdID(command_id::CCmdVoidDataReply);
        pk.Write(whole.GetBuffer(), whole.GetDataSize() - missing);
        EXPECT_FALSE(CCmdVoidDataReply().Read(&pk)) << missing;
    }
}

TEST(VoidDataEnvelope, ReadAddsAndFailsWhereItDoesNotFit)
{
    CCmdVoidDataReply reply;
    CCmdPackager pk;
    beginTwoWords(pk, command_id::CCmdVoidDataReply, 40000);
    writeBytes(pk, 40000);
    ASSERT_TRUE(reply.Read(&pk));
    pk.Reset();
    EXPECT_FALSE(reply.Read(&pk));
    EXPECT_EQ(reply.m_PackData.GetDataSize(), 40000);
}
