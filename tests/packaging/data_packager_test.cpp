#include "packaging/data_packager.h"

#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace
{

using Bytes = std::vector<unsigned char>;

Bytes bytesOf(const CDataPackager& pk)
{
    return Bytes(pk.GetBuffer(), pk.GetBuffer() + pk.GetDataSize());
}

class DataPackager : public testing::Test
{
protected:
    void fill(const Bytes& bytes) { ASSERT_TRUE(pk.Write(bytes.data(), static_cast<int>(bytes.size()))); }

    CDataPackager pk;
};

TEST_F(DataPackager, NumbersAreBigEndian)
{
    EXPECT_TRUE(pk.Write(true));
    EXPECT_TRUE(pk.Write('A'));
    EXPECT_TRUE(pk.Write(static_cast<unsigned char>(0xFE)));
    EXPECT_TRUE(pk.Write(static_cast<short>(-2)));
    EXPECT_TRUE(pk.Write(static_cast<unsigned short>(0x1234)));
    EXPECT_TRUE(pk.Write(-3));
    EXPECT_TRUE(pk.Write(0x89ABCDEFul));
    EXPECT_EQ(bytesOf(pk),
              (Bytes{1, 0x41, 0xFE, 0xFF, 0xFE, 0x12, 0x34, 0xFF, 0xFF, 0xFF, 0xFD, 0x89, 0xAB, 0xCD, 0xEF}));

    bool flag = false;
    char letter = 0;
    unsigned char byte = 0;
    short small = 0;
    unsigned short word = 0;
    int number = 0;
    unsigned long large = 0;
    EXPECT_TRUE(pk.Read(flag) && pk.Read(letter) && pk.Read(byte) && pk.Read(small) && pk.Read(word) &&
                pk.Read(number) && pk.Read(large));
    EXPECT_TRUE(flag);
    EXPECT_EQ(letter, 'A');
    EXPECT_EQ(byte, 0xFE);
    EXPECT_EQ(small, -2);
    EXPECT_EQ(word, 0x1234);
    EXPECT_EQ(number, -3);
    EXPECT_EQ(large, 0x89ABCDEFul);
}

TEST_F(DataPackager, AnyByteButZeroReadsAsTrue)
{
    fill({0x80, 0});
    bool flag = false;
    EXPECT_TRUE(pk.Read(&flag));
    EXPECT_TRUE(flag);
    EXPECT_TRUE(pk.Read(&flag));
    EXPECT_FALSE(flag);
}

TEST_F(DataPackager, FloatIsALengthAndSixDecimals)
{
    EXPECT_TRUE(pk.Write(0.0f));
    EXPECT_TRUE(pk.Write(-1.25f));
    const std::string text("\x08"
                           "0.000000"
                           "\x09"
                           "-1.250000");
    EXPECT_EQ(bytesOf(pk), Bytes(text.begin(), text.end()));
    float value = 5;
    EXPECT_TRUE(pk.Read(&value));
    EXPECT_EQ(value, 0.0f);
    EXPECT_TRUE(pk.Read(value));
    EXPECT_EQ(value, -1.25f);
}

TEST_F(DataPackager, FloatTextThatDoesNotParseLeavesTheTargetAndSucceeds)
{
    fill({3, 'a', 'b', 'c', 0});
    float value = 7.5f;
    EXPECT_TRUE(pk.Read(&value));
    EXPECT_EQ(value, 7.5f);
    EXPECT_TRUE(pk.Read(&value));
    EXPECT_EQ(value, 7.5f);
}

TEST_F(DataPackager, FloatReadCutInItsTextLeavesThePointerAfterTheLength)
{
    fill({8, '1', '.', '5'});
    float value = 7.5f;
    EXPECT_FALSE(pk.Read(&value));
    EXPECT_EQ(pk.GetReadPointer(), 1);
    EXPECT_EQ(value, 7.5f);
}

TEST_F(DataPackager, Count15TakesOneByteUpTo127)
{
    EXPECT_TRUE(pk.Write15(0x7F));
    EXPECT_TRUE(pk.Write15(0x80));
    EXPECT_TRUE(pk.Write15(0x7FFF));
    EXPECT_TRUE(pk.Write15(0x8000));
    EXPECT_EQ(bytesOf(pk), (Bytes{0x7F, 0x80, 0x80, 0xFF, 0xFF, 0x00}));
}

TEST_F(DataPackager, Count15DecodesByPointer)
{
    fill({0x81, 0x02, 0x7F, 0x81});
    unsigned short value = 0;
    EXPECT_TRUE(pk.Read15(&value));
    EXPECT_EQ(value, 0x0102);
    EXPECT_TRUE(pk.Read15(&value));
    EXPECT_EQ(value, 0x7F);
    EXPECT_FALSE(pk.Read15(&value));
    EXPECT_EQ(value, 0x7F);
    EXPECT_EQ(pk.GetReadPointer(), 4);
}

TEST_F(DataPackager, Count30HasOneToFourBytes)
{
    for (const unsigned long value :
         {0x3Ful, 0x40ul, 0x3FFFul, 0x4000ul, 0x3FFFFFul, 0x400000ul, 0x3FFFFFFFul, 0x40000000ul})
        EXPECT_TRUE(pk.Write30(value));
    EXPECT_EQ(bytesOf(pk), (Bytes{0x3F,                   //
                                  0x40, 0x40,             //
                                  0x7F, 0xFF,             //
                                  0x80, 0x40, 0x00,       //
                                  0xBF, 0xFF, 0xFF,       //
                                  0xC0, 0x40, 0x00, 0x00, //
                                  0xFF, 0xFF, 0xFF, 0xFF, //
                                  0x00}));
    for (const unsigned long expected : {0x3Ful, 0x40ul, 0x3FFFul, 0x4000ul, 0x3FFFFFul, 0x400000ul, 0x3FFFFFFFul, 0ul})
    {
        unsigned long value = 1;
        EXPECT_TRUE(pk.Read30(&value));
        EXPECT_EQ(value, expected);
    }
}

TEST_F(DataPackager, Count30TakesALongerFormThanNeeded)
{
    fill({0x40, 0x05});
    unsigned long value = 0;
    EXPECT_TRUE(pk.Read30(&value));
    EXPECT_EQ(value, 5ul);
}

TEST_F(DataPackager, Count30CutHalfWayStoresNothing)
{
    fill({0xC0, 0x01, 0x02});
    unsigned long value = 9;
    EXPECT_FALSE(pk.Read30(&value));
    EXPECT_EQ(value, 9ul);
    EXPECT_EQ(pk.GetReadPointer(), 3);
}

TEST_F(DataPackager, CountsByReferenceHaveAFixedSize)
{
    fill({0, 0, 0, 5, 0x81, 0x02});
    unsigned long large = 9;
    EXPECT_TRUE(pk.Read30(large));
    EXPECT_EQ(large, 5ul);
    EXPECT_EQ(pk.GetReadPointer(), 4);
    unsigned short small = 9;
    EXPECT_TRUE(pk.Read15(small));
    EXPECT_EQ(small, 0x8102);
    EXPECT_EQ(pk.GetReadPointer(), 6);
}

TEST_F(DataPackager, Count30ByPointerTakesOneByteOfFourZeros)
{
    fill({0, 0, 0, 5});
    unsigned long value = 9;
    EXPECT_TRUE(pk.Read30(&value));
    EXPECT_EQ(value, 0ul);
    EXPECT_EQ(pk.GetReadPointer(), 1);
}

TEST_F(DataPackager, IdentifierIsSixteenRawBytes)
{
    zet::Uuid id;
    for (int i = 0; i < 16; ++i)
        reinterpret_cast<unsigned char*>(&id)[i] = static_cast<unsigned char>(i * 3);
    EXPECT_TRUE(pk.Write(id));
    ASSERT_EQ(pk.GetDataSize(), 16);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(pk.GetBuffer()[i], i * 3);
    zet::Uuid back;
    EXPECT_TRUE(pk.Read(&back));
    EXPECT_EQ(back, id);
}

TEST_F(DataPackager, BufferIsASizeAndItsBytes)
{
    zet::Buffer buffer(3);
    buffer.getBuffer()[0] = 7;
    buffer.getBuffer()[2] = 9;
    EXPECT_TRUE(pk.Write(buffer));
    EXPECT_EQ(bytesOf(pk), (Bytes{0, 0, 0, 3, 7, 0, 9}));
    zet::Buffer back;
    EXPECT_TRUE(pk.Read(back));
    EXPECT_EQ(back, buffer);
}

TEST_F(DataPackager, BufferOfNegativeSizeIsRefused)
{
    fill({0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3});
    zet::Buffer back;
    EXPECT_FALSE(pk.Read(back));
    EXPECT_FALSE(pk.Write("x", -1));
    char byte = 0;
    EXPECT_FALSE(pk.Read(&byte, -1));
}

TEST_F(DataPackager, FillsToTheLastByteAndThenLogs)
{
    const Bytes most(0x10000, 0xAB);
    EXPECT_TRUE(pk.Write(most.data(), 0x10000));
    EXPECT_EQ(pk.GetDataSize(), 0x10000);
    const test::LogLines log;
    EXPECT_FALSE(pk.Write(true));
    EXPECT_EQ(pk.GetDataSize(), 0x10000);
    EXPECT_TRUE(
        log.has(zet::Log::kError, L"CDataPackager Alloc Error: m_iBufSize 65536, m_iDataSize 65536, allocSize 1"));
}

TEST_F(DataPackager, FloatAtTheEndTakesOnlyItsOwnBytes)
{
    const Bytes most(0x10000 - 9, 0xAB);
    EXPECT_TRUE(pk.Write(most.data(), static_cast<int>(most.size())));
    EXPECT_TRUE(pk.Write(1.5f));
    EXPECT_EQ(pk.GetDataSize(), 0x10000);
}

TEST_F(DataPackager, TextThatDoesNotFitKeepsItsCount)
{
    const Bytes most(0x10000 - 3, 0xAB);
    EXPECT_TRUE(pk.Write(most.data(), static_cast<int>(most.size())));
    EXPECT_FALSE(pk.Write(zet::String_T<wchar_t>(L"abc")));
    EXPECT_EQ(pk.GetDataSize(), 0x10000 - 2);
}

TEST_F(DataPackager, ShortReadLeavesTargetAndPointer)
{
    fill({1, 2, 3});
    int number = 42;
    EXPECT_FALSE(pk.Read(&number));
    EXPECT_EQ(number, 42);
    unsigned char byte = 0;
    EXPECT_TRUE(pk.Read(&byte));
    EXPECT_EQ(byte, 1);
}

TEST_F(DataPackager, ResetKeepsTheBytesAndTheTag)
{
    pk.SetPackageID(7);
    fill({9, 8});
    pk.Reset();
    EXPECT_EQ(pk.GetDataSize(), 0);
    EXPECT_EQ(pk.GetReadPointer(), 0);
    EXPECT_EQ(pk.GetPackageID(), 7);
    EXPECT_EQ(pk.GetBuffer()[0], 9);
}

TEST_F(DataPackager, ClearZeroesEverything)
{
    pk.SetPackageID(7);
    fill(Bytes(0x10000, 1));
    pk.Clear();
    EXPECT_EQ(pk.GetPackageID(), 0);
    EXPECT_EQ(pk.GetDataSize(), 0);
    EXPECT_EQ(pk.GetBufferSize(), 0x10000);
    EXPECT_EQ(Bytes(pk.GetBuffer(), pk.GetBuffer() + 0x10000), Bytes(0x10000, 0));
}

TEST_F(DataPackager, AssignmentTakesTagDataAndReadPointer)
{
    pk.SetPackageID(7);
    fill({1, 2, 3});
    unsigned char byte = 0;
    EXPECT_TRUE(pk.Read(&byte));
    const auto other = std::make_unique<CDataPackager>();
    *other = pk;
    EXPECT_EQ(other->GetPackageID(), 7);
    EXPECT_EQ(bytesOf(*other), (Bytes{1, 2, 3}));
    EXPECT_EQ(other->GetReadPointer(), 1);
    CDataPackager& same = *other;
    *other = same;
    EXPECT_EQ(bytesOf(*other), (Bytes{1, 2, 3}));
}

TEST(TextConversion, SurrogatesBecomeTwoInvalidCodePoints)
{
    const unsigned short in[] = {0x41, 0xD83D, 0xDE00, 0xE000};
    unsigned long out[4] = {};
    CDataPackager::utf16Tutf32(out, 0, in, 4);
    EXPECT_EQ(out[0], 0x41ul);
    EXPECT_EQ(out[1], ((0x3Dul << 10) | ((0xD83Dul - 0xDC00ul) & 0xFFFF)) + 0x10000);
    EXPECT_EQ(out[2], (((0xDE00ul - 0xD800ul) << 10) | 0x200ul) + 0x10000);
    EXPECT_EQ(out[3], 0xE000ul);
}

TEST(TextConversion, ValuesAboveSixteenBitsBecomeOneFixedPair)
{
    const unsigned long in[] = {0x1F600, 0x41, 0x10FFFF};
    unsigned short out[6] = {};
    CDataPackager::utf32Tutf16(out, 0, in, 3);
    const unsigned short expected[] = {0xD840, 0xDC00, 0x41, 0xD840, 0xDC00, 0};
    EXPECT_EQ(std::vector<unsigned short>(out, out + 6), std::vector<unsigned short>(expected, expected + 6));
}

} // namespace
