// promtool, of the package prometheus, reads all families of the library and figures of a host.
#include "host/inbox.h"
#include "host/metrics.h"
#include "tests/support/child.h"

#include <gtest/gtest.h>

namespace
{

host::ListenerFigures allFigures()
{
    host::ListenerFigures all;
    for (auto* const value : {&all.m_Accepted, &all.m_Handshakes, &all.m_HandshakesFailed, &all.m_PacketsLost,
                              &all.m_BytesIn, &all.m_BytesOut, &all.m_DatagramsIn, &all.m_DatagramsOut,
                              &all.m_DatagramsDropped, &all.m_Connections, &all.m_QueuedBytes})
        *value = 7;
    all.m_Refused = {{"filter", 1}, {"cap", 2}};
    all.m_Ended = {{"closed_by_peer", 3}};
    all.m_RoundTripSeconds = 0.25;
    return all;
}

TEST(Promtool, AcceptsTheFigures)
{
    if (!test::Child::isThere("promtool"))
        GTEST_SKIP() << "promtool is not installed";
    const zet::Unknown::Handle_T<host::Inbox> inbox(new host::Inbox);
    host::Metrics metrics;
    metrics.watch("all", allFigures);
    metrics.watch("a \"b\" \\ c\n", allFigures);
    metrics.watch("main", *inbox);
    metrics.counter("rounds", "Rounds.", {{"zone", "x\"} 7\nb_total 8\\"}}).add();
    metrics.gauge("players", "Players.").set(-1.5);
    metrics.histogram("length_seconds", "Length.", {0.5, 1}, {{"zone", "a"}}).add(0.75);
    metrics.addTick(0.001, 0);
    const auto check = [](const std::string& text)
    {
        test::Child promtool({"promtool", "check", "metrics"});
        EXPECT_TRUE(promtool.write(text));
        promtool.closeInput();
        const int code = promtool.wait();
        return std::to_string(code) + promtool.output();
    };
    EXPECT_EQ(check(metrics.getPlainText().getBuffer()), "0");
    // It does find faults.
    EXPECT_NE(check("# TYPE a counter\na{b=\"c\"d} 1\n").substr(0, 1), "0");
}

} // namespace
