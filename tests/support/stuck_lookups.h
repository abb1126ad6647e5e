// Lookups that keep the resolver's threads until the test lets them go.
#pragma once

#include "net/door/names.h"
#include "tests/support/eventually.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <mutex>

namespace test
{

// As many as there are threads. One object at a time.
class StuckLookups
{
public:
    static constexpr int kThreads = 8;

    StuckLookups()
    {
        s_Gate.lock();
        for (int i = 0; i < kThreads; ++i)
            zet::inner::resolveApart(
                "stuck.test", [this](auto&&) { ++m_Answers; }, m_Asker, &StuckLookups::wait);
        EXPECT_TRUE(eventually([] { return s_Waiting == kThreads; }));
    }
    ~StuckLookups()
    {
        s_Gate.unlock();
        EXPECT_TRUE(eventually([this] { return m_Answers == kThreads && s_Waiting == 0; }));
    }
    StuckLookups(const StuckLookups&) = delete;
    StuckLookups& operator=(const StuckLookups&) = delete;

    // A lookup that is never stuck.
    static std::vector<zet::inner::Endpoint> answerAtOnce(const char*) { return std::vector<zet::inner::Endpoint>(1); }

private:
    static std::vector<zet::inner::Endpoint> wait(const char*)
    {
        ++s_Waiting;
        {
            const std::lock_guard lock(s_Gate);
        }
        --s_Waiting;
        return {};
    }

    static inline std::mutex s_Gate;
    static inline std::atomic<int> s_Waiting{0};
    std::atomic<int> m_Answers{0};
    const std::shared_ptr<int> m_Asker = std::make_shared<int>(0);
};

} // namespace test
