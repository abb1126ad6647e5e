// Figures of commands that have an analyser without a socket.
#include "commands/registry.h"
#include "dispatch/analyser.h"
#include "framework/shared_ptr.h"
#include "host/metrics.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/net_pair.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace
{

bool has(const host::Metrics& metrics, const std::string& line)
{
    return std::string(metrics.getText().getBuffer()).find('\n' + line + '\n') != std::string::npos;
}

struct Analysed
{
    Analysed()
    {
        m_Metrics.watch(*m_Analyser);
        m_Analyser->Install(CCmdServerEcho().GetID(), CCmdServerEcho::CCmdServerEcho_Process,
                            [](CCmdHead* command, unsigned long, unsigned long)
                            {
                                if (static_cast<CCmdServerEcho*>(command)->m_Data == 13)
                                    throw std::runtime_error("thirteen");
                            });
    }
    void receive(unsigned long data)
    {
        CCmdServerEcho echo;
        echo.m_Data = data;
        CCmdPackager packager;
        EXPECT_TRUE(echo.Write(&packager));
        packager.Reset();
        m_Analyser->Analyse(packager, 0, 0);
    }

    std::unique_ptr<CCmdAnalyser> m_Analyser = std::make_unique<CCmdAnalyser>();
    host::Metrics m_Metrics;
};

TEST(MetricsWithoutSockets, CommandsAreCountedByTheirOutcome)
{
    const test::LogLines lines;
    Analysed analysed;
    analysed.receive(7);
    analysed.receive(13);
    CCmdPackager packager;
    // It has no handler, and neither has an id without a class.
    ASSERT_TRUE(CCmdServerShutdown().Write(&packager));
    packager.Reset();
    analysed.m_Analyser->Analyse(packager, 0, 0);
    packager.SetCmdID(0xFFF0);
    analysed.m_Analyser->Analyse(packager, 0, 0);
    // A payload of another class does not fit.
    packager.SetCmdID(CCmdServerEcho().GetID());
    ASSERT_TRUE(packager.Write(static_cast<unsigned char>(1)));
    packager.Reset();
    analysed.m_Analyser->Analyse(packager, 0, 0);
    const host::Metrics& metrics = analysed.m_Metrics;
    EXPECT_TRUE(has(metrics, "commonground_commands_received_total{command=\"CCmdServerEcho\"} 3"));
    EXPECT_TRUE(has(metrics, "commonground_commands_thrown_total{command=\"CCmdServerEcho\"} 1"));
    EXPECT_TRUE(has(metrics, "commonground_commands_refused_total{command=\"CCmdServerEcho\"} 1"));
    EXPECT_TRUE(has(metrics, "commonground_command_handling_seconds_count{command=\"CCmdServerEcho\"} 3"));
    EXPECT_TRUE(has(metrics, "commonground_commands_unknown_total{command=\"CCmdServerShutdown\"} 1"));
    EXPECT_TRUE(has(metrics, "commonground_commands_unknown_total{command=\"other\"} 1"));
}

TEST(MetricsWithoutSockets, CountingAllocatesNothing)
{
    Analysed analysed;
    CCmdPackager packager;
    ASSERT_TRUE(CCmdServerEcho().Write(&packager));
    packager.Reset();
    analysed.m_Analyser->Analyse(packager, 0, 0);
    const test::AllocationCount count;
    for (int i = 0; i < 100; ++i)
    {
        packager.Reset();
        analysed.m_Analyser->Analyse(packager, 0, 0);
    }
    EXPECT_EQ(count.blocks(), 0);
    EXPECT_TRUE(has(analysed.m_Metrics, "commonground_commands_received_total{command=\"CCmdServerEcho\"} 101"));
}

TEST(MetricsWithoutSockets, HandlerMayRemoveTheObserver)
{
    static CCmdAnalyser* analyser = nullptr;
    Analysed analysed;
    analyser = analysed.m_Analyser.get();
    analyser->Install(CCmdServerEcho().GetID(), CCmdServerEcho::CCmdServerEcho_Process,
                      [](CCmdHead*, unsigned long, unsigned long)
                      { analyser->SetObserver(zet::SharedPtr<CommandObserver>()); });
    analysed.receive(7);
    EXPECT_EQ(analysed.m_Analyser->GetObserver(), nullptr);
    EXPECT_FALSE(has(analysed.m_Metrics, "commonground_commands_received_total{command=\"CCmdServerEcho\"} 1"));
}

TEST(MetricsWithoutSockets, CopiesOfAnAnalyserShareItsObserver)
{
    Analysed analysed;
    auto copy = std::make_unique<CCmdAnalyser>(*analysed.m_Analyser);
    analysed.m_Analyser = std::make_unique<CCmdAnalyser>();
    EXPECT_EQ(analysed.m_Analyser->GetObserver(), nullptr);
    std::swap(copy, analysed.m_Analyser);
    analysed.receive(7);
    *analysed.m_Analyser = *copy;
    EXPECT_EQ(analysed.m_Analyser->GetObserver(), nullptr);
    analysed.receive(7);
    EXPECT_TRUE(has(analysed.m_Metrics, "commonground_commands_received_total{command=\"CCmdServerEcho\"} 1"));
}

TEST(MetricsWithoutSockets, CommandsOfNetSessions)
{
    test::NetPair net;
    host::Metrics metrics;
    metrics.watch(net.m_Notes.m_Analyser);
    const auto session = net.connect();
    ASSERT_TRUE(session);
    test::NoteCommand command(1);
    EXPECT_TRUE(session->sendNetCommand(&command));
    // The class of this id is not in the catalogue. Both sides have this analyser.
    EXPECT_TRUE(has(metrics, "commonground_commands_sent_total{command=\"other\"} 1"));
    EXPECT_TRUE(test::tickUntil(net.m_System, [&]
                                { return has(metrics, "commonground_commands_received_total{command=\"other\"} 1"); }));
}

} // namespace
