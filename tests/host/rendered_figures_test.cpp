#include "host/inner/rendered_figures.h"

#include "host/metrics.h"

#include <gtest/gtest.h>

namespace
{

TEST(RenderedFigures, EachTextIsRenderedOncePerTick)
{
    host::Metrics metrics;
    int printed = 0;
    metrics.addPrinter([&](host::MetricText&) { ++printed; });
    host::inner::RenderedFigures figures(metrics);
    figures.beginTick();
    const std::string first = figures.getText();
    EXPECT_NE(first.find("# EOF\n"), std::string::npos);
    EXPECT_EQ(figures.getText(), first);
    EXPECT_EQ(printed, 1);
    EXPECT_EQ(figures.getPlainText().find("# EOF\n"), std::string::npos);
    figures.getPlainText();
    EXPECT_EQ(printed, 2);
    metrics.counter("rounds", "Rounds.").add();
    EXPECT_EQ(figures.getText(), first);
    figures.beginTick();
    EXPECT_NE(figures.getText().find("rounds_total 1\n"), std::string::npos);
    EXPECT_EQ(printed, 3);
}

} // namespace
