// Work that one System does for another: posted by any thread, done on the thread of the System.
#pragma once

#include "framework/export.h"
#include "framework/system.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

namespace host
{

// A task of the System that does the work. Systems on several threads share nothing but their inboxes: connections stay
// on their threads, and values go from one to the other. The number of posted calls is not bounded.
class COMMONGROUND_API Inbox : public zet::System::Task
{
public:
    using Work = std::function<void()>;

    // Calls work in the next tick, which follows at once, after all that was posted before. Any thread may post until
    // the inbox is stopped or its System exits; what is posted before start() waits for it. What the inbox has not done
    // when it is destroyed is destroyed with it. Throws std::bad_alloc, and posts nothing then.
    void post(Work work);

    // Does what was posted. An exception is logged and ends only its own piece of work. With nothing posted no lock is
    // taken.
    void onTick(unsigned int tick) override;

private:
    std::mutex m_Mutex;
    std::vector<Work> m_Posted;
    std::atomic<bool> m_HasPosted{false};
};

} // namespace host
