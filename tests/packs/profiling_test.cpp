#include "packs/profiling.h"

#include "tests/support/log_lines.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::writeHead;

namespace
{

cProfilingMaxValue value(int a, int b, int c)
{
    cProfilingMaxValue result;
    result.m_Value1 = a;
    result.m_Value2 = b;
    result.m_Value3 = c;
    return result;
}

} // namespace

TEST(ProfilingMaxValue, OneValueAboveZeroMakesItValid)
{
    EXPECT_TRUE(value(0, 0, 1).IsValid());
    EXPECT_TRUE(value(-1, 1, -1).IsValid());
    EXPECT_TRUE(value(1, 0, 0).IsValid());
    EXPECT_FALSE(value(0, 0, 0).IsValid());
    EXPECT_FALSE(value(-1, -1, -1).IsValid());
}

TEST(ProfilingPack, ReadEmptiesTheMapEvenWithoutBytes)
{
    CmdProfilingPack_GetMaxValues message;
    message.m_ProfilingMaxValues[L"old"] = value(1, 2, 3);
    CDataPackager pk;
    EXPECT_TRUE(message.Read(&pk));
    EXPECT_TRUE(message.m_ProfilingMaxValues.empty());
}

TEST(ProfilingPack, MissingEntriesAreOneWithAnEmptyName)
{
    CDataPackager pk;
    pk.Write(4);
    cProfilingMaxValue whole = value(1, 2, 3);
    whole.m_Name = L"whole";
    ASSERT_TRUE(whole.Write(&pk));
    pk.Write(zet::String_T<wchar_t>(L"cut"));
    pk.Write(9);
    CmdProfilingPack_GetMaxValues message;
    EXPECT_TRUE(message.Read(&pk));
    ASSERT_EQ(message.m_ProfilingMaxValues.size(), 3u);
    EXPECT_EQ(message.m_ProfilingMaxValues[L"whole"].m_Value3, 3);
    EXPECT_EQ(message.m_ProfilingMaxValues[L"cut"].m_Value1, 9);
    EXPECT_EQ(message.m_ProfilingMaxValues[L"cut"].m_Value2, 0);
    EXPECT_FALSE(message.m_ProfilingMaxValues.at(L"").IsValid());
}

TEST(ProfilingPack, KeyThatDisagreesWithTheRecordDoesNotTravel)
{
    CmdProfilingPack_SubmitMaxValues message;
    message.m_ProfilingMaxValues[L"key"].m_Name = L"name";
    CDataPackager pk;
    ASSERT_TRUE(message.Write(&pk));
    CmdProfilingPack_SubmitMaxValues received;
    ASSERT_TRUE(received.Read(&pk));
    EXPECT_EQ(received.m_ProfilingMaxValues.size(), 1u);
    EXPECT_EQ(received.m_ProfilingMaxValues.begin()->first, L"name");
}

TEST(ProfilingPack, MapThatDoesNotFitIsSentCutAndReportedWell)
{
    CmdProfilingPack_SubmitMaxValues message;
    for (int i = 0; i < 6000; ++i)
    {
        const zet::String_T<wchar_t> name = (std::to_wstring(100000 + i)).c_str();
        message.m_ProfilingMaxValues[name].m_Name = name;
    }
    test::LogLines log;
    CDataPackager pk;
    EXPECT_TRUE(message.Write(&pk));
    EXPECT_LE(pk.GetDataSize(), pk.GetBufferSize());
    EXPECT_FALSE(log.texts().empty());
}

TEST(ProfilerUsage, ReadTestsItsArrays)
{
    CCmdPackager pk;
    writeHead(pk, command_id::CCmdProfilerUsage);
    pk.Write(2);
    pk.Write(1.5f);
    CCmdProfilerUsage usage;
    EXPECT_FALSE(usage.Read(&pk));
    EXPECT_EQ(usage.m_Floats, (std::vector<float>{1.5f}));
}

TEST(ProfilerUsage, ReadEmptiesWhatItHeld)
{
    CCmdPackager pk;
    writeHead(pk, command_id::CCmdProfilerUsage);
    pk.Write(0);
    pk.Write(0);
    CCmdProfilerUsage usage;
    usage.m_Floats = {1.0f};
    usage.m_Values = {2};
    EXPECT_TRUE(usage.Read(&pk));
    EXPECT_TRUE(usage.m_Floats.empty());
    EXPECT_TRUE(usage.m_Values.empty());
}
