// "wirelens decode" read its whole input before it printed anything: a live connection showed nothing, and a long
// recording was held in memory. Each frame is now printed as soon as it is complete. How much is held is tested with
// the decoder.
#include "tests/support/child.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(Bugs, DecodeShowsAFrameBeforeTheEndOfInput)
{
    const std::string raw("\x00\x10\x14\x00\x00\x00\x00\x02\x00\x07\x09", 11);
    for (const auto& [framing, frame] :
         {std::pair<const char*, std::string>("--packets", std::string("\x0b\x00\x00\x00", 4) + raw),
          {"--packets", "0b000000 0010 14000000 0002000709\n"},
          {"--datagram", "0010 14 0002000709\n"}})
    {
        std::vector<std::string> words = test::getStartWords("wirelens");
        words.insert(words.end(), {"decode", framing, "-"});
        test::Child child(words);
        ASSERT_TRUE(child.isStarted());
        ASSERT_TRUE(child.write(frame));
        EXPECT_NE(child.outputWith("\n").find("CCmdHostnameRequest"), std::string::npos) << framing;
        EXPECT_FALSE(child.isOver());
        child.closeInput();
        EXPECT_EQ(child.wait(), 0);
    }
}

} // namespace
