#include "commands/system_info.h"

#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

using tests::bytesOf;
using tests::writeHead;
using tests::written;

TEST(SystemInfoReply, EmptyListStillPrecedesHead)
{
    CCmdSystemInfoReply reply;
    reply.SetClientIndex(7);
    const tests::Bytes bytes = written(reply);
    ASSERT_EQ(bytes.size(), 4u + 21u + 10u);
    const unsigned char begin[] = {0, 0, 0, 0, 0, 2, 0, 7};
    EXPECT_TRUE(std::equal(std::begin(begin), std::end(begin), bytes.begin()));
}

TEST(SystemInfoReply, ReadingReplacesTheList)
{
    CCmdSystemInfoReply sent;
    sent.m_SystemInfos.resize(1);
    sent.m_SystemInfos[0].m_Text4 = L"fourth";
    CCmdPackager packager;
    ASSERT_TRUE(sent.Write(&packager));
    CCmdSystemInfoReply received;
    received.m_SystemInfos.resize(4);
    ASSERT_TRUE(received.Read(&packager));
    ASSERT_EQ(received.m_SystemInfos.size(), 1u);
    EXPECT_EQ(received.m_SystemInfos[0].m_Text4, L"fourth");
}

TEST(SystemInfoReply, ListIsEmptiedBeforeItsCountIsRead)
{
    CCmdPackager packager;
    packager.SetCmdID(command_id::CCmdSystemInfoReply);
    packager.Write(static_cast<unsigned short>(0));
    CCmdSystemInfoReply received;
    received.m_SystemInfos.resize(4);
    EXPECT_FALSE(received.Read(&packager));
    EXPECT_TRUE(received.m_SystemInfos.empty());
}

// The head follows the list, so the id is compared late.
TEST(SystemInfoReply, FrameOfAnotherIdFailsAfterTheList)
{
    CCmdPackager packager;
    packager.SetCmdID(command_id::CCmdSystemInfoRequest);
    packager.Write(1);
    ASSERT_TRUE(cSystemInfo().Write(&packager));
    CCmdSystemInfoReply received;
    EXPECT_FALSE(received.Read(&packager));
    EXPECT_EQ(received.m_SystemInfos.size(), 1u);
}
