// The fixture of tests of connections over UDP.
#pragma once

#include "tests/support/udp_loopback.h"

#include <gtest/gtest.h>

namespace test
{

// A test with one UdpNet; skipped if the library has no connections over UDP.
class UdpTest : public testing::Test
{
protected:
    explicit UdpTest(const zet::UdpServer::Settings& settings = {},
                     const std::shared_ptr<zet::inner::Door>& door = nullptr)
        : m_Net(settings, door)
    {
    }
    void SetUp() override
    {
        if (!zet::UdpServer::isAvailable())
            GTEST_SKIP() << "built without connections over UDP";
        ASSERT_TRUE(m_Net.m_IsListening);
    }
    // Runs until everything in flight has arrived and was acknowledged.
    void settle()
    {
        m_Net.until([] { return false; }, 200);
    }

    UdpNet m_Net;
};

} // namespace test
