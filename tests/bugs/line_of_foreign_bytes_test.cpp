// A line whose class name was invalid UTF-8 ended "wirelens read": the result repeats the class name, and printing it
// threw. Invalid bytes are now printed as U+FFFD, and the next line is read.
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
