// A line whose class name was no UTF-8 ended "wirelens read": the answer names the class as the line does, and printing
// the answer threw. What is no character is now printed as U+FFFD, and the next line is answered.
#include "tools/line_reader.h"

#include <gtest/gtest.h>

namespace
{

TEST(Bugs, ALineOfForeignBytesHasAnAnswer)
{
    EXPECT_EQ(tools::printedLine(tools::answerLine("\xFF cmd -")),
              "{\"class\":\"\xEF\xBF\xBD\",\"error\":\"unknown class\"}");
    EXPECT_EQ(tools::printedLine(tools::answerLine("a\xC3 cmd -")),
              "{\"class\":\"a\xEF\xBF\xBD\",\"error\":\"unknown class\"}");
}

} // namespace
