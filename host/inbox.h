// Work that one System does for another: posted by any thread, done on the thread of the System.
#pragma once

#include "framework/export.h"
#include "framework/system.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace host
{

// A task of the System that does the work. Systems on several threads share nothing but their inboxes: connections stay
// on their threads, and values go from one to the other. The number of calls that wait is bounded: a System that is
// slower than those that post to it refuses work rather than run out of memory.
class COMMONGROUND_API Inbox : public zet::System::Task
{
public:
    using Work = std::function<void()>;

    // Calls that may wait.
    static constexpr size_t kDefaultLimit = 65536;

    // limit: calls that may wait, those under way not included.
    explicit Inbox(size_t limit = kDefaultLimit) : m_Limit(limit) {}

    // Calls work in the next tick, which follows at once, after all that was posted before. Any thread may post until
    // the inbox is stopped or its System exits; what is posted before start() waits for it. What the inbox has not done
    // when it is destroyed is destroyed with it. False, and the work is released, if as many calls wait as may; the
    // caller decides whether to post again later. Throws std::bad_alloc, and posts nothing then.
    bool post(Work work);

    // The calls that wait now, and the calls that post() has refused so far. Any thread.
    size_t getSize() const { return m_Size.load(std::memory_order_relaxed); }
    unsigned long long getRefusedCount() const { return m_Refused.load(std::memory_order_relaxed); }

    // Does what was posted. An exception is logged and ends only its own piece of work. With nothing posted no lock is
    // taken.
    void onTick(unsigned int tick) override;

private:
    const size_t m_Limit;
    std::mutex m_Mutex;
    std::vector<Work> m_Posted;
    // The size of m_Posted.
    std::atomic<size_t> m_Size{0};
    std::atomic<unsigned long long> m_Refused{0};
};

} // namespace host
