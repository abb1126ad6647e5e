// The run loop of tasks. One System is one thread: its ticks do all the work, and between them it sleeps.
#pragma once

#include "framework/string.h"
#include "framework/unknown.h"

#include <atomic>
#include <memory>
#include <vector>

namespace zet
{

// Ticks its tasks until it is told to stop. All operations belong to the thread that called init(), or, before that,
// to the thread that made it; shutdown() and wake() may be called from any thread.
class COMMONGROUND_API System : public virtual Unknown
{
public:
    class Task;
    class Waiter;

    // Milliseconds from one tick to the next where nothing wakes the system earlier.
    static constexpr unsigned int kTickInterval = 10;
    // The number that onException() gets for what is thrown as a std::exception, and for anything else.
    static constexpr unsigned long kStandardException = 1;
    static constexpr unsigned long kOtherException = 2;

    System();
    // Stops the tasks that are still there.
    ~System() override;
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    // Takes the calling thread as the run thread. False ends run() before its first tick; here, only within a tick.
    virtual bool init();
    // Stops all tasks. It stands here for the order of the virtual operations, which hosts are built against.
    virtual void exit();
    // init(), ticks until shutdown(), exit(). Returns what init() returned.
    virtual bool run();
    // One pass over all tasks that are due; it never waits. A call from within a tick does nothing.
    virtual void tick();
    // Called once a tick, before the tasks, with the time of the tick as getTimeTick() gives it.
    virtual void onTick(unsigned int tick);
    // Asks run() to end behind the present tick.
    virtual void shutdown();
    // Told of what a task threw, after the log has been told; the task stays and the tick goes on with the next one.
    // What is thrown here goes no further.
    virtual void onException(unsigned long code);

    unsigned long getRunThreadId() const { return m_RunThreadId.load(std::memory_order_relaxed); }
    bool isShutdown() const { return m_IsShutdown.load(std::memory_order_relaxed); }
    bool isTicking() const { return m_IsTicking; }
    int getTaskCount() const;
    // Milliseconds, 1 at least.
    void setTickInterval(unsigned int milliseconds) { m_TickInterval = milliseconds ? milliseconds : 1; }

    // Sleeps until something is ready, wake() is called or the next tick is due; at most the tick interval.
    void wait();
    // Ends the present or the next wait().
    void wake();

    // Puts another way of sleeping in the place of the present one. Only on the run thread, and not while wait() runs.
    void setWaiter(const std::shared_ptr<Waiter>& waiter);
    const std::shared_ptr<Waiter>& getWaiter() const { return m_Waiters.back(); }

protected:
    // Ticks and waits until shutdown().
    void loop();

private:
    struct Entry
    {
        Task* m_Task;
        // Null for a task that no handle holds; such a task outlives its membership by itself.
        Unknown::Handle_T<Task> m_Owner;
    };

    bool add(Task* task);
    void remove(Task* task);
    void tickTasks(unsigned int tick);
    void tickTask(Task& task, unsigned int tick);
    unsigned int getWaitTime() const;
    template <class Call>
    void guard(Call call) noexcept;
    void dropStopped();

    // A task that stops during a tick leaves a place without a task, which may still hold it: it is let go of at the
    // end, and stopping takes no memory.
    std::vector<Entry> m_Tasks;
    bool m_HasStopped = false;
    // The last one is in use; earlier ones stay for a thread that is just waking them.
    std::vector<std::shared_ptr<Waiter>> m_Waiters;
    std::atomic<Waiter*> m_Waiter;
    std::atomic<bool> m_IsWoken{false};
    std::atomic<bool> m_IsShutdown{false};
    std::atomic<unsigned long> m_RunThreadId;
    unsigned int m_TickInterval = kTickInterval;
    unsigned int m_LastTick = 0;
    bool m_IsTicking = false;
};

// A member of a System. A System holds its tasks by counted handles from start() to stop(); a task that lives on the
// stack or inside another object must be stopped or destroyed before its System.
class COMMONGROUND_API System::Task : public virtual Unknown
{
public:
    Task() = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() override;

    // Joins a System; init() and the first onTick() come with its next tick. False where it is a member already, for a
    // null system, and on any thread but the System's.
    virtual bool start(System* system);
    // Leaves the System; exit() is called where init() was. Does nothing outside a System.
    virtual void stop();
    // No onTick() for so many milliseconds, or until waken().
    virtual void sleep(unsigned int milliseconds);
    // Ends a sleep, and the System's wait as well. The one operation for any thread, as long as the task is started.
    virtual void waken();
    // On the run thread before the first onTick(). False takes the task out of the System again, without exit().
    virtual bool init();
    virtual void exit();
    // The time of the tick as getTimeTick() gives it.
    virtual void onTick(unsigned int tick);

    // Null outside a System.
    System* getSystem() const { return m_System.load(std::memory_order_relaxed); }

private:
    friend class System;

    bool isDue(unsigned int tick);
    // Ticks wrap; a moment is reached when it does not lie ahead.
    static bool isReached(unsigned int moment, unsigned int now);

    std::atomic<System*> m_System{nullptr};
    unsigned int m_SleepUntil = 0;
    bool m_IsAsleep = false;
    bool m_IsInitialised = false;
    std::atomic<bool> m_IsWakened{false};
};

// How a System sleeps between ticks, and what it does around each tick. The System's thread calls all but wake().
class COMMONGROUND_API System::Waiter
{
public:
    virtual ~Waiter();
    // Returns when something is ready, after so many milliseconds, or at once where wake() came since the last wait.
    virtual void wait(unsigned int milliseconds) = 0;
    // From any thread.
    virtual void wake() = 0;
    // At the begin and at the end of each tick; neither waits.
    virtual void beginTick() = 0;
    virtual void endTick() = 0;
};

// A System that is the frame of a server process.
class COMMONGROUND_API ServiceSystem : public System
{
public:
    ServiceSystem();

    // init(), ServiceOn(), ticks until shutdown(), exit(). Returns whether init() and ServiceOn() were true.
    bool run() override;
    // Called once init() is done; false ends run() before its first tick.
    virtual bool ServiceOn();
    // Called by exit().
    virtual void ServiceOff();
    void exit() override;

    // getDefaultSystemName() of the process's executable, until setSystemName() gives another.
    const String_T<wchar_t>& getSystemName() const { return m_SystemName; }
    // The name of the file at a path without its extension, which is what follows the last dot, but for a number: of
    // "zone.exe" it is "zone", of "zone.1" all of it. Never empty where the file's name is not.
    static String_T<wchar_t> getDefaultSystemName(const String_T<wchar_t>& executable);
    void setSystemName(const String_T<wchar_t>& name) { m_SystemName = name; }

private:
    String_T<wchar_t> m_SystemName;
};

} // namespace zet
