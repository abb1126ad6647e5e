#include "framework/system.h"

#include "framework/inner/guard.h"
#include "framework/inner/mark.h"
#include "framework/inner/moment.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "framework/thread.h"
#include "framework/time.h"

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace zet
{

namespace
{

// The waiter of a System without sockets.
class PlainWaiter : public System::Waiter
{
public:
    void wait(unsigned int milliseconds) override
    {
        std::unique_lock lock(m_Mutex);
        m_Wakened.wait_for(lock, std::chrono::milliseconds(milliseconds), [this] { return m_IsWoken; });
        m_IsWoken = false;
    }
    void wake() override
    {
        {
            std::lock_guard lock(m_Mutex);
            m_IsWoken = true;
        }
        m_Wakened.notify_one();
    }
    void beginTick() override {}
    void endTick() override {}

private:
    std::mutex m_Mutex;
    std::condition_variable m_Wakened;
    bool m_IsWoken = false;
};

} // namespace

System::Waiter::~Waiter() = default;

System::System() : m_RunThreadId(Thread::getCurrentThreadId())
{
    m_Waiters.push_back(std::make_shared<PlainWaiter>());
    m_Waiter = m_Waiters.back().get();
}

System::~System()
{
    System::exit();
}

bool System::init()
{
    if (m_IsTicking)
        return false;
    m_RunThreadId.store(Thread::getCurrentThreadId(), std::memory_order_relaxed);
    return true;
}

bool System::run()
{
    if (!init())
        return false;
    loop();
    exit();
    return true;
}

void System::loop()
{
    while (!isShutdown())
    {
        tick();
        if (!isShutdown())
            wait();
    }
}

// No exception leaves a tick: neither that of a task nor one of its report without memory.
template <class Call>
void System::guard(Call call) noexcept
{
    unsigned long code = kOtherException;
    const auto tell = [&](const char* what)
    {
        code = what ? kStandardException : kOtherException;
        if (what)
            Log::error(L"Exception in a task: %s", StringHelper::utf8ToWide(what));
        else
            Log::error(L"Unknown exception in a task");
    };
    if (inner::guardCall(call, tell))
        return;
    inner::report([] { Log::whistle(false); });
    inner::report([&] { onException(code); });
}

void System::tick()
{
    if (m_IsTicking)
        return;
    {
        const inner::Mark ticking(m_IsTicking);
        m_HasTickBy = false;
        guard([this] { m_Waiters.back()->beginTick(); });
        m_LastTick = getTimeTick();
        guard([this] { onTick(m_LastTick); });
        tickTasks(m_LastTick);
        // A task may have replaced the waiter.
        guard([this] { m_Waiters.back()->endTick(); });
    }
    dropStopped();
}

void System::tickTasks(unsigned int tick)
{
    // Tasks that start meanwhile run in the next tick; those that stop leave an empty entry.
    const size_t count = m_Tasks.size();
    for (size_t i = 0; i < count; ++i)
        if (Task* task = m_Tasks[i].m_Task)
            if (task->isDue(tick))
                guard([=, this] { tickTask(*task, tick); });
}

void System::dropStopped()
{
    while (std::exchange(m_HasStopped, false))
    {
        // The remaining entries move to the front in order.
        size_t kept = 0;
        for (size_t i = 0; i < m_Tasks.size(); ++i)
            if (m_Tasks[i].m_Task)
                std::swap(m_Tasks[kept++], m_Tasks[i]);
        while (!m_Tasks.empty() && !m_Tasks.back().m_Task)
        {
            const Entry stopped = std::move(m_Tasks.back());
            m_Tasks.pop_back();
        }
        // Releasing a task may start another one, after those not yet released.
        for (const Entry& entry : m_Tasks)
            m_HasStopped = m_HasStopped || !entry.m_Task;
    }
}

void System::tickTask(Task& task, unsigned int tick)
{
    if (!task.m_IsInitialised)
    {
        const bool isReady = task.init();
        // init() may have stopped the task.
        if (task.getSystem() != this)
            return;
        if (!isReady)
        {
            remove(&task);
            return;
        }
        task.m_IsInitialised = true;
    }
    task.onTick(tick);
}

void System::onTick(unsigned int) {}

void System::shutdown()
{
    m_IsShutdown.store(true, std::memory_order_relaxed);
    wake();
}

void System::exit()
{
    // Tasks stop in reverse order. A task may stop others meanwhile.
    for (size_t i = m_Tasks.size(); i-- > 0;)
    {
        if (i >= m_Tasks.size() || !m_Tasks[i].m_Task)
            continue;
        const Entry entry = m_Tasks[i];
        guard([&] { entry.m_Task->stop(); });
    }
    if (!m_IsTicking)
        m_Tasks.clear();
    m_IsShutdown.store(false, std::memory_order_relaxed);
}

void System::onException(unsigned long) {}

int System::getTaskCount() const
{
    int count = 0;
    for (const Entry& entry : m_Tasks)
        count += entry.m_Task != nullptr;
    return count;
}

void System::wait()
{
    // The order of these two steps, and of those in wake(), ensures that no wake() is lost.
    if (m_IsWoken.exchange(false))
        return;
    guard([this] { m_Waiters.back()->wait(getWaitTime()); });
    m_IsWoken = false;
}

void System::wake()
{
    m_IsWoken = true;
    m_Waiter.load()->wake();
}

void System::tickBy(unsigned int moment)
{
    if (m_HasTickBy && inner::isReached(m_TickBy, moment))
        return;
    m_TickBy = moment;
    m_HasTickBy = true;
}

void System::setWaiter(const std::shared_ptr<Waiter>& waiter)
{
    m_Waiters.push_back(waiter);
    m_Waiter = waiter.get();
    if (m_IsTicking)
        waiter->beginTick();
}

unsigned int System::getWaitTime() const
{
    const unsigned int now = getTimeTick();
    const unsigned int next = m_LastTick + m_TickInterval;
    unsigned int time = inner::isReached(next, now) ? 0 : next - now;
    time = time < m_TickInterval ? time : m_TickInterval;
    if (m_HasTickBy)
    {
        const unsigned int left = inner::isReached(m_TickBy, now) ? 0 : m_TickBy - now;
        time = left < time ? left : time;
    }
    for (const Entry& entry : m_Tasks)
        if (entry.m_Task && entry.m_Task->m_IsAsleep)
        {
            const unsigned int until = entry.m_Task->m_SleepUntil;
            const unsigned int left = inner::isReached(until, now) ? 0 : until - now;
            time = left < time ? left : time;
        }
    return time;
}

bool System::add(Task* task)
{
    if (Thread::getCurrentThreadId() != getRunThreadId())
        return false;
    // An object that no handle holds belongs to its creator; a handle here would be the last one and delete it.
    m_Tasks.push_back({task, task->getRefCount() > 0 ? Unknown::Handle_T<Task>(task) : Unknown::Handle_T<Task>()});
    return true;
}

void System::remove(Task* task)
{
    if (task->getSystem() != this)
        return;
    task->m_System = nullptr;
    task->m_IsInitialised = false;
    for (size_t i = 0; i < m_Tasks.size(); ++i)
    {
        if (m_Tasks[i].m_Task != task)
            continue;
        m_Tasks[i].m_Task = nullptr;
        m_HasStopped = true;
        if (!m_IsTicking)
            dropStopped();
        return;
    }
}

} // namespace zet
