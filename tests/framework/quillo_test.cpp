#include "framework/quillo/array.h"
#include "framework/quillo/bit_flag.h"
#include "framework/quillo/config_var.h"
#include "framework/quillo/skeletons.h"
#include "framework/quillo/vector3.h"

#include <gtest/gtest.h>

#include <string>

using Quillo::TArray;

TEST(TArray, AddsAndInserts)
{
    TArray<int> array;
    EXPECT_EQ(array.AddItem(1), 0);
    EXPECT_EQ(array.AddItem(3), 1);
    array.InsertAt(1, 2);
    array.InsertAt(-5, 0);
    array.InsertAt(99, 4, 2);
    array.InsertAt(0, 9, -1);
    ASSERT_EQ(array.Num(), 6);
    EXPECT_EQ(array.GetCount(), 6);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(array[i], i);
    EXPECT_EQ(array.ElementAt(5), 4);
}

TEST(TArray, InsertsItsOwnElement)
{
    TArray<std::string> array;
    array.AddItem("a text that lies outside the string object");
    for (int i = 0; i < 20; ++i)
    {
        array.InsertAt(0, array[0]);
        array.AddItem(array[0]);
    }
    ASSERT_EQ(array.Num(), 41);
    for (int i = 0; i < array.Num(); ++i)
        EXPECT_EQ(array[i], "a text that lies outside the string object");
}

TEST(TArray, GrowsByDefaultAndByZeroedElements)
{
    TArray<Quillo::FVector3> array;
    array.SetSize(2);
    EXPECT_EQ(array.AddSize(3), 2);
    EXPECT_EQ(array.AddZeroed(), 5);
    EXPECT_EQ(array.AddZeroed(-1), 6);
    EXPECT_EQ(array.Num(), 6);
    for (int i = 0; i < 6; ++i)
        EXPECT_TRUE(array[i] == Quillo::FVector3());
    array.SetSize(1);
    EXPECT_EQ(array.Num(), 1);
    array.SetSize(-1);
    EXPECT_EQ(array.Num(), 0);

    struct Preset
    {
        int m_Value = 7;
    };
    TArray<Preset> presets;
    presets.AddSize(1);
    presets.AddZeroed(1);
    EXPECT_EQ(presets[0].m_Value, 7);
    EXPECT_EQ(presets[1].m_Value, 0);
}

TEST(TArray, PlainElementsArePod)
{
    EXPECT_TRUE(TArray<int>::IsPOD());
    EXPECT_TRUE(TArray<Quillo::FVector3>::IsPOD());
    EXPECT_FALSE(TArray<std::string>::IsPOD());
}

TEST(TNamedPtrArray, FindsByName)
{
    Quillo::FConfigVar width{L"Width", L"1920"};
    Quillo::FConfigVar height{L"Height", L"1080"};
    Quillo::TNamedPtrArray<Quillo::FConfigVar> array;
    array.AddItem(&width);
    array.AddItem(nullptr);
    array.AddItem(&height);
    EXPECT_EQ(array.GetCount(), 3);
    EXPECT_EQ(array.Find(L"Height"), &height);
    EXPECT_EQ(array.Find(L"Depth"), nullptr);
}

TEST(FBitFlag, TestsItsBits)
{
    Quillo::FBitFlag flag(0x5);
    EXPECT_TRUE(flag.HasFlag(1));
    EXPECT_FALSE(flag.HasFlag(2));
    EXPECT_TRUE(flag.HasFlag(4));
    flag.SetFlag(2);
    flag.ClearFlag(4);
    EXPECT_TRUE(flag.HasFlag(2));
    EXPECT_FALSE(flag.HasFlag(4));
    EXPECT_FALSE(Quillo::FBitFlag().HasFlag(~0ul));
}

TEST(Skeletons, HoldTwentyOneJointsAtRest)
{
    const Skeletons skeletons;
    EXPECT_EQ(sizeof skeletons.m_Joints / sizeof skeletons.m_Joints[0], 21u);
    for (const Skeletons::Joint& joint : skeletons.m_Joints)
    {
        EXPECT_EQ(joint.m_X, 0.0f);
        EXPECT_EQ(joint.m_Y, 0.0f);
        EXPECT_EQ(joint.m_Z, 0.0f);
        EXPECT_FALSE(joint.m_State);
    }
}
