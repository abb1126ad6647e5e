// What the library writes to standard error while its log has no sink.
#pragma once

#include "framework/log.h"
#include "tests/support/log_shares.h"

#include <gtest/gtest.h>

#include <string>

namespace test
{

// Collects it until text() is called, once.
class StandardError
{
public:
    StandardError()
    {
        refillLogShares();
        testing::internal::CaptureStderr();
        zet::Log::setStandardError(true);
    }
    ~StandardError()
    {
        if (!m_IsRead)
            text();
    }
    StandardError(const StandardError&) = delete;
    StandardError& operator=(const StandardError&) = delete;

    std::string text()
    {
        zet::Log::setStandardError(false);
        m_IsRead = true;
        return testing::internal::GetCapturedStderr();
    }

private:
    bool m_IsRead = false;
};

// Fails unless the text contains the part.
inline void expectIn(const std::string& text, const std::string& part)
{
    EXPECT_NE(text.find(part), std::string::npos) << "in: " << text;
}

} // namespace test
