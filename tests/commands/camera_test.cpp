#include "commands/camera.h"

#include "tests/support/allocations.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

using tests::Bytes;
using tests::written;

namespace
{

void beginMaskImage(CCmdPackager& packager, int size)
{
    CCmdHead(command_id::CCmdMaskImage).Write(&packager);
    packager.Write(3);
    packager.Write(2);
    packager.Write(size);
    packager.Write(static_cast<unsigned long>(9));
}

void writeBytes(CCmdPackager& packager, int size, unsigned char byte)
{
    const Bytes bytes(static_cast<size_t>(size), byte);
    packager.Write(bytes.data(), size);
}

void beginSkeletons(CCmdPackager& packager, int count)
{
    CCmdHead(command_id::CCmdSkeletons).Write(&packager);
    packager.Write(count);
    packager.Write(static_cast<unsigned long>(9));
    for (int i = 0; i < 5; ++i)
        packager.Write(i);
    for (short i = 0; i < 12; ++i)
        packager.Write(i);
}

void writeSkeleton(CCmdPackager& packager, float x)
{
    for (int i = 0; i < Skeletons::kJoints; ++i)
    {
        packager.Write(x);
        packager.Write(-x);
        packager.Write(true);
    }
}

void endSkeletons(CCmdPackager& packager)
{
    for (int i = 0; i < 4; ++i)
        packager.Write(0);
}

} // namespace

TEST(RemoteCamera, IsOnByDefault)
{
    EXPECT_TRUE(CCmdRemoteCamera().m_Flag1);
}

TEST(MaskImage, FullImageComesThrough)
{
    const auto image = std::make_unique<CCmdMaskImage>();
    image->m_Size = kMaskImageSize;
    std::memset(image->m_Data, 7, sizeof image->m_Data);
    CCmdPackager pk;
    ASSERT_TRUE(image->Write(&pk));
    const auto received = std::make_unique<CCmdMaskImage>();
    const test::AllocationCount allocations;
    ASSERT_TRUE(received->Read(&pk));
    EXPECT_EQ(allocations.blocks(), 0);
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
    EXPECT_EQ(std::memcmp(received->m_Data, image->m_Data, sizeof image->m_Data), 0);
}

// A connection over UDP puts a signed 16-bit length before each frame.
TEST(MaskImage, FullImageIsTooLongForAConnectionOverUdp)
{
    const auto image = std::make_unique<CCmdMaskImage>();
    image->m_Size = kMaskImageSize;
    std::memset(image->m_Data, 7, sizeof image->m_Data);
    CCmdPackager pk;
    ASSERT_TRUE(image->Write(&pk));
    EXPECT_GT(pk.Pack(nullptr, 0), 32767);
}

TEST(MaskImage, BytesBeyondTheArrayAreTakenAndDropped)
{
    CCmdPackager pk;
    beginMaskImage(pk, kMaskImageSize + 100);
    writeBytes(pk, kMaskImageSize, 1);
    writeBytes(pk, 100, 2);
    const auto image = std::make_unique<CCmdMaskImage>();
    EXPECT_TRUE(image->Read(&pk));
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
    EXPECT_EQ(image->m_Size, kMaskImageSize + 100);
    EXPECT_EQ(image->m_Data[kMaskImageSize - 1], 1);
}

TEST(MaskImage, MissingBytesAreZeroInANewObject)
{
    CCmdPackager pk;
    beginMaskImage(pk, 0x7fffffff);
    writeBytes(pk, 2, 5);
    const auto image = std::make_unique<CCmdMaskImage>();
    std::memset(image->m_Data, 0xee, sizeof image->m_Data);
    EXPECT_TRUE(image->Read(&pk));
    EXPECT_EQ(image->m_Data[1], 5);
    for (int i : {2, 3, kMaskImageSize - 1})
        EXPECT_EQ(image->m_Data[i], 0) << i;
}

TEST(MaskImage, MissingBytesKeepWhatAUsedObjectHeld)
{
    const auto image = std::make_unique<CCmdMaskImage>();
    image->m_Size = 4;
    std::memset(image->m_Data, 7, 4);
    CCmdPackager pk;
    beginMaskImage(pk, 6);
    writeBytes(pk, 2, 5);
    EXPECT_TRUE(image->Read(&pk));
    EXPECT_EQ(Bytes(image->m_Data, image->m_Data + 6), (Bytes{5, 5, 7, 7, 0, 0}));
}

TEST(MaskImage, BytesAreTriedAfterAFailedField)
{
    CCmdPackager pk;
    CCmdHead(command_id::CCmdMaskImage).Write(&pk);
    pk.Write(3);
    pk.Write(2);
    pk.Write(4);
    writeBytes(pk, 3, 8);
    const auto image = std::make_unique<CCmdMaskImage>();
    EXPECT_FALSE(image->Read(&pk));
    EXPECT_EQ(image->m_Time, 0u);
    EXPECT_EQ(Bytes(image->m_Data, image->m_Data + 4), (Bytes{8, 8, 8, 0}));
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
}

TEST(MaskImage, WriterSendsNoMoreThanTheArrayHas)
{
    const auto image = std::make_unique<CCmdMaskImage>();
    std::memset(image->m_Data, 1, sizeof image->m_Data);
    const size_t empty = written(*image).size();
    image->m_Size = 0x7fffffff;
    EXPECT_EQ(written(*image).size(), empty + kMaskImageSize);
    image->m_Size = -1;
    EXPECT_EQ(written(*image).size(), empty);
}

TEST(Skeletons, ThirdFloatOfAJointStaysAtHome)
{
    CCmdPackager pk;
    beginSkeletons(pk, 1);
    writeSkeleton(pk, 2.5f);
    endSkeletons(pk);
    const auto command = std::make_unique<CCmdSkeletons>();
    for (Skeletons::Joint& joint : command->m_Skeletons[0].m_Joints)
        joint.m_Z = 4.25f;
    ASSERT_TRUE(command->Read(&pk));
    for (const Skeletons::Joint& joint : command->m_Skeletons[0].m_Joints)
    {
        EXPECT_EQ(joint.m_X, 2.5f);
        EXPECT_EQ(joint.m_Y, -2.5f);
        EXPECT_EQ(joint.m_Z, 4.25f);
        EXPECT_TRUE(joint.m_State);
    }
    EXPECT_EQ(written(*command), tests::bytesOf(pk));
}

TEST(Skeletons, TwoFullImagesGoInOneStreamFrame)
{
    const auto sent = std::make_unique<CCmdSkeletons>();
    sent->m_SkeletonCount = CCmdSkeletons::kSkeletons;
    sent->m_Mask1Size = kMaskImageSize;
    sent->m_Mask2Size = kMaskImageSize;
    std::memset(sent->m_Mask1, 1, sizeof sent->m_Mask1);
    std::memset(sent->m_Mask2, 2, sizeof sent->m_Mask2);
    CCmdPackager pk;
    ASSERT_TRUE(sent->Write(&pk));
    zet::Buffer frame;
    ASSERT_TRUE(CCmdPackager_packageToBuffer(pk, frame));
    EXPECT_EQ(frame.getBufferSize(), 113772);

    CCmdPackager arrived;
    ASSERT_TRUE(CCmdPackager_bufferToPackage(frame, arrived));
    const auto received = std::make_unique<CCmdSkeletons>();
    ASSERT_TRUE(received->Read(&arrived));
    EXPECT_EQ(arrived.GetReadPointer(), arrived.GetDataSize());
    EXPECT_EQ(received->m_Mask2[kMaskImageSize - 1], 2);
}

TEST(Skeletons, ThirdSkeletonIsTakenAndDropped)
{
    CCmdPackager pk;
    beginSkeletons(pk, 3);
    for (float x : {1.0f, 2.0f, 3.0f})
        writeSkeleton(pk, x);
    endSkeletons(pk);
    const auto command = std::make_unique<CCmdSkeletons>();
    EXPECT_TRUE(command->Read(&pk));
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize());
    EXPECT_EQ(command->m_SkeletonCount, 3);
    EXPECT_EQ(command->m_Skeletons[1].m_Joints[20].m_X, 2.0f);
}

TEST(Skeletons, HostileCountEndsWithThePayload)
{
    CCmdPackager pk;
    beginSkeletons(pk, 0x7fffffff);
    writeSkeleton(pk, 1.0f);
    const auto command = std::make_unique<CCmdSkeletons>();
    const test::AllocationCount allocations;
    EXPECT_FALSE(command->Read(&pk));
    EXPECT_EQ(allocations.blocks(), 0);
    EXPECT_EQ(command->m_Skeletons[0].m_Joints[20].m_X, 1.0f);
}

TEST(Skeletons, WriterSendsNoMoreThanTheArraysHave)
{
    const auto command = std::make_unique<CCmdSkeletons>();
    std::memset(command->m_Mask1, 1, sizeof command->m_Mask1);
    command->m_SkeletonCount = 2;
    const size_t two = written(*command).size();
    command->m_SkeletonCount = 0x7fffffff;
    EXPECT_EQ(written(*command).size(), two);
    command->m_Mask1Size = 0x7fffffff;
    EXPECT_EQ(written(*command).size(), two + kMaskImageSize);
}

TEST(Skeletons, OldSizesTakeWhatAFailedFieldLeaves)
{
    CCmdPackager pk;
    CCmdHead(command_id::CCmdSkeletons).Write(&pk);
    writeBytes(pk, 3, 6);
    const auto command = std::make_unique<CCmdSkeletons>();
    command->m_Mask2Size = 2;
    std::memset(command->m_Mask2, 1, 2);
    EXPECT_FALSE(command->Read(&pk));
    EXPECT_EQ(Bytes(command->m_Mask2, command->m_Mask2 + 2), (Bytes{6, 6}));
    EXPECT_EQ(pk.GetReadPointer(), pk.GetDataSize() - 1);
}
