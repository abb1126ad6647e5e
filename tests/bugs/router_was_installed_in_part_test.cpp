// PackRouter::install() returned false if the Handlers had a handler for the second envelope, but the first envelope
// had its handler already: the host that gave up received messages of a router that was not installed.
#include "host/pack_router.h"
#include "tests/support/log_lines.h"

#include <gtest/gtest.h>

#include <memory>

namespace
{

TEST(Bugs, ARefusedRouterInstallsNothing)
{
    const test::LogLines lines;
    const auto analyser = std::make_unique<CCmdAnalyserSocket>();
    host::Handlers handlers(*analyser);
    EXPECT_TRUE(handlers.on<CCmdHomePackReply>([](CCommandSocket&, CCmdHomePackReply&) {}));
    host::PackRouter<CCmdHomePackRequest, CCmdHomePackReply> home;
    EXPECT_TRUE(home.on<HomePack_LoadData_Request>(1, [](CCommandSocket&, HomePack_LoadData_Request&) {}));
    EXPECT_TRUE(home.on<HomePack_LoadData_Reply>(2, [](CCommandSocket&, HomePack_LoadData_Reply&) {}));
    EXPECT_FALSE(home.install(handlers));
    EXPECT_EQ(lines.texts().size(), 1U) << "the line of Handlers";
    EXPECT_EQ(handlers.getCount(), 1) << "only the handler of before";
    EXPECT_TRUE(handlers.on<CCmdHomePackRequest>([](CCommandSocket&, CCmdHomePackRequest&) {}));
}

} // namespace
