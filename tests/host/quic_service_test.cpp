#include "host/metrics.h"
#include "tests/host/service_steps.h"
#include "tests/support/log_lines.h"
#include "tests/support/udp_loopback.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace
{

using namespace std::chrono_literals;

TEST(ServiceDrain, ConnectionsOverUdpEndWhenTheirAnswersAreConfirmed)
{
    host::Service service(L"zone", "");
    service.setDrainTime(1h);
    test::ServiceSteps steps(service);
    const zet::Unknown::Handle_T<test::NoteUdpServer> server(new test::NoteUdpServer);
    const zet::Unknown::Handle_T<test::NoteUdpServer> port(new test::NoteUdpServer);
    const test::NoteSocketHandle client(new test::NoteSocket);
    const test::NoteSocketHandle late(new test::NoteSocket);
    service.onStart(
        [&]
        {
            return server->start(&service.getSystem()) && port->start(&service.getSystem()) &&
                   server->listen(L"127.0.0.1", 0) && port->listen(L"127.0.0.1", 0) &&
                   client->connect(port, L"127.0.0.1", static_cast<int>(server->getPort()), {});
        });
    service.onStop(
        [&]
        {
            port->close();
            server->close();
        });
    int asked = 0;
    service.serve(*server, [&](UdpClientSocket&) { return ++asked > 5; });
    steps.add([&] { return server->GetClientCount() == 1; });
    steps.add(
        [&]
        {
            // Many answers, which the peer confirms over several ticks.
            for (int i = 0; i < 50; ++i)
                EXPECT_TRUE(server->m_Accepted.back()->send(test::NoteCommand(i, 20000)));
            service.beginDrain();
            EXPECT_TRUE(late->connect(port, L"127.0.0.1", static_cast<int>(server->getPort()), {}));
            return true;
        });
    test::LogLines lines;
    EXPECT_EQ(steps.run(), 0);
    EXPECT_TRUE(steps.areDone());
    EXPECT_EQ(client->m_Numbers.size(), 50u);
    EXPECT_EQ(server->m_Accepted.size(), 1u) << "accepted during the drain";
    EXPECT_EQ(asked, 6);
    for (const std::wstring& line : lines.texts())
        EXPECT_EQ(line.find(L"drain time"), std::wstring::npos) << "ended by time";
}

TEST(Metrics, FiguresOfAUdpPort)
{
    test::UdpNet net;
    host::Metrics metrics;
    metrics.watch("notes", *net.m_Server);
    const auto valueOf = [&](const std::string& name)
    {
        const std::string text = metrics.getText().getBuffer();
        const std::string sample = "\n" + name + "{listener=\"notes\"} ";
        const size_t at = text.find(sample);
        return at == std::string::npos ? -1 : std::atof(text.c_str() + at + sample.size());
    };
    EXPECT_EQ(valueOf("commonground_listener_round_trip_seconds"), -1) << "no connection";
    const auto socket = net.connect();
    ASSERT_TRUE(socket);
    EXPECT_TRUE(socket->send(test::NoteCommand(1)));
    EXPECT_TRUE(net.accepted().send(test::NoteCommand(2)));
    EXPECT_GT(valueOf("commonground_listener_queued_bytes"), 0);
    ASSERT_TRUE(net.until([&] { return !socket->m_Numbers.empty() && !net.accepted().m_Numbers.empty(); }));
    ASSERT_TRUE(net.until([&] { return valueOf("commonground_listener_round_trip_seconds") > 0; }));
    EXPECT_LT(valueOf("commonground_listener_round_trip_seconds"), 1);
    EXPECT_EQ(valueOf("commonground_listener_connections"), 1);
    EXPECT_GT(valueOf("commonground_listener_received_datagrams_total"), 0);
    EXPECT_GT(valueOf("commonground_listener_sent_bytes_total"), 0);
}

} // namespace
