// The log of a process that has added no sink.
#include "framework/log.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using zet::Log;

TEST(LogWithoutSink, WarningsAndErrorsGoToStandardErrorUntilThereIsASinkOrTheHostWantsNone)
{
    Log::setStandardError(true);
    EXPECT_FALSE(Log::isWanted());
    EXPECT_FALSE(Log::isWanted(Log::kMessage));
    EXPECT_TRUE(Log::isWanted(Log::kWarning));
    testing::internal::CaptureStderr();
    Log::warning(L"first %d", 1);
    Log::message(L"not printed");
    const int number = Log::addSink([](Log::Level, const zet::String_T<wchar_t>&) {});
    EXPECT_TRUE(Log::isWanted(Log::kMessage));
    Log::error(L"second");
    Log::removeSink(number);
    Log::error(L"third");
    Log::setStandardError(false);
    EXPECT_FALSE(Log::isWanted(Log::kError));
    Log::error(L"fourth");
    const std::string text = testing::internal::GetCapturedStderr();
    EXPECT_NE(text.find(" [W] first 1\n"), std::string::npos) << text;
    EXPECT_NE(text.find(" [E] third\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("not printed"), std::string::npos) << text;
    EXPECT_EQ(text.find("second"), std::string::npos) << text;
    EXPECT_EQ(text.find("fourth"), std::string::npos) << text;
}

} // namespace
