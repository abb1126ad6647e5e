#include "host/metrics.h"
#include "tests/support/udp_loopback.h"
#include "tests/support/udp_road.h"
#include "transport/send_to_all.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{

struct UdpFigures : testing::Test
{
    UdpFigures() { m_Metrics.watch("notes", *m_Net.m_Server); }
    // Of the sample of the port with this name; -1 if it is missing.
    double valueOf(const std::string& name) const
    {
        const std::string text = m_Metrics.getText().getBuffer();
        const std::string sample = "\n" + name + "{listener=\"notes\"} ";
        const size_t at = text.find(sample);
        return at == std::string::npos ? -1 : std::atof(text.c_str() + at + sample.size());
    }

    test::UdpNet m_Net;
    host::Metrics m_Metrics;
};

TEST_F(UdpFigures, HandshakesAndAcceptedConnections)
{
    EXPECT_EQ(valueOf("commonground_listener_accepted_total"), 0);
    ASSERT_TRUE(m_Net.connect());
    EXPECT_EQ(valueOf("commonground_listener_accepted_total"), 1);
    EXPECT_EQ(valueOf("commonground_listener_handshakes_total"), 1);
    EXPECT_EQ(valueOf("commonground_listener_handshakes_failed_total"), 0);

    // A client that leaves during its handshake.
    const auto socket = m_Net.begin();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == 2; }));
    socket->close();
    ASSERT_TRUE(m_Net.until([&] { return valueOf("commonground_listener_handshakes_failed_total") == 1; }));
    EXPECT_EQ(valueOf("commonground_listener_handshakes_total"), 1);
    EXPECT_EQ(valueOf("commonground_listener_accepted_total"), 1);
}

TEST_F(UdpFigures, LostPacketsAreCountedAlsoAfterTheEndOfTheirConnection)
{
    test::RoadProfile profile;
    profile.m_Lost = 200;
    test::Road road(m_Net.m_Server->getPort(), m_Net.m_Port->getPort(), profile, 1);
    m_Net.m_Between = [&] { road.step(); };
    m_Net.m_Road = road.getPort();
    const auto socket = m_Net.connect();
    ASSERT_TRUE(socket);
    EXPECT_EQ(valueOf("commonground_listener_lost_packets_total"), 0);
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(m_Net.accepted().send(test::NoteCommand(i, 10000)));
    ASSERT_TRUE(m_Net.until([&] { return socket->m_Numbers.size() == 20; }, 200000));
    ASSERT_TRUE(m_Net.until([&] { return m_Net.accepted().getOutputSize() == 0; }, 200000));
    const double lost = valueOf("commonground_listener_lost_packets_total");
    EXPECT_GT(lost, 0);
    m_Net.accepted().close();
    ASSERT_TRUE(m_Net.until([&] { return m_Net.m_Server->getConnectionCount() == 0; }, 200000));
    EXPECT_GE(valueOf("commonground_listener_lost_packets_total"), lost);
}

TEST_F(UdpFigures, CommandsAreCountedByTheAnalyserOfTheirSocket)
{
    const auto socket = m_Net.connect();
    ASSERT_TRUE(socket);
    m_Metrics.watch(socket->getCmdAnalyser());
    m_Metrics.watch(m_Net.accepted().getCmdAnalyser());
    EXPECT_TRUE(socket->send(test::NoteCommand(1)));
    const test::NoteCommand both(2);
    CCommandBroadcast broadcast(both);
    EXPECT_TRUE(broadcast.SendTo(&m_Net.accepted()));
    ASSERT_TRUE(m_Net.until([&] { return !socket->m_Numbers.empty() && !m_Net.accepted().m_Numbers.empty(); }));
    const std::string text = m_Metrics.getText().getBuffer();
    // The class of this id is not in the catalogue.
    EXPECT_NE(text.find("\ncommonground_commands_sent_total{command=\"other\"} 2\n"), std::string::npos);
    EXPECT_NE(text.find("\ncommonground_commands_received_total{command=\"other\"} 2\n"), std::string::npos);
}

} // namespace
