#include "transport/net_message.h"

#include "framework/memory_stream.h"
#include "packaging/cmd_packager.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"

#include <gtest/gtest.h>

#include <cstring>

namespace
{

using Bytes = std::vector<unsigned char>;
using Text = zet::String_T<wchar_t>;
using zet::Json;
using zet::JsonValue;

Bytes operator+(Bytes a, const Bytes& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

// 16 bytes that count up from the first one.
Bytes addressBytes(unsigned char first)
{
    Bytes bytes;
    for (int i = 0; i < 16; ++i)
        bytes.push_back(static_cast<unsigned char>(first + i));
    return bytes;
}

zet::Uuid address(unsigned char first)
{
    zet::Uuid id;
    std::memcpy(&id, addressBytes(first).data(), sizeof id);
    return id;
}

zet::Buffer bufferOf(const Bytes& bytes)
{
    zet::Buffer buffer(static_cast<int>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer.getBuffer());
    return buffer;
}

template <class Message>
Bytes exported(const Message& message)
{
    const auto store = zet::MemoryStream::createInstance();
    zet::OutputStream out(store.get());
    EXPECT_TRUE(message.exportTo(out));
    Bytes bytes(static_cast<size_t>(store->getSize()));
    store->read(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

// Whether the message accepts all the bytes.
template <class Message>
bool imports(Message& message, const Bytes& bytes)
{
    const auto store = zet::MemoryStream::createInstance();
    store->write(bytes.data(), static_cast<int>(bytes.size()));
    zet::InputStream in(store.get());
    return message.importFrom(in) && in.isEmpty();
}

// The text of the exception that reading the bytes throws; empty for none.
Text thrownBy(const Bytes& bytes)
{
    const auto store = zet::MemoryStream::createInstance();
    store->write(bytes.data(), static_cast<int>(bytes.size()));
    zet::InputStream in(store.get());
    NetMessage message;
    try
    {
        in >> message;
    }
    catch (const zet::Exception& fault)
    {
        return fault.getText();
    }
    return Text();
}

// Accepts a fixed number of bytes.
class FullOutput : public zet::Output
{
public:
    explicit FullOutput(int room) : m_Room(room) {}
    int write(const void*, int size) override
    {
        const int count = size < m_Room ? size : m_Room;
        m_Room -= count;
        return count;
    }

private:
    int m_Room;
};

JsonValue parsed(const wchar_t* text)
{
    JsonValue value;
    EXPECT_NE(Json::parseValue(text, value), nullptr);
    return value;
}

// The frame of id 0x1234 without addresses and payload.
const Bytes kFrame = {0x34, 0x12, 0x00, 0x00, 0x00, 0x00};

TEST(NetMessage, IsEmptyAfterConstruction)
{
    const Msg_NetCommand message;
    EXPECT_TRUE(message.fromAddress.isNull());
    EXPECT_TRUE(message.targetAddress.empty());
    EXPECT_EQ(message.data.getBufferSize(), 0);
}

TEST(NetMessage, NamesItselfAsAClassOfTheFramework)
{
    EXPECT_STREQ(NetMessage::getClassName_(), L"NetMessage");
    EXPECT_STREQ(Msg_NetCommand::getClassName_(), L"Msg_NetCommand");
    const zet::Unknown::Handle_T<zet::Message> made = Msg_NetCommand::createMessage_();
    EXPECT_STREQ(made->getClassName(), L"Msg_NetCommand");
    EXPECT_EQ(made->getClassId(), Msg_NetCommand::getClassId_());
    EXPECT_NE(Msg_NetCommand::getClassId_(), NetMessage::getClassId_());
    EXPECT_STREQ(made->getPropertyType(), L"Msg_NetCommand");
    EXPECT_STREQ(NetMessage().getPropertyType(), L"NetMessage");
    EXPECT_TRUE(Text(made->getClassTimestamp()) == NetMessage().getClassTimestamp());
    EXPECT_GT(Text(made->getClassTimestamp()).getLength(), 0);
}

TEST(NetMessage, BothClassesAreRegisteredWhenTheLibraryIsLoaded)
{
    const zet::Unknown::Handle_T<zet::Unknown> base = zet::Unknown::RtFactory::create(L"NetMessage");
    const zet::Unknown::Handle_T<zet::Unknown> command = zet::Unknown::RtFactory::create(L"Msg_NetCommand");
    EXPECT_NE(dynamic_cast<NetMessage*>(base.get()), nullptr);
    EXPECT_EQ(dynamic_cast<Msg_NetCommand*>(base.get()), nullptr);
    EXPECT_NE(dynamic_cast<Msg_NetCommand*>(command.get()), nullptr);
    for (const wchar_t* name : {L"NetMessageArray", L"NetMessageList", L"Msg_NetCommandArray", L"Msg_NetCommandList"})
        EXPECT_NE(zet::PropertyFactory::getPropertyConverter(name), nullptr);
}

TEST(NetMessage, ClonesAndMakesItsOwnClass)
{
    const auto message = Msg_NetCommand::createInstance();
    message->fromAddress = address(1);
    message->targetAddress = {address(2)};
    message->data = bufferOf(kFrame);
    const zet::Unknown::Handle_T<zet::Unknown> copy = message->clone();
    const auto* const same = dynamic_cast<Msg_NetCommand*>(copy.get());
    ASSERT_NE(same, nullptr);
    EXPECT_TRUE(same->fromAddress == address(1));
    EXPECT_TRUE(same->targetAddress == message->targetAddress);
    EXPECT_TRUE(same->data == message->data);
    const zet::Unknown::Handle_T<zet::Unknown> fresh = message->rtCreateInstance();
    EXPECT_EQ(dynamic_cast<Msg_NetCommand&>(*fresh).data.getBufferSize(), 0);
    const zet::Unknown::Handle_T<zet::Unknown> base = NetMessage().clone();
    EXPECT_STREQ(base->getClassName(), L"NetMessage");
}

TEST(NetMessage, AnEmptyOneIsOneFlagByte)
{
    EXPECT_EQ(exported(NetMessage()), Bytes({0x00}));
    EXPECT_EQ(exported(Msg_NetCommand()), Bytes({0x00, 0x00}));
}

TEST(NetMessage, AFromAddressIsFlagBitZeroAndSixteenBytes)
{
    Msg_NetCommand message;
    message.fromAddress = address(0x10);
    message.data = bufferOf(kFrame);
    const Bytes golden = {0x01,                                           // flags: from
                          0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, // from address
                          0x18, 0x19, 0x1A, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, //
                          0x06,                                           // data: six bytes
                          0x34, 0x12, 0x00, 0x00, 0x00, 0x00};            // a frame
    EXPECT_EQ(exported(message), golden);
}

TEST(NetMessage, TargetsAreFlagBitOneACountAndTheAddresses)
{
    Msg_NetCommand message;
    message.targetAddress = {address(0x20), address(0x00)};
    const Bytes golden = {0x02,                                           // flags: target
                          0x02,                                           // two of them
                          0x20, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x27, //
                          0x28, 0x29, 0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F, //
                          0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, //
                          0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F, //
                          0x00};                                          // no data
    EXPECT_EQ(exported(message), golden);
}

TEST(NetMessage, TheFromAddressPrecedesTheTargets)
{
    NetMessage message;
    message.fromAddress = address(0x40);
    message.targetAddress = {address(0x20)};
    EXPECT_EQ(exported(message), Bytes({0x03}) + addressBytes(0x40) + Bytes({0x01}) + addressBytes(0x20));
}

TEST(NetMessage, AnAllZeroTargetIsATarget)
{
    NetMessage message;
    message.targetAddress = {zet::Uuid()};
    EXPECT_EQ(exported(message), Bytes({0x02, 0x01}) + Bytes(16, 0));
}

TEST(NetMessage, CountsOf128AndMoreTakeTwoBytes)
{
    Msg_NetCommand message;
    message.targetAddress.assign(128, address(0x20));
    message.data = bufferOf(Bytes(300, 0x55));
    const Bytes bytes = exported(message);
    ASSERT_EQ(bytes.size(), 1U + 2U + 128 * 16 + 2 + 300);
    EXPECT_EQ(bytes[1], 0x80);
    EXPECT_EQ(bytes[2], 0x01);
    // 300 is 2 * 128 + 44.
    EXPECT_EQ(bytes[3 + 128 * 16], 0xAC);
    EXPECT_EQ(bytes[4 + 128 * 16], 0x02);
}

TEST(NetMessage, ImportsWhatItExports)
{
    Msg_NetCommand message;
    message.fromAddress = address(0x40);
    message.targetAddress = {address(0x20), address(0x60), zet::Uuid()};
    message.data = bufferOf(kFrame);
    Msg_NetCommand again;
    again.targetAddress = {address(1)};
    ASSERT_TRUE(imports(again, exported(message)));
    EXPECT_TRUE(again.fromAddress == message.fromAddress);
    EXPECT_TRUE(again.targetAddress == message.targetAddress);
    EXPECT_TRUE(again.data == message.data);
}

TEST(NetMessage, WhatDoesNotFollowIsEmptied)
{
    Msg_NetCommand message;
    message.fromAddress = address(0x40);
    message.targetAddress = {address(0x20)};
    message.data = bufferOf(kFrame);
    ASSERT_TRUE(imports(message, {0x00, 0x00}));
    EXPECT_TRUE(message.fromAddress.isNull());
    EXPECT_TRUE(message.targetAddress.empty());
    EXPECT_EQ(message.data.getBufferSize(), 0);
}

TEST(NetMessage, FlagsWithoutTheirContentAreTaken)
{
    Msg_NetCommand message;
    EXPECT_TRUE(imports(message, Bytes({0x03}) + Bytes(16, 0) + Bytes({0x00, 0x00})));
    EXPECT_TRUE(message.fromAddress.isNull());
    EXPECT_TRUE(message.targetAddress.empty());
}

TEST(NetMessage, EveryCutOfTheStreamIsRefused)
{
    Msg_NetCommand message;
    message.fromAddress = address(0x40);
    message.targetAddress = {address(0x20), address(0x60)};
    message.data = bufferOf(kFrame);
    const Bytes whole = exported(message);
    for (size_t size = 0; size < whole.size(); ++size)
    {
        Msg_NetCommand cut;
        EXPECT_FALSE(imports(cut, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)))) << size;
    }
}

TEST(NetMessage, AShortReadOfAnAddressThrowsItsText)
{
    EXPECT_TRUE(thrownBy({}) == L"NetMessage::operator >>");
    EXPECT_TRUE(thrownBy(Bytes({0x01}) + Bytes(15, 1)) == L"Uuid::operator >>");
    EXPECT_TRUE(thrownBy(Bytes({0x02, 0x02}) + Bytes(31, 1)) == L"Uuid::operator >>");
    EXPECT_TRUE(thrownBy(Bytes({0x01}) + Bytes(16, 1)).isEmpty());
}

TEST(NetMessage, AShortWriteOfAnAddressThrowsItsText)
{
    NetMessage message;
    message.fromAddress = address(0x40);
    message.targetAddress = {address(0x20)};
    for (const int room : {1, 16, 18, 33})
    {
        FullOutput full(room);
        zet::OutputStream out(&full);
        try
        {
            out << message;
            ADD_FAILURE() << room;
        }
        catch (const zet::Exception& fault)
        {
            EXPECT_TRUE(fault.getText() == L"Uuid::operator <<") << room;
        }
    }
    FullOutput full(34);
    zet::OutputStream out(&full);
    EXPECT_NO_THROW(out << message);
}

TEST(NetMessage, ExportToAFullSinkIsFalseAndReported)
{
    const test::LogLines lines;
    Msg_NetCommand message;
    message.fromAddress = address(0x40);
    FullOutput full(10);
    zet::OutputStream out(&full);
    EXPECT_FALSE(message.exportTo(out));
    EXPECT_EQ(lines.texts().size(), 1U);
}

TEST(NetMessage, ATargetCountAbove31BitsThrowsInvalidSize)
{
    EXPECT_TRUE(thrownBy({0x02, 0x80, 0x80, 0x80, 0x80, 0x08}) == L"std::vector invalid size.");
    EXPECT_TRUE(thrownBy({0x02, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01}) ==
                L"std::vector invalid size.");
}

TEST(NetMessage, AHugeTargetCountCostsWhatItsBytesCost)
{
    // 0x7FFFFFFF targets announced, one there.
    const Bytes bytes = Bytes({0x02, 0xFF, 0xFF, 0xFF, 0xFF, 0x07}) + Bytes(16, 1);
    Msg_NetCommand message;
    const test::AllocationCount count;
    EXPECT_FALSE(imports(message, bytes));
    EXPECT_LT(count.bytes(), 10000);
    EXPECT_EQ(message.targetAddress.size(), 1U);
}

TEST(NetMessage, AHugeDataSizeCostsNothing)
{
    Msg_NetCommand message;
    const test::AllocationCount count;
    EXPECT_FALSE(imports(message, {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0x07, 0x01}));
    EXPECT_FALSE(imports(message, {0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x01}));
    EXPECT_LT(count.bytes(), 10000);
}

TEST(NetMessage, PropertiesBearTheirNamesTypesAndDescriptions)
{
    const Msg_NetCommand message;
    const zet::PropertyAttributes& table = message.getPropertyAttributes();
    ASSERT_EQ(table.size(), 3U);
    EXPECT_STREQ(table[0]->getName(), L"fromAddress");
    EXPECT_STREQ(table[0]->getDescription(), L"From Address.");
    EXPECT_STREQ(table[1]->getName(), L"targetAddress");
    EXPECT_STREQ(table[1]->getDescription(), L"Target Address.");
    EXPECT_STREQ(table[2]->getName(), L"data");
    EXPECT_STREQ(table[2]->getDescription(), L"data");
    EXPECT_EQ(NetMessage().getPropertyAttributes().size(), 2U);
    // A second call changes nothing.
    NetMessage::registerProperty_();
    Msg_NetCommand::registerProperty_();
    EXPECT_EQ(message.getPropertyAttributes().size(), 3U);
}

TEST(NetMessage, PropertiesGoToJsonAndBack)
{
    Msg_NetCommand message;
    message.fromAddress = address(0x10);
    message.targetAddress = {address(0x20), zet::Uuid()};
    message.data = bufferOf(kFrame);
    JsonValue value;
    ASSERT_TRUE(message.exportProperty(value));
    EXPECT_TRUE(Json::convertToString(value, false) ==
                L"{\"fromAddress\":\"101112131415161718191a1b1c1d1e1f\","
                L"\"targetAddress\":[\"202122232425262728292a2b2c2d2e2f\",\"00000000000000000000000000000000\"],"
                L"\"data\":\"341200000000\"}");
    Msg_NetCommand again;
    again.targetAddress = {address(1)};
    ASSERT_TRUE(again.importProperty(value));
    EXPECT_TRUE(again.fromAddress == message.fromAddress);
    EXPECT_TRUE(again.targetAddress == message.targetAddress);
    EXPECT_TRUE(again.data == message.data);
}

TEST(NetMessage, JsonOfAnotherTypeOrNameLeavesTheField)
{
    Msg_NetCommand message;
    message.targetAddress = {address(0x20)};
    message.data = bufferOf(kFrame);
    const wchar_t* const misfits[] = {
        L"7",
        L"{\"fromAddress\":{}}",
        L"{\"fromAddress\":\"00\"}",
        L"{\"targetAddress\":\"202122232425262728292a2b2c2d2e2f\"}",
        L"{\"targetAddress\":[\"202122232425262728292a2b2c2d2e2f\",7]}",
        L"{\"targetAddress\":{\"0\":\"202122232425262728292a2b2c2d2e2f\"}}",
        L"{\"data\":[]}",
        L"{\"data\":\"3\"}",
        L"{\"data\":\"zz\"}",
    };
    for (const wchar_t* text : misfits)
        EXPECT_FALSE(message.importProperty(parsed(text)));
    EXPECT_TRUE(message.importProperty(parsed(L"{\"FromAddress\":7,\"targets\":[],\"class\":\"NetMessage\"}")));
    EXPECT_EQ(message.targetAddress.size(), 1U);
    EXPECT_TRUE(message.data == bufferOf(kFrame));
}

TEST(NetMessage, ListsOfMessagesGoToJsonAndBack)
{
    NetMessageArray messages = {NetMessage::createInstance(), Msg_NetCommand::createInstance(), nullptr};
    messages[0]->fromAddress = address(0x10);
    const zet::IPropertyConverter* const converter = zet::PropertyFactory::getPropertyConverter(L"NetMessageArray");
    ASSERT_NE(converter, nullptr);
    JsonValue value;
    ASSERT_TRUE(converter->convertToJson(&messages, value));
    NetMessageArray again;
    ASSERT_TRUE(converter->convertFromJson(value, &again));
    ASSERT_EQ(again.size(), 3U);
    EXPECT_TRUE(again[0]->fromAddress == address(0x10));
    EXPECT_STREQ(again[1]->getClassName(), L"Msg_NetCommand");
    EXPECT_TRUE(again[2].isNull());
    // A plain message is not a command.
    Msg_NetCommandList commands;
    EXPECT_FALSE(zet::PropertyFactory::getPropertyConverter(L"Msg_NetCommandList")->convertFromJson(value, &commands));
    EXPECT_TRUE(commands.empty());
}

TEST(NetMessage, APackagerGoesInAsItsStreamFrame)
{
    CCmdPackager packager;
    packager.SetCmdID(0x1234);
    packager.SetTargetAddress(address(0x20));
    ASSERT_TRUE(packager.Write(0x01020304));
    const auto message = convertToNetMessage(&packager);
    ASSERT_TRUE(message);
    // The size word: 4 bytes shifted by two, and bit 1 for the target.
    EXPECT_TRUE(message->data ==
                bufferOf(Bytes({0x34, 0x12, 0x12, 0x00, 0x00, 0x00}) + addressBytes(0x20) + Bytes({1, 2, 3, 4})));
    EXPECT_TRUE(message->fromAddress.isNull());
    EXPECT_TRUE(message->targetAddress.empty());
}

TEST(NetMessage, AMessageComesOutAsThePackagerThatWentIn)
{
    CCmdPackager packager;
    packager.SetCmdID(0x0123);
    packager.SetFromAddress(address(0x40));
    ASSERT_TRUE(packager.Write(7));
    const auto message = convertToNetMessage(&packager);
    const auto again = convertToNetCommand(message);
    ASSERT_TRUE(again);
    EXPECT_EQ(again->GetCmdID(), 0x0123);
    EXPECT_TRUE(again->GetFromAddress() == address(0x40));
    EXPECT_EQ(again->GetDataSize(), 4);
    EXPECT_EQ(again->GetReadPointer(), 0);
}

TEST(NetMessage, NothingConvertsToNothing)
{
    EXPECT_TRUE(convertToNetMessage(nullptr).isNull());
    EXPECT_EQ(convertToNetCommand(nullptr), nullptr);
}

TEST(NetMessage, ACutFrameConvertsToNothingAndIsReported)
{
    const auto message = Msg_NetCommand::createInstance();
    for (int size = 0; size < 6; ++size)
    {
        const test::LogLines lines;
        message->data = bufferOf(Bytes(kFrame.begin(), kFrame.begin() + size));
        EXPECT_EQ(convertToNetCommand(message), nullptr) << size;
        EXPECT_GE(lines.texts().size(), 1U) << size;
    }
    // Four payload bytes announced, three there.
    message->data = bufferOf({0x34, 0x12, 0x10, 0x00, 0x00, 0x00, 1, 2, 3});
    EXPECT_EQ(convertToNetCommand(message), nullptr);
    message->data = bufferOf(kFrame);
    EXPECT_NE(convertToNetCommand(message), nullptr);
}

} // namespace
