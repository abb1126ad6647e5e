#include "tools/line_reader.h"

#include <gtest/gtest.h>

namespace
{

using tools::answerLine;
using tools::printedLine;

TEST(LineReader, AnswersALineWithWhatReadAndWriteDid)
{
    const auto answer = answerLine("CCmdHostnameRequest cmd 0002000709");
    EXPECT_EQ(answer["read"], true);
    EXPECT_EQ(answer["rewrite"], "0002000709");
    EXPECT_FALSE(answer.contains("error"));
}

TEST(LineReader, ReportsWhatIsWrongWithALine)
{
    EXPECT_EQ(answerLine("")["error"], "unknown class");
    EXPECT_EQ(answerLine("Nobody cmd 00")["error"], "unknown class");
    EXPECT_EQ(answerLine("CCmdHostnameRequest")["error"], "the packager is cmd or data");
    EXPECT_EQ(answerLine("CCmdHostnameRequest tcp 00")["error"], "the packager is cmd or data");
    EXPECT_EQ(answerLine("CCmdHostnameRequest data 00")["error"], "the class has no form for the data packager");
    EXPECT_EQ(answerLine("CCmdHostnameRequest cmd")["error"], "the bytes are no hexadecimal");
    EXPECT_EQ(answerLine("CCmdHostnameRequest cmd 000")["error"], "the bytes are no hexadecimal");
    EXPECT_EQ(answerLine("CCmdHostnameRequest cmd 0x")["error"], "the bytes are no hexadecimal");
}

TEST(LineReader, ControlCharactersAreEscaped)
{
    EXPECT_EQ(printedLine(answerLine("\x1B[2J\x07 cmd -")),
              "{\"class\":\"\\u001b[2J\\u0007\",\"error\":\"unknown class\"}");
}

} // namespace
