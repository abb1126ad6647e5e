#include "host/metrics.h"

#include "commands/registry.h"
#include "dispatch/analyser_socket.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "host/handlers.h"
#include "host/inbox.h"
#include "runtime/system_cmd_info.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/loopback.h"
#include "tests/support/places.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <stdexcept>

namespace
{

std::string textOf(const host::Metrics& metrics)
{
    return metrics.getText().getBuffer();
}

// The line that starts with a sample's name and labels, without them; empty if there is none.
std::string valueOf(const std::string& text, const std::string& sample)
{
    const size_t at = text.find("\n" + sample + " ");
    if (at == std::string::npos)
        return "";
    const size_t begin = at + sample.size() + 2;
    return text.substr(begin, text.find('\n', begin) - begin);
}

// An analyser that handles echoes, and frames for it.
struct Dispatch
{
    Dispatch()
    {
        m_Handlers.on<CCmdServerEcho>(
            [this](CCommandSocket&, const CCmdServerEcho& echo)
            {
                m_Sum += echo.m_Data;
                if (echo.m_Data == 13)
                    throw std::runtime_error("thirteen");
            });
    }
    bool receive(CCmdPackager& packager)
    {
        packager.Reset();
        return m_Analyser->Analyse(m_Socket, packager);
    }
    bool receive(const CCmdHead& command)
    {
        CCmdPackager packager;
        EXPECT_TRUE(command.Write(&packager));
        return receive(packager);
    }

    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers m_Handlers{*m_Analyser};
    zet::Unknown::Handle_T<CCommandSocket> m_Socket = CCommandSocket::createInstance(m_Analyser.get());
    unsigned long m_Sum = 0;
};

CCmdServerEcho echoOf(unsigned long data)
{
    CCmdServerEcho echo;
    echo.m_Data = data;
    return echo;
}

TEST(Metrics, FiguresOfAHostByteForByte)
{
    host::Metrics metrics;
    metrics.counter("rounds", "Rounds \\ played\nso far.").add();
    metrics.counter("rounds", "").add(4294967296ULL);
    metrics.gauge("players", "Players.", {{"zone", "a \"b\" \\ c\n"}}).set(-1.5);
    metrics.gauge("players", "Players.", {{"zone", "d"}, {"level", "2"}}).add(3);
    host::MetricHistogram& histogram = metrics.histogram("length", "Length.", {0.5, 1, 20});
    for (const double value : {0.25, 0.5, 0.75, 1.0, 1000.0})
        histogram.add(value);
    metrics.addPrinter(
        [](host::MetricText& text)
        {
            text.beginGauge("depth_bytes", "Depth.", "bytes");
            text.add({}, 7ULL);
        });
    const std::string text = textOf(metrics);
    const std::string expected = R"(# TYPE rounds counter
# HELP rounds Rounds \\ played\nso far.
rounds_total 4294967297
# TYPE players gauge
# HELP players Players.
players{zone="a \"b\" \\ c\n"} -1.5
players{zone="d",level="2"} 3
# TYPE length histogram
# HELP length Length.
length_bucket{le="0.5"} 2
length_bucket{le="1.0"} 4
length_bucket{le="20.0"} 4
length_bucket{le="+Inf"} 5
length_count 5
length_sum 1002.5
# TYPE depth_bytes gauge
# UNIT depth_bytes bytes
# HELP depth_bytes Depth.
depth_bytes 7
# EOF
)";
    ASSERT_GE(text.size(), expected.size());
    EXPECT_EQ(text.substr(text.size() - expected.size()), expected);
}

TEST(Metrics, PlainTextNamesCountersInFullAndHasNoUnits)
{
    host::Metrics metrics;
    metrics.counter("rounds", "Rounds.").add();
    const std::string text = metrics.getPlainText().getBuffer();
    const std::string expected = "# TYPE rounds_total counter\n# HELP rounds_total Rounds.\nrounds_total 1\n";
    ASSERT_GE(text.size(), expected.size());
    EXPECT_EQ(text.substr(text.size() - expected.size()), expected);
    EXPECT_EQ(text.find("# UNIT"), std::string::npos);
    EXPECT_EQ(text.find("# EOF"), std::string::npos);
    EXPECT_NE(text.find("# HELP process_resident_memory_bytes Working"), std::string::npos);
}

TEST(Metrics, InvalidAndTakenNamesAreLoggedAndNotPrinted)
{
    test::LogLines lines;
    host::Metrics metrics;
    metrics.counter("1st", "").add();
    metrics.gauge("two words", "").set(1);
    metrics.counter("thrice_total", "").add();
    metrics.counter("fourth", "Four.").add();
    metrics.gauge("fourth", "Not four.").set(7);
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{
                                 L"Metrics: 1st is not a valid name", L"Metrics: two words is not a valid name",
                                 L"Metrics: thrice_total is not a valid name", L"Metrics: fourth has another kind"}));
    const std::string text = textOf(metrics);
    for (const char* const name : {"1st", "words", "thrice", "Not"})
        EXPECT_EQ(text.find(name), std::string::npos) << name;
    EXPECT_EQ(valueOf(text, "fourth_total"), "1");
}

TEST(Metrics, CommandsAreCountedByTheirClasses)
{
    test::LogLines lines;
    Dispatch dispatch;
    host::Metrics metrics;
    metrics.watch(*dispatch.m_Analyser);
    CCmdPackager packager;
    ASSERT_TRUE(echoOf(7).Write(&packager));
    EXPECT_TRUE(dispatch.receive(packager));
    EXPECT_TRUE(dispatch.receive(packager));
    EXPECT_FALSE(dispatch.receive(echoOf(13)));
    // It has no handler, and neither has an id without a class.
    EXPECT_FALSE(dispatch.receive(CCmdServerShutdown()));
    packager.SetCmdID(0x0001);
    EXPECT_FALSE(dispatch.receive(packager));
    packager.SetCmdID(0xFFF0);
    EXPECT_FALSE(dispatch.receive(packager));
    // A payload of another class does not fit.
    packager.SetCmdID(CCmdServerEcho().GetID());
    ASSERT_TRUE(packager.Write(static_cast<unsigned char>(1)));
    EXPECT_FALSE(dispatch.receive(packager));

    const std::string text = textOf(metrics);
    const std::string echo = "{command=\"CCmdServerEcho\"}";
    EXPECT_EQ(valueOf(text, "commonground_commands_received_total" + echo), "4");
    EXPECT_EQ(valueOf(text, "commonground_commands_thrown_total" + echo), "1");
    EXPECT_EQ(valueOf(text, "commonground_commands_refused_total" + echo), "1");
    EXPECT_EQ(valueOf(text, "commonground_commands_unknown_total" + echo), "");
    EXPECT_EQ(valueOf(text, "commonground_command_handling_seconds_count" + echo), "4");
    EXPECT_NE(valueOf(text, "commonground_command_handling_seconds_bucket{command=\"CCmdServerEcho\",le=\"+Inf\"}"),
              "");
    EXPECT_EQ(valueOf(text, "commonground_commands_unknown_total{command=\"CCmdServerShutdown\"}"), "1");
    EXPECT_EQ(valueOf(text, "commonground_commands_unknown_total{command=\"other\"}"), "2");
    EXPECT_EQ(text.find("CCmdLogin"), std::string::npos) << "a class without a command";
}

TEST(Metrics, BytesAreThoseOfThePayload)
{
    Dispatch dispatch;
    host::Metrics metrics;
    metrics.watch(*dispatch.m_Analyser);
    CCmdPackager packager;
    ASSERT_TRUE(echoOf(7).Write(&packager));
    EXPECT_TRUE(dispatch.receive(packager));
    EXPECT_TRUE(dispatch.receive(packager));
    EXPECT_EQ(valueOf(textOf(metrics), "commonground_commands_received_bytes_total{command=\"CCmdServerEcho\"}"),
              std::to_string(2 * packager.GetDataSize()));
}

TEST(Metrics, SentCommandsAreCounted)
{
    test::NoteAnalyser server;
    test::Loopback loopback(server);
    const auto clientAnalyser = std::make_unique<CCmdAnalyserSocket>();
    host::Metrics metrics;
    metrics.watch(*clientAnalyser);
    metrics.watch("notes", *loopback.m_Server);
    const test::ClientHandle client = loopback.connect(clientAnalyser.get());
    ASSERT_TRUE(client);
    EXPECT_TRUE(client->send(echoOf(1)));
    EXPECT_TRUE(client->send(echoOf(2)));
    const std::string text = textOf(metrics);
    EXPECT_EQ(valueOf(text, "commonground_commands_sent_total{command=\"CCmdServerEcho\"}"), "2");
    EXPECT_NE(valueOf(text, "commonground_commands_sent_bytes_total{command=\"CCmdServerEcho\"}"), "");
    EXPECT_EQ(valueOf(text, "commonground_listener_connections{listener=\"notes\"}"), "1");
    EXPECT_EQ(valueOf(text, "commonground_listener_queued_bytes{listener=\"notes\"}"), "0");
    EXPECT_EQ(valueOf(text, "commonground_listener_accepted_total{listener=\"notes\"}"), "1");
    EXPECT_EQ(text.find("commonground_listener_handshakes"), std::string::npos) << "a port without TLS";
}

TEST(Metrics, EndsOfAPortsConnectionsAreCountedByCause)
{
    test::NoteAnalyser server;
    test::Loopback loopback(server);
    host::Metrics metrics;
    metrics.watch("notes", *loopback.m_Server);
    test::NoteAnalyser clientAnalyser;
    const test::ClientHandle client = loopback.connect(clientAnalyser);
    ASSERT_TRUE(client);
    client->close();
    ASSERT_TRUE(test::tickUntil(loopback.m_System, [&] { return loopback.m_Server->GetClientCount() == 0; }));
    ASSERT_TRUE(loopback.m_Server->addRejectSubnet(L"127.0.0.0/8"));
    const test::ClientHandle refused(new test::Client(clientAnalyser));
    refused->start(&loopback.m_System);
    ASSERT_TRUE(refused->connect(L"127.0.0.1", loopback.m_Server->getPort(), false));
    const auto filtered = [&] { return loopback.m_Server->getEndCount(zet::EndCause::kFiltered) > 0; };
    ASSERT_TRUE(test::tickUntil(loopback.m_System, filtered));
    const std::string text = textOf(metrics);
    EXPECT_EQ(valueOf(text, "commonground_listener_ended_total{listener=\"notes\",cause=\"closed_by_peer\"}"), "1");
    EXPECT_EQ(valueOf(text, "commonground_listener_refused_total{listener=\"notes\",reason=\"filter\"}"), "1");
}

TEST(Metrics, CountingAllocatesNothing)
{
    Dispatch dispatch;
    host::Metrics metrics;
    metrics.watch(*dispatch.m_Analyser);
    host::MetricHistogram& histogram = metrics.histogram("length", "Length.", {1, 2});
    CCmdPackager packager;
    ASSERT_TRUE(echoOf(7).Write(&packager));
    dispatch.receive(packager);
    const test::AllocationCount count;
    for (int i = 0; i < 100; ++i)
        dispatch.receive(packager);
    histogram.add(1.5);
    metrics.addTick(0.001, 0);
    EXPECT_EQ(count.blocks(), 0);
    EXPECT_EQ(dispatch.m_Sum, 7u * 101);
}

TEST(Metrics, MetricsThatAreOffWatchNothing)
{
    Dispatch dispatch;
    host::Metrics metrics(false);
    metrics.watch(*dispatch.m_Analyser);
    EXPECT_EQ(dispatch.m_Analyser->GetObserver(), nullptr);
    EXPECT_TRUE(dispatch.receive(echoOf(7)));
    EXPECT_EQ(textOf(metrics).find("CCmdServerEcho"), std::string::npos);
}

TEST(Metrics, AnalyserOutlivesItsMetrics)
{
    Dispatch dispatch;
    {
        host::Metrics metrics;
        metrics.watch(*dispatch.m_Analyser);
        EXPECT_TRUE(dispatch.receive(echoOf(7)));
    }
    EXPECT_TRUE(dispatch.receive(echoOf(7)));
}

TEST(Metrics, FiguresOfAPortThatKnowsItsEnds)
{
    host::Metrics metrics;
    metrics.watch("gate",
                  []
                  {
                      host::ListenerFigures figures;
                      figures.m_Accepted = 5;
                      figures.m_Refused = {{"filter", 2}, {"cap", 3}};
                      figures.m_Ended = {{"reset", 1}};
                      return figures;
                  });
    metrics.watch("broken", []() -> host::ListenerFigures { throw std::runtime_error("gone"); });
    test::LogLines lines;
    const std::string text = textOf(metrics);
    EXPECT_EQ(valueOf(text, "commonground_listener_accepted_total{listener=\"gate\"}"), "5");
    EXPECT_EQ(valueOf(text, "commonground_listener_refused_total{listener=\"gate\",reason=\"cap\"}"), "3");
    EXPECT_EQ(valueOf(text, "commonground_listener_refused_total{listener=\"gate\",reason=\"filter\"}"), "2");
    EXPECT_EQ(valueOf(text, "commonground_listener_ended_total{listener=\"gate\",cause=\"reset\"}"), "1");
    EXPECT_EQ(text.find("broken"), std::string::npos);
    EXPECT_EQ(lines.texts().size(), 1u);
}

TEST(Metrics, RequiredFiguresComeFirstAndOnce)
{
    SystemCmdInfo info;
    info.m_ConnectCount = 3;
    host::Metrics metrics;
    metrics.watch(info);
    const std::string text = textOf(metrics);
    EXPECT_EQ(valueOf(text, "commonground_connections"), "3");
    for (const char* const line : {"# EOF\n", "# TYPE commonground_log_lines_lost counter\n"})
    {
        const size_t at = text.find(line);
        ASSERT_NE(at, std::string::npos) << line;
        EXPECT_EQ(text.find(line, at + 1), std::string::npos) << line;
    }
    EXPECT_EQ(text.substr(text.size() - 6), "# EOF\n");
}

TEST(Metrics, TicksAreCountedByLengthAndLag)
{
    host::Metrics metrics;
    metrics.addTick(0.002, 0);
    metrics.addTick(0.3, 0.02);
    const std::string text = textOf(metrics);
    EXPECT_EQ(valueOf(text, "commonground_tick_work_seconds_bucket{le=\"0.0025\"}"), "1");
    EXPECT_EQ(valueOf(text, "commonground_tick_work_seconds_count"), "2");
    EXPECT_EQ(valueOf(text, "commonground_tick_lag_seconds_bucket{le=\"1e-05\"}"), "1");
    EXPECT_EQ(valueOf(text, "commonground_tick_lag_seconds_sum"), "0.02");
}

std::set<std::string> namesIn(const std::string& text, const std::string& pattern)
{
    const std::regex expression(pattern);
    std::set<std::string> names;
    for (std::sregex_iterator at(text.begin(), text.end(), expression), end; at != end; ++at)
        names.insert((*at)[1].str());
    return names;
}

TEST(Metrics, DocumentListsTheFamiliesThatArePrinted)
{
    std::ifstream file(test::getTestsFolder() + "/../docs/operating.md", std::ios::binary);
    const std::string document{std::istreambuf_iterator<char>(file), {}};
    const auto listed = namesIn(document, "\\| `((?:commonground|process)_[a-z_]+)`");
    EXPECT_EQ(listed.size(), 31u);

    Dispatch dispatch;
    host::Metrics metrics;
    metrics.watch(*dispatch.m_Analyser);
    metrics.watch("all",
                  []
                  {
                      host::ListenerFigures all;
                      for (auto* const value :
                           {&all.m_Accepted, &all.m_Handshakes, &all.m_HandshakesFailed, &all.m_PacketsLost,
                            &all.m_BytesIn, &all.m_BytesOut, &all.m_DatagramsIn, &all.m_DatagramsOut,
                            &all.m_DatagramsDropped, &all.m_Connections, &all.m_QueuedBytes})
                          *value = 0;
                      all.m_RoundTripSeconds = 0.25;
                      return all;
                  });
    const zet::Unknown::Handle_T<host::Inbox> inbox(new host::Inbox);
    metrics.watch("main", *inbox);
    EXPECT_EQ(namesIn(textOf(metrics), "# TYPE ([a-z_]+) "), listed);
}

} // namespace
