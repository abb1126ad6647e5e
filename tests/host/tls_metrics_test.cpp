#include "host/metrics.h"
#include "tests/support/log_lines.h"
#include "tests/support/tls_pair.h"

#include <gtest/gtest.h>

namespace
{

TEST(Metrics, HandshakesOfATlsPort)
{
    const test::LogLines lines;
    test::NoteAnalyser analyser;
    test::TlsLoopback loopback(analyser);
    ASSERT_TRUE(loopback.m_IsListening);
    host::Metrics metrics;
    metrics.watch("notes", *loopback.m_Server);
    const auto has = [&](const std::string& line)
    { return std::string(metrics.getText().getBuffer()).find('\n' + line + '\n') != std::string::npos; };
    EXPECT_TRUE(has("commonground_listener_handshakes_total{listener=\"notes\"} 0"));
    const auto context = test::makeClientContext();
    ASSERT_TRUE(loopback.connectTls(analyser, context));
    EXPECT_TRUE(has("commonground_listener_handshakes_total{listener=\"notes\"} 1"));
    EXPECT_TRUE(has("commonground_listener_handshakes_failed_total{listener=\"notes\"} 0"));

    // Its client ends the connection during the handshake.
    const test::Authority other("Other Authority");
    const auto wrong = test::makeClientContext(other);
    EXPECT_FALSE(loopback.connectTls(analyser, wrong));
    ASSERT_TRUE(test::tickUntil(
        loopback.m_System, [&] { return has("commonground_listener_handshakes_failed_total{listener=\"notes\"} 1"); }));
    EXPECT_TRUE(has("commonground_listener_handshakes_total{listener=\"notes\"} 1"));
    EXPECT_TRUE(has("commonground_listener_accepted_total{listener=\"notes\"} 2"));
}

} // namespace
