// Both written forms of text, in every build: the codec is a template over the unit.
#include "packaging/wire/text_form.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using Bytes = std::vector<unsigned char>;
using Text16 = zet::String_T<char16_t>;
using Text32 = zet::String_T<char32_t>;

template <class P>
Bytes bytesOf(const P& pk)
{
    return Bytes(pk.GetBuffer(), pk.GetBuffer() + pk.GetDataSize());
}

template <class Unit>
zet::String_T<Unit> textOf(int length, Unit unit = Unit('a'))
{
    const std::basic_string<Unit> units(static_cast<size_t>(length), unit);
    return zet::String_T<Unit>(units.c_str(), length);
}

TEST(TextForm, EmptyTextIsOneZeroByteInBothForms)
{
    CCmdPackager pk;
    EXPECT_TRUE(wire::writeText(pk, Text16()));
    EXPECT_TRUE(wire::writeText(pk, Text32()));
    EXPECT_EQ(bytesOf(pk), (Bytes{0, 0}));
}

TEST(TextForm, TwoByteUnitsGoAsTheyLie)
{
    CCmdPackager pk;
    EXPECT_TRUE(wire::writeText(pk, Text16(u"aé中")));
    EXPECT_EQ(bytesOf(pk), (Bytes{3, 'a', 0, 0xE9, 0, 0x2D, 0x4E}));
}

TEST(TextForm, FourByteWriterCountsTwiceAndTwoAndEndsInZeros)
{
    CCmdPackager pk;
    EXPECT_TRUE(wire::writeText(pk, Text32(U"aé中")));
    EXPECT_EQ(bytesOf(pk), (Bytes{8, 'a', 0, 0xE9, 0, 0x2D, 0x4E, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(TextForm, CharacterAboveTheBasicPlaneLeavesTheFourByteWriterAsAFixedPair)
{
    CCmdPackager pk;
    EXPECT_TRUE(wire::writeText(pk, Text32(U"\U0001F600x")));
    EXPECT_EQ(bytesOf(pk), (Bytes{6, 0x40, 0xD8, 0x00, 0xDC, 'x', 0, 0, 0, 0, 0, 0, 0}));
}

TEST(TextForm, StringOf63UnitsHasOneCountByteAndOf64Two)
{
    CCmdPackager pk;
    EXPECT_TRUE(wire::writeText(pk, textOf<char16_t>(63)));
    EXPECT_EQ(pk.GetBuffer()[0], 0x3F);
    pk.Clear();
    EXPECT_TRUE(wire::writeText(pk, textOf<char16_t>(64)));
    EXPECT_EQ(pk.GetBuffer()[0], 0x40);
    EXPECT_EQ(pk.GetBuffer()[1], 0x40);
    EXPECT_EQ(pk.GetDataSize(), 2 + 128);
}

TEST(TextForm, ReaderTakesBothForms)
{
    CDataPackager pk;
    EXPECT_TRUE(wire::writeText(pk, Text16(u"one")));
    EXPECT_TRUE(wire::writeText(pk, Text32(U"two")));
    EXPECT_TRUE(wire::writeText(pk, Text16(u"three")));
    EXPECT_TRUE(wire::writeText(pk, Text32(U"four")));
    Text32 wide;
    Text16 narrow;
    EXPECT_TRUE(wire::readText(pk, &wide));
    EXPECT_EQ(wide, Text32(U"one"));
    EXPECT_TRUE(wire::readText(pk, &wide));
    EXPECT_EQ(wide, Text32(U"two"));
    EXPECT_TRUE(wire::readText(pk, &narrow));
    EXPECT_EQ(narrow, Text16(u"three"));
    EXPECT_TRUE(wire::readText(pk, &narrow));
    EXPECT_EQ(narrow, Text16(u"four"));
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
}

TEST(TextForm, EmbeddedZeroCutsTheText)
{
    CCmdPackager pk;
    const unsigned char bytes[] = {4, 'a', 0, 0, 0, 'b', 0, 'c', 0};
    pk.Write(bytes, sizeof bytes);
    Text16 text;
    EXPECT_TRUE(wire::readText(pk, &text));
    EXPECT_EQ(text, Text16(u"a"));
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
}

TEST(TextForm, SurrogatePairStaysAPairForTwoByteUnitsAndBecomesTwoOddValuesForFour)
{
    CCmdPackager pk;
    EXPECT_TRUE(wire::writeText(pk, Text16(u"\U0001F600")));
    Text32 wide;
    EXPECT_TRUE(wire::readText(pk, &wide));
    ASSERT_EQ(wide.getLength(), 2);
    EXPECT_EQ(static_cast<unsigned long>(wide[0]), ((0x3Dul << 10) | 0xFC3Dul) + 0x10000);
    EXPECT_EQ(static_cast<unsigned long>(wide[1]), ((0x600ul << 10) | 0x200ul) + 0x10000);
    pk.Reset();
    Text16 narrow;
    EXPECT_TRUE(wire::readText(pk, &narrow));
    EXPECT_EQ(narrow, Text16(u"\U0001F600"));
}

// Four units are looked at together, so each position of the end, and of a surrogate, is a case of its own.
TEST(TextForm, EveryLengthEndAndSurrogateIsReadUnitByUnit)
{
    Text32 used = textOf<char32_t>(100, U'u');
    for (int count = 1; count <= 30; ++count)
        for (int end = 0; end <= count; ++end)
            for (int lone = -1; lone < end; ++lone)
            {
                CCmdPackager pk;
                pk.Write(static_cast<unsigned char>(count));
                std::u32string expected;
                for (int i = 0; i < count; ++i)
                {
                    const auto unit = static_cast<unsigned>(i == end ? 0 : i == lone ? 0xD812 + i : 0x4E00 + 257 * i);
                    pk.Write(static_cast<unsigned char>(unit));
                    pk.Write(static_cast<unsigned char>(unit >> 8));
                    if (i < end)
                        expected += static_cast<char32_t>(i == lone ? wire::widenUnit(unit) : unit);
                }
                Text32 fresh;
                ASSERT_TRUE(wire::readText(pk, &fresh));
                EXPECT_EQ(fresh.view(), expected) << count << " units, " << end << ", " << lone;
                EXPECT_EQ(fresh.getBuffer()[fresh.getLength()], U'\0');
                EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
                pk.Reset();
                ASSERT_TRUE(wire::readText(pk, &used));
                EXPECT_EQ(used.view(), expected) << count << " units, " << end << ", " << lone;
                EXPECT_EQ(used.getBuffer()[used.getLength()], U'\0');
            }
}

TEST(TextForm, TextOf1000UnitsReadsAndOf1001LeavesTheTargetEmpty)
{
    CCmdPackager pk;
    EXPECT_TRUE(wire::writeText(pk, textOf<char16_t>(1000)));
    EXPECT_TRUE(wire::writeText(pk, textOf<char16_t>(1001)));
    Text16 text;
    EXPECT_TRUE(wire::readText(pk, &text));
    EXPECT_EQ(text.getLength(), 1000);
    EXPECT_FALSE(wire::readText(pk, &text));
    EXPECT_TRUE(text.isEmpty());
}

TEST(TextForm, FourByteWriterOfCommandsStopsAt1000AndItsReaderAt499)
{
    CCmdPackager pk;
    EXPECT_FALSE(wire::writeText(pk, textOf<char32_t>(1001)));
    EXPECT_EQ(pk.GetDataSize(), 0);
    EXPECT_TRUE(wire::writeText(pk, textOf<char32_t>(499)));
    EXPECT_TRUE(wire::writeText(pk, textOf<char32_t>(500)));
    Text32 text;
    EXPECT_TRUE(wire::readText(pk, &text));
    EXPECT_EQ(text.getLength(), 499);
    EXPECT_FALSE(wire::readText(pk, &text));
}

TEST(TextForm, RecordsHaveNoLimitOnTheCount)
{
    CDataPackager pk;
    for (const int length : {1022, 1023, 1024, 5000})
    {
        pk.Reset();
        EXPECT_TRUE(wire::writeText(pk, textOf<char32_t>(length)));
        Text32 text;
        EXPECT_TRUE(wire::readText(pk, &text));
        EXPECT_EQ(text, textOf<char32_t>(length));
    }
}

TEST(TextForm, CutTextLeavesTheTargetAndThePointerAfterTheCount)
{
    CCmdPackager pk;
    const unsigned char bytes[] = {3, 'a', 0, 'b', 0, 'c'};
    pk.Write(bytes, sizeof bytes);
    Text32 text(U"old");
    EXPECT_FALSE(wire::readText(pk, &text));
    EXPECT_EQ(text, Text32(U"old"));
    EXPECT_EQ(pk.GetReadPointer(), 1);
}

TEST(TextForm, AnnouncedGigabyteCostsNothing)
{
    CDataPackager pk;
    const unsigned char bytes[] = {0xFF, 0xFF, 0xFF, 0xFF, 'a', 0};
    pk.Write(bytes, sizeof bytes);
    Text32 text(U"old");
    EXPECT_FALSE(wire::readText(pk, &text));
    EXPECT_EQ(text, Text32(U"old"));
    EXPECT_LT(text.getCapacity(), 100);
}

TEST(TextForm, WritesWhatThePackagerWritesForTheHostsOwnWidth)
{
    CCmdPackager byPackager;
    CCmdPackager byForm;
    EXPECT_TRUE(byPackager.Write(zet::String_T<wchar_t>(L"host 中")));
    if constexpr (sizeof(wchar_t) == 4)
        EXPECT_TRUE(wire::writeText(byForm, Text32(U"host 中")));
    else
        EXPECT_TRUE(wire::writeText(byForm, Text16(u"host 中")));
    EXPECT_EQ(bytesOf(byPackager), bytesOf(byForm));
}

} // namespace
