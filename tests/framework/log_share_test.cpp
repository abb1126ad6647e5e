#include "framework/inner/log_share.h"

#include "framework/time.h"
#include "net/tcp/stream.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

namespace
{

using zet::inner::LogShare;

TEST(LogShare, SomeLinesAtOnceThenOnePerInterval)
{
    zet::TestClock clock(1700000000, 1000);
    LogShare share(3, 100);
    const auto takeAll = [&]
    {
        int taken = 0;
        while (share.take())
            ++taken;
        return taken;
    };
    EXPECT_EQ(takeAll(), 3);
    clock.advance(99);
    EXPECT_EQ(takeAll(), 0);
    clock.advance(1);
    EXPECT_EQ(takeAll(), 1);
    clock.advance(250);
    EXPECT_EQ(takeAll(), 2);
    clock.advance(50);
    EXPECT_EQ(takeAll(), 1) << "the rest of an interval counts";
    clock.advance(1000000);
    EXPECT_EQ(takeAll(), 3) << "no more than at once";
    EXPECT_EQ(share.getOmitted(), 6u);
    EXPECT_EQ(share.takeOmitted(), 6u);
    EXPECT_EQ(share.takeOmitted(), 0u);
}

// The lines about ends of connections and those about the bytes of peers.
TEST(LogShare, OmittedLinesOfAllKindsAreCounted)
{
    // Far from the last line of this thread, so the share is full.
    const zet::TestClock clock(1700000000, zet::getTimeTick() + 0x20000000);
    const test::LogLines lines;
    const unsigned long long before = zet::PeerLog::getLeftOut();
    zet::TcpStream stream;
    for (unsigned int i = 0; i < zet::PeerLog::kBurst + 5; ++i)
        EXPECT_FALSE(stream.connect(L"", 80, false));
    EXPECT_EQ(lines.texts().size(), +zet::PeerLog::kBurst);
    EXPECT_EQ(zet::PeerLog::getLeftOut() - before, 5u);
}

} // namespace
