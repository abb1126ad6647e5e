// The queue of host names to be resolved had no bound, and a lookup whose requester was gone kept its place. A host
// that connected to an unreachable name again and again, while the name server did not answer, filled the memory and
// made each later name wait for all earlier ones.
#include "tests/support/stuck_lookups.h"

#include <gtest/gtest.h>

namespace
{

using test::StuckLookups;
using zet::inner::kMostLookups;
using zet::inner::resolveApart;

std::atomic<int> g_Asked{0};

std::vector<zet::inner::Endpoint> ask(const char* name)
{
    ++g_Asked;
    return StuckLookups::answerAtOnce(name);
}

TEST(Bugs, AForgottenLookupFreesItsPlace)
{
    std::atomic<int> found{0};
    std::atomic<int> lost{0};
    const auto answer = [&](std::vector<zet::inner::Endpoint> addresses) { ++(addresses.empty() ? lost : found); };
    const auto waiting = std::make_shared<int>(0);
    g_Asked = 0;
    {
        const StuckLookups stuck;
        auto forgotten = std::make_shared<int>(0);
        for (size_t i = 0; i < kMostLookups; ++i)
            resolveApart("some.test", answer, forgotten, ask);
        EXPECT_EQ(lost, 0);
        // The queue is full: the lookup fails at once.
        resolveApart("other.test", answer, waiting, ask);
        EXPECT_EQ(lost, 1);
        forgotten = nullptr;
        for (size_t i = 0; i < kMostLookups; ++i)
            resolveApart("other.test", answer, waiting, ask);
        EXPECT_EQ(lost, 1);
    }
    EXPECT_TRUE(test::eventually([&] { return found == static_cast<int>(kMostLookups); }));
    EXPECT_EQ(g_Asked, static_cast<int>(kMostLookups));
    // A forgotten lookup is not resolved if the queue is not full, either.
    {
        const StuckLookups stuck;
        resolveApart("some.test", answer, std::make_shared<int>(0), ask);
        resolveApart("other.test", answer, waiting, ask);
    }
    EXPECT_TRUE(test::eventually([&] { return found == static_cast<int>(kMostLookups) + 1; }));
    EXPECT_EQ(g_Asked, static_cast<int>(kMostLookups) + 1);
}

} // namespace
