// A capture that arrives through a pipe, as from a running tcpdump.
#include "tests/support/captures.h"
#include "tests/support/child.h"
#include "tests/support/places.h"
#include "tools/capture/capture_file.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

namespace capture = test::capture;

TEST(CapturePipe, ACommandIsPrintedBeforeTheNextPacketArrives)
{
    if (!tools::CaptureFile::isSupported())
        GTEST_SKIP() << "without libpcap";
    capture::Conversation all;
    all.open();
    all.send(true, capture::command(7));
    for (const std::string& file :
         {capture::pcap(capture::kLinkTypeRaw, all.m_Packets), capture::pcapng(capture::kLinkTypeRaw, all.m_Packets)})
    {
        std::vector<std::string> words = test::getStartWords("wirelens");
        words.insert(words.end(), {"decode", "-"});
        test::Child child(words);
        ASSERT_TRUE(child.isStarted());
        ASSERT_TRUE(child.write(file));
        EXPECT_NE(child.outputWith("CCmdHostnameRequest").find("CCmdHostnameRequest"), std::string::npos);
        EXPECT_FALSE(child.isOver());
        child.closeInput();
        EXPECT_EQ(child.wait(), 0);
    }
}

} // namespace
