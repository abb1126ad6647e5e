// Names and labels of a host's figures.
#include "host/metrics.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

namespace
{

std::string textOf(const host::Metrics& metrics)
{
    return metrics.getText().getBuffer();
}

TEST(MetricNames, ThoseOfTheLibraryAreRefusedAndLoggedOnce)
{
    test::LogLines lines;
    host::Metrics metrics;
    for (int i = 0; i < 2; ++i)
    {
        metrics.counter("commonground_rounds", "").add();
        metrics.gauge("process_players", "").set(1);
        metrics.histogram("_length", "", {1}).add(1);
    }
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"Metrics: commonground_rounds is a reserved name",
                                                        L"Metrics: process_players is a reserved name",
                                                        L"Metrics: _length is not a valid name"}));
    const std::string text = textOf(metrics);
    for (const char* const name : {"rounds", "players", "_length"})
        EXPECT_EQ(text.find(name), std::string::npos) << name;
    metrics.counter("commongrounds", "").add();
    metrics.counter("processes", "").add();
    EXPECT_EQ(lines.texts().size(), 3u);
}

TEST(MetricNames, RefusedFiguresAreOneFigure)
{
    const test::LogLines lines;
    host::Metrics metrics;
    EXPECT_EQ(&metrics.counter("1st", ""), &metrics.counter("2nd", "", {{"zone", "a"}}));
    EXPECT_EQ(&metrics.gauge("1st", ""), &metrics.gauge("2nd", ""));
    EXPECT_EQ(&metrics.histogram("1st", "", {1, 2}), &metrics.histogram("2nd", "", {3}));
    EXPECT_NE(&metrics.counter("first", ""), &metrics.counter("second", ""));
}

TEST(MetricNames, LogOfRefusedFiguresIsBounded)
{
    const test::LogLines lines;
    host::Metrics metrics;
    for (int i = 0; i < 10000; ++i)
        metrics.counter(std::to_string(i), "").add();
    EXPECT_GT(lines.texts().size(), 0u);
    EXPECT_LE(lines.texts().size(), 100u);
}

TEST(MetricNames, InvalidLabelsAreRefused)
{
    test::LogLines lines;
    host::Metrics metrics;
    metrics.counter("a", "", {{"", "x"}}).add();
    metrics.counter("b", "", {{"2nd", "x"}}).add();
    metrics.gauge("c", "", {{"two words", "x"}}).set(1);
    metrics.gauge("d", "", {{"zone:a", "x"}}).set(1);
    metrics.counter("e", "", {{"__name", "x"}}).add();
    metrics.counter("f", "", {{"zone", "x"}, {"zone", "y"}}).add();
    metrics.histogram("g", "", {1}, {{"le", "x"}}).add(1);
    EXPECT_EQ(lines.texts(), (std::vector<std::wstring>{L"Metrics: a has the label \"\", which is not valid",
                                                        L"Metrics: b has the label \"2nd\", which is not valid",
                                                        L"Metrics: c has the label \"two words\", which is not valid",
                                                        L"Metrics: d has the label \"zone:a\", which is not valid",
                                                        L"Metrics: e has the label \"__name\", which is not valid",
                                                        L"Metrics: f has the label \"zone\" twice",
                                                        L"Metrics: g has the label \"le\", which is not valid"}));
    const std::string text = textOf(metrics);
    for (const char* const name : {"\na", "\nb", "\nc{", "\nd", "\ne", "\nf", "\ng"})
        EXPECT_EQ(text.find(name), std::string::npos) << name;
}

TEST(MetricNames, ValidLabelsArePrinted)
{
    const test::LogLines lines;
    host::Metrics metrics;
    metrics.counter("a", "", {{"_Zone9", "x"}}).add();
    // Reserved in histograms only.
    metrics.counter("b", "", {{"le", "x"}}).add();
    EXPECT_TRUE(lines.texts().empty());
    const std::string text = textOf(metrics);
    EXPECT_NE(text.find("\na_total{_Zone9=\"x\"} 1\n"), std::string::npos);
    EXPECT_NE(text.find("\nb_total{le=\"x\"} 1\n"), std::string::npos);
}

TEST(MetricNames, ValuesOfLabelsAreEscaped)
{
    host::Metrics metrics;
    metrics.counter("a", "", {{"zone", "x\"} 7\nb_total 8\\"}}).add();
    EXPECT_NE(textOf(metrics).find("\na_total{zone=\"x\\\"} 7\\nb_total 8\\\\\"} 1\n"), std::string::npos);
}

TEST(MetricNames, LabelsInAnotherOrderAreTheSameFigure)
{
    host::Metrics metrics;
    EXPECT_EQ(&metrics.counter("a", "", {{"zone", "1"}, {"level", "2"}}),
              &metrics.counter("a", "", {{"level", "2"}, {"zone", "1"}}));
    EXPECT_NE(&metrics.counter("a", "", {{"zone", "1"}, {"level", "2"}}),
              &metrics.counter("a", "", {{"zone", "2"}, {"level", "1"}}));
}

} // namespace
