#include "tools/host_port.h"

#include <gtest/gtest.h>

namespace
{

// "host port", or empty.
std::string parsed(const std::string& text, const std::string& hostOfPort = "")
{
    const auto result = tools::HostPort::parse(text, hostOfPort);
    return result ? result->m_Host + " " + std::to_string(result->m_Port) : "";
}

TEST(HostPort, HasANameOrAnAddress)
{
    EXPECT_EQ(parsed("example.org:7000"), "example.org 7000");
    EXPECT_EQ(parsed("127.0.0.1:0"), "127.0.0.1 0");
    EXPECT_EQ(parsed("[::1]:65535"), "::1 65535");
    EXPECT_EQ(parsed("7000", "127.0.0.1"), "127.0.0.1 7000");
}

TEST(HostPort, RefusesOtherTexts)
{
    for (const char* const text : {"", "7000", "host", "host:", ":7000", "host:65536", "host:-1", "host:7x", "::1:7000",
                                   "[]:7000", "host:7000:8000"})
        EXPECT_EQ(parsed(text), "") << text;
}

} // namespace
