#include "packaging/cmd_packager.h"

#include "framework/memory_stream.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace
{

using Bytes = std::vector<unsigned char>;
using zet::Log;

zet::Uuid idFrom(unsigned char first)
{
    zet::Uuid id;
    for (int i = 0; i < 16; ++i)
        reinterpret_cast<unsigned char*>(&id)[i] = static_cast<unsigned char>(first + i);
    return id;
}

Bytes sent(const CCmdPackager& pk)
{
    zet::Buffer buffer;
    EXPECT_TRUE(CCmdPackager_packageToBuffer(pk, buffer));
    return Bytes(buffer.getBuffer(), buffer.getBuffer() + buffer.getBufferSize());
}

Bytes packed(const CCmdPackager& pk)
{
    Bytes out(static_cast<size_t>(pk.Pack(nullptr, 0)));
    EXPECT_EQ(pk.Pack(out.data(), static_cast<int>(out.size())), static_cast<int>(out.size()));
    return out;
}

bool receive(CCmdPackager& pk, const Bytes& bytes)
{
    const auto store = zet::MemoryStream::createInstance();
    store->write(bytes.data(), static_cast<int>(bytes.size()));
    zet::InputStream stream(store.get());
    return pk.Receive(stream);
}

Bytes payload(const CCmdPackager& pk)
{
    return Bytes(pk.GetBuffer(), pk.GetBuffer() + pk.GetDataSize());
}

TEST(CmdPackager, StartsWithoutIdAddressesAndPayload)
{
    const CCmdPackager pk;
    EXPECT_EQ(pk.GetCmdID(), 0xFFFF);
    EXPECT_TRUE(pk.GetFromAddress().isNull());
    EXPECT_TRUE(pk.GetTargetAddress().isNull());
    EXPECT_EQ(pk.GetBufferSize(), 0x10000);
    EXPECT_EQ(pk.GetDataSize(), 0);
    EXPECT_EQ(pk.GetReadPointer(), 0);
}

TEST(CmdPackager, EmptyCommandIsSixBytesOnAStreamAndThreeInADatagram)
{
    CCmdPackager pk;
    pk.SetCmdID(0x1234);
    EXPECT_EQ(sent(pk), (Bytes{0x34, 0x12, 0, 0, 0, 0}));
    EXPECT_EQ(packed(pk), (Bytes{0x34, 0x12, 0}));
}

TEST(CmdPackager, TargetAloneSetsTheSecondBitOfTheSizeWord)
{
    CCmdPackager pk;
    pk.SetCmdID(0x1234);
    pk.SetTargetAddress(idFrom(0x10));
    EXPECT_TRUE(pk.Write("hello", 5));
    Bytes expected{0x34, 0x12, 0x16, 0, 0, 0};
    for (unsigned char i = 0; i < 16; ++i)
        expected.push_back(static_cast<unsigned char>(0x10 + i));
    for (const char c : {'h', 'e', 'l', 'l', 'o'})
        expected.push_back(static_cast<unsigned char>(c));
    EXPECT_EQ(sent(pk), expected);
}

TEST(CmdPackager, FromAddressPrecedesTarget)
{
    CCmdPackager pk;
    pk.SetCmdID(1);
    pk.SetAddress(idFrom(0x40), idFrom(0x80));
    const Bytes bytes = sent(pk);
    ASSERT_EQ(bytes.size(), 38u);
    EXPECT_EQ(bytes[2], 3);
    EXPECT_EQ(bytes[6], 0x40);
    EXPECT_EQ(bytes[22], 0x80);
    pk.SetTargetAddress(zet::Uuid());
    EXPECT_EQ(sent(pk)[2], 1);
    EXPECT_EQ(sent(pk).size(), 22u);
}

TEST(CmdPackager, FourAddressCombinationsRoundTripThroughAStream)
{
    for (int combination = 0; combination < 4; ++combination)
    {
        CCmdPackager pk;
        pk.SetCmdID(0x1213);
        pk.SetAddress(combination & 1 ? idFrom(1) : zet::Uuid(), combination & 2 ? idFrom(0x71) : zet::Uuid());
        EXPECT_TRUE(pk.Write(77));
        CCmdPackager back;
        back.SetAddress(idFrom(9), idFrom(9));
        EXPECT_TRUE(receive(back, sent(pk)));
        EXPECT_EQ(back.GetCmdID(), 0x1213);
        EXPECT_EQ(back.GetFromAddress(), pk.GetFromAddress());
        EXPECT_EQ(back.GetTargetAddress(), pk.GetTargetAddress());
        EXPECT_EQ(payload(back), (Bytes{0, 0, 0, 77}));
        EXPECT_EQ(back.GetReadPointer(), 0);
    }
}

TEST(CmdPackager, DatagramSizeWordTakesOneToFourBytes)
{
    const auto headOf = [](int size)
    {
        CCmdPackager pk;
        pk.SetCmdID(0x0201);
        EXPECT_TRUE(pk.Write(Bytes(static_cast<size_t>(size)).data(), size));
        const Bytes bytes = packed(pk);
        return Bytes(bytes.begin() + 2, bytes.end() - size);
    };
    EXPECT_EQ(headOf(15), (Bytes{0x3C}));
    EXPECT_EQ(headOf(16), (Bytes{0x40, 0x40}));
    EXPECT_EQ(headOf(4095), (Bytes{0x7F, 0xFC}));
    EXPECT_EQ(headOf(4096), (Bytes{0x80, 0x40, 0x00}));
    EXPECT_EQ(headOf(0x100000), (Bytes{0xC0, 0x40, 0x00, 0x00}));
}

TEST(CmdPackager, DatagramWithoutAddressesRoundTrips)
{
    CCmdPackager pk;
    pk.SetCmdID(0x1234);
    EXPECT_TRUE(pk.Write(1) && pk.Write(zet::String_T<wchar_t>(L"datagram")));
    const Bytes bytes = packed(pk);
    CCmdPackager back;
    EXPECT_EQ(back.Unpack(bytes.data(), static_cast<int>(bytes.size())), static_cast<int>(bytes.size()));
    EXPECT_EQ(back.GetCmdID(), 0x1234);
    EXPECT_EQ(payload(back), payload(pk));
    EXPECT_EQ(back.GetReadPointer(), 0);
}

TEST(CmdPackager, DatagramWithAnAddressComesBackWithTheAddressInItsPayload)
{
    CCmdPackager pk;
    pk.SetCmdID(0x1234);
    pk.SetTargetAddress(idFrom(0x10));
    EXPECT_TRUE(pk.Write("abcdefgh", 8));
    const Bytes bytes = packed(pk);
    ASSERT_EQ(bytes.size(), 2u + 1 + 16 + 8);
    CCmdPackager back;
    EXPECT_TRUE(back.Write("0123456789abcdefghij", 20));
    EXPECT_EQ(back.Unpack(bytes.data(), static_cast<int>(bytes.size())), 2 + 1 + 8);
    // The address is what the packager's storage contained; the real one is at the start of the payload.
    EXPECT_EQ(std::memcmp(&back.GetTargetAddress(), "0123456789abcdef", 16), 0);
    EXPECT_EQ(payload(back), (Bytes{0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17}));
    EXPECT_EQ(back.GetReadPointer(), 16);
}

TEST(CmdPackager, PackMeasuresWithoutABufferAndRefusesOneThatIsAByteShort)
{
    CCmdPackager pk;
    pk.SetCmdID(1);
    pk.SetAddress(idFrom(1), idFrom(2));
    EXPECT_TRUE(pk.Write(Bytes(100).data(), 100));
    const int size = pk.Pack(nullptr, 0);
    EXPECT_EQ(size, 2 + 2 + 32 + 100);
    Bytes room(static_cast<size_t>(size));
    EXPECT_EQ(pk.Pack(room.data(), size), size);
    for (int shorter = 2; shorter < size; ++shorter)
        EXPECT_EQ(pk.Pack(room.data(), shorter), 0);
}

TEST(CmdPackager, UnpackRefusesEveryTruncation)
{
    CCmdPackager pk;
    pk.SetCmdID(1);
    EXPECT_TRUE(pk.Write(Bytes(100, 3).data(), 100));
    const Bytes bytes = packed(pk);
    for (int size = 0; size < static_cast<int>(bytes.size()); ++size)
    {
        const Bytes cut(bytes.begin(), bytes.begin() + size);
        CCmdPackager back;
        EXPECT_EQ(back.Unpack(cut.data(), size), 0) << size;
    }
}

TEST(CmdPackager, PayloadBeyond65536BytesMovesToABlockOf131072)
{
    CCmdPackager pk;
    const unsigned char* const inside = pk.GetBuffer();
    EXPECT_TRUE(pk.Write(Bytes(0x10000, 5).data(), 0x10000));
    EXPECT_EQ(pk.GetBuffer(), inside);
    EXPECT_TRUE(pk.Write(static_cast<unsigned char>(6)));
    EXPECT_NE(pk.GetBuffer(), inside);
    EXPECT_EQ(pk.GetBufferSize(), 0x20000);
    Bytes expected(0x10000, 5);
    expected.push_back(6);
    EXPECT_EQ(payload(pk), expected);
    pk.Clear();
    EXPECT_EQ(pk.GetBufferSize(), 0x20000);
}

TEST(CmdPackager, LargestPayloadFitsAndOneMoreByteIsRefusedWithItsText)
{
    CCmdPackager pk;
    // In one step, since growth in steps of 64 KiB would copy the payload a few thousand times.
    ASSERT_TRUE(pk.Alloc(CCmdPackager::kMaxDataSize));
    const Bytes block(1 << 20);
    for (int i = 0; i < 255; ++i)
        ASSERT_TRUE(pk.Write(block.data(), 1 << 20));
    ASSERT_TRUE(pk.Write(block.data(), (1 << 20) - 1));
    EXPECT_EQ(pk.GetDataSize(), CCmdPackager::kMaxDataSize);
    EXPECT_EQ(pk.GetBufferSize(), CCmdPackager::kMaxDataSize);
    const test::LogLines log;
    EXPECT_FALSE(pk.Write(true));
    EXPECT_EQ(pk.GetDataSize(), CCmdPackager::kMaxDataSize);
    EXPECT_TRUE(log.has(Log::kError, L"Command Package extends max length limit(268435455)"));
}

TEST(CmdPackager, TextLimitsAreThoseOfTheReader)
{
    CCmdPackager pk;
    Bytes bytes{0x43, 0xE8};
    bytes.resize(2 + 2000, 'a');
    EXPECT_TRUE(pk.Write(bytes.data(), static_cast<int>(bytes.size())));
    zet::String_T<wchar_t> text;
    EXPECT_TRUE(pk.Read(text));
    EXPECT_EQ(text.getLength(), 1000);
    bytes[1] = 0xE9;
    bytes.resize(2 + 2002, 'a');
    EXPECT_TRUE(pk.Write(bytes.data(), static_cast<int>(bytes.size())));
    EXPECT_FALSE(pk.Read(text));
    EXPECT_EQ(text.getLength(), 0);
}

TEST(CmdPackager, BufferOfZeroBytesIsItsSizeAndOneOfMoreThanTenMebibytesIsRefused)
{
    CCmdPackager pk;
    EXPECT_TRUE(pk.Write(zet::Buffer()));
    EXPECT_EQ(payload(pk), (Bytes{0, 0, 0, 0}));
    EXPECT_FALSE(pk.Write(zet::Buffer(CCmdPackager::kMaxBufferSize + 1)));
    EXPECT_EQ(pk.GetDataSize(), 4);
    pk.Clear();
    EXPECT_TRUE(pk.Write(CCmdPackager::kMaxBufferSize + 1));
    zet::Buffer back(3);
    EXPECT_FALSE(pk.Read(back));
    EXPECT_EQ(back.getBufferSize(), 3);
}

TEST(CmdPackager, NodeIsSixRawBytes)
{
    CCmdPackager pk;
    zet::uuid_node_t node;
    node.m_Node[0] = 0x0201;
    node.m_Node[2] = 0x0605;
    EXPECT_TRUE(pk.Write(node));
    EXPECT_EQ(payload(pk), (Bytes{1, 2, 0, 0, 5, 6}));
    zet::uuid_node_t back;
    EXPECT_TRUE(pk.Read(back));
    EXPECT_EQ(back, node);
    EXPECT_FALSE(pk.Read(&back));
}

TEST(CmdPackager, ReceiveReportsWhereAStreamEnded)
{
    CCmdPackager pk;
    pk.SetCmdID(0x1234);
    pk.SetAddress(idFrom(1), idFrom(2));
    EXPECT_TRUE(pk.Write(5));
    const Bytes whole = sent(pk);
    const auto textAt = [&](size_t size)
    {
        const test::LogLines log;
        CCmdPackager back;
        EXPECT_FALSE(receive(back, Bytes(whole.begin(), whole.begin() + static_cast<long>(size))));
        EXPECT_EQ(log.texts().size(), 1u);
        return log.texts().at(0);
    };
    EXPECT_EQ(textAt(0), L"Error:Read Command ID error!!");
    EXPECT_EQ(textAt(1), L"Error:Read Command ID error!!");
    EXPECT_EQ(textAt(2), L"Error:Read Command Size(4660) error!");
    EXPECT_EQ(textAt(5), L"Error:Read Command Size(4660) error!");
    EXPECT_EQ(textAt(6), L"Error:Read Command(4660) Src Address error!");
    EXPECT_EQ(textAt(22), L"Error:Read Command(4660) Dest Address error!");
    EXPECT_EQ(textAt(38), L"Error:Read Command(4660) data error!");
    EXPECT_EQ(textAt(41), L"Error:Read Command(4660) data error!");
}

TEST(CmdPackager, FailedReceiveKeepsIdAndAddressesThatItRead)
{
    CCmdPackager pk;
    Bytes bytes{0x34, 0x12, 0x05, 0, 0, 0};
    for (unsigned char i = 0; i < 16; ++i)
        bytes.push_back(static_cast<unsigned char>(0x20 + i));
    EXPECT_FALSE(receive(pk, bytes));
    EXPECT_EQ(pk.GetCmdID(), 0x1234);
    EXPECT_EQ(pk.GetFromAddress(), idFrom(0x20));
}

TEST(CmdPackager, AFrameInMemoryIsReceivedAsOneInAStream)
{
    CCmdPackager pk;
    pk.SetCmdID(0x1234);
    pk.SetAddress(idFrom(1), idFrom(2));
    EXPECT_TRUE(pk.Write(5));
    const Bytes whole = sent(pk);
    for (size_t size = 0; size <= whole.size(); ++size)
    {
        const Bytes bytes(whole.begin(), whole.begin() + static_cast<long>(size));
        CCmdPackager fromStream;
        CCmdPackager fromMemory;
        const test::LogLines log;
        const bool isReceived = receive(fromStream, bytes);
        EXPECT_EQ(isReceived, size == whole.size());
        EXPECT_EQ(fromMemory.Receive(bytes.data(), static_cast<int>(size)), isReceived) << size;
        ASSERT_EQ(log.texts().size(), isReceived ? 0U : 2U);
        if (!isReceived)
        {
            EXPECT_EQ(log.texts()[0], log.texts()[1]);
        }
        EXPECT_EQ(fromMemory.GetCmdID(), fromStream.GetCmdID());
        EXPECT_EQ(fromMemory.GetFromAddress(), fromStream.GetFromAddress());
        EXPECT_EQ(fromMemory.GetTargetAddress(), fromStream.GetTargetAddress());
        EXPECT_EQ(payload(fromMemory), payload(fromStream));
    }
}

TEST(CmdPackager, BytesAfterAFrameAreLeftUnread)
{
    CCmdPackager pk;
    Bytes bytes{0x34, 0x12, 0x08, 0, 0, 0, 'a', 'b', 'c'};
    EXPECT_TRUE(pk.Receive(bytes.data(), static_cast<int>(bytes.size())));
    EXPECT_EQ(payload(pk), (Bytes{'a', 'b'}));
    // The payload is the packager's own.
    bytes[6] = 'x';
    EXPECT_EQ(payload(pk), (Bytes{'a', 'b'}));
}

TEST(CmdPackager, AFrameInPlaceIsTheOneThatIsSent)
{
    // Inside the object, at its end, and in a separate block.
    for (const size_t size : {size_t{0}, size_t{3}, size_t{0x10000}, size_t{300000}})
    {
        for (const int addresses : {0, 1, 2, 3})
        {
            CCmdPackager pk;
            pk.SetCmdID(0x1234);
            if (addresses & 1)
                pk.SetFromAddress(idFrom(1));
            if (addresses & 2)
                pk.SetTargetAddress(idFrom(2));
            const Bytes bytes(size, 'p');
            ASSERT_TRUE(pk.Write(bytes.data(), static_cast<int>(size)));
            const CCmdPackager& constant = pk;
            int length = 0;
            unsigned char* const frame = constant.FrameInPlace(length);
            ASSERT_NE(frame, nullptr);
            EXPECT_EQ(Bytes(frame, frame + length), sent(pk));
            std::fill(frame - CCmdPackager::kSpareSize, frame, static_cast<unsigned char>(0xFF));
            EXPECT_EQ(Bytes(frame, frame + length), sent(pk));
            EXPECT_EQ(payload(pk), bytes);
            EXPECT_EQ(pk.GetFromAddress().isNull(), !(addresses & 1));
        }
    }
}

TEST(CmdPackager, SizeWordAboveTheLimitIsRefusedBeforeAnyPayload)
{
    const test::LogLines log;
    CCmdPackager pk;
    EXPECT_FALSE(receive(pk, {0x34, 0x12, 0, 0, 0, 0x40, 1, 2, 3, 4}));
    EXPECT_TRUE(log.has(Log::kError, L"Command Package extends max length limit(268435455)"));
    EXPECT_EQ(pk.GetBufferSize(), 0x10000);
}

TEST(CmdPackager, AnnouncedPayloadThatDoesNotComeCostsNoMemory)
{
    CCmdPackager pk;
    // 0x0FFFFFFF bytes announced, ten sent.
    EXPECT_FALSE(receive(pk, {0x34, 0x12, 0xFC, 0xFF, 0xFF, 0x3F, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(pk.GetBufferSize(), 0x10000);
}

TEST(CmdPackager, LargeFrameRoundTrips)
{
    CCmdPackager pk;
    pk.SetCmdID(0x1076);
    Bytes bytes(300000);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 7);
    EXPECT_TRUE(pk.Write(bytes.data(), static_cast<int>(bytes.size())));
    CCmdPackager back;
    EXPECT_TRUE(receive(back, sent(pk)));
    EXPECT_EQ(payload(back), bytes);
    EXPECT_EQ(back.GetBufferSize(), 0x50000);
}

class RefusingOutput : public zet::Output
{
public:
    explicit RefusingOutput(int room) : m_Room(room) {}
    int write(const void*, int size) override
    {
        const int taken = size < m_Room ? size : m_Room;
        m_Room -= taken;
        return taken;
    }

private:
    int m_Room;
};

TEST(CmdPackager, SendReportsThatTheStreamRefusedThePayload)
{
    CCmdPackager pk;
    EXPECT_TRUE(pk.Write(5));
    const test::LogLines log;
    RefusingOutput output(8);
    zet::OutputStream stream(&output);
    EXPECT_FALSE(pk.Send(stream));
    EXPECT_TRUE(log.has(Log::kError, L"Send Command Package error!"));
}

TEST(CmdPackager, ReadPointerDoesNotMatterToSend)
{
    CCmdPackager pk;
    EXPECT_TRUE(pk.Write(5));
    int number = 0;
    EXPECT_TRUE(pk.Read(number));
    EXPECT_EQ(sent(pk).size(), 10u);
}

TEST(CmdPackager, ResetReadsAgainAndClearForgetsThePayloadOnly)
{
    CCmdPackager pk;
    pk.SetCmdID(3);
    pk.SetFromAddress(idFrom(1));
    EXPECT_TRUE(pk.Write(5));
    int number = 0;
    EXPECT_TRUE(pk.Read(number));
    EXPECT_FALSE(pk.Read(number));
    pk.Reset();
    EXPECT_TRUE(pk.Read(number));
    EXPECT_EQ(number, 5);
    pk.Clear();
    EXPECT_EQ(pk.GetDataSize(), 0);
    EXPECT_EQ(pk.GetReadPointer(), 0);
    EXPECT_EQ(pk.GetCmdID(), 3);
    EXPECT_EQ(pk.GetFromAddress(), idFrom(1));
}

TEST(CmdPackager, AssignmentIsDeepWithItsReadPointer)
{
    const auto source = std::make_unique<CCmdPackager>();
    source->SetCmdID(3);
    source->SetTargetAddress(idFrom(1));
    EXPECT_TRUE(source->Write(Bytes(70000, 8).data(), 70000));
    int number = 0;
    EXPECT_TRUE(source->Read(number));
    const auto copy = std::make_unique<CCmdPackager>(*source);
    EXPECT_EQ(copy->GetCmdID(), 3);
    EXPECT_EQ(copy->GetTargetAddress(), idFrom(1));
    EXPECT_EQ(payload(*copy), payload(*source));
    EXPECT_EQ(copy->GetReadPointer(), 4);
    EXPECT_NE(copy->GetBuffer(), source->GetBuffer());
}

TEST(CmdPackager, BufferAndPackageConvertBothWays)
{
    CCmdPackager pk;
    pk.SetCmdID(0x120d);
    pk.SetFromAddress(idFrom(1));
    EXPECT_TRUE(pk.Write(5));
    zet::Buffer buffer;
    EXPECT_TRUE(CCmdPackager_packageToBuffer(pk, buffer));
    CCmdPackager back;
    EXPECT_TRUE(CCmdPackager_bufferToPackage(buffer, back));
    EXPECT_EQ(sent(back), sent(pk));
    EXPECT_FALSE(CCmdPackager_bufferToPackage(zet::Buffer(), back));
}

} // namespace
