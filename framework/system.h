// The run loop of tasks. One System is one thread: it works in ticks and sleeps between them.
#pragma once

#include "framework/string.h"
#include "framework/unknown.h"

#include <atomic>
#include <memory>
#include <vector>

namespace zet
{

// Ticks its tasks until shutdown(). All operations belong to the thread that called init(), or, before that, to the
// thread that constructed it. Any thread may call shutdown(), wake(), getRunThreadId() and isShutdown(), and the System
// has to exist until they return.
class COMMONGROUND_API System : public virtual Unknown
{
public:
    class Task;
    class Waiter;

    // Milliseconds from one tick to the next if nothing wakes the system earlier.
    static constexpr unsigned int kTickInterval = 10;
    // The longest tick interval, a day: with it an idle System calls the operating system only when something happens.
    static constexpr unsigned int kLongestInterval = 24 * 60 * 60 * 1000;
    // The codes that onException() gets for a std::exception and for anything else.
    static constexpr unsigned long kStandardException = 1;
    static constexpr unsigned long kOtherException = 2;

    // Belongs to the calling thread until init().
    System();
    // Stops the remaining tasks.
    ~System() override;
    System(const System&) = delete;
    System& operator=(const System&) = delete;

    // Makes the calling thread the run thread. This implementation returns false only if it is called within a tick.
    // After false run() makes no tick and does not call exit().
    virtual bool init();
    // Stops all tasks.
    virtual void exit();
    // init(), ticks until shutdown(), exit(). Returns what init() returned.
    virtual bool run();
    // One pass over all due tasks; never waits. A call from within a tick does nothing.
    virtual void tick();
    // Called once per tick, before the tasks, with the time of the tick from getTimeTick(): milliseconds, which wrap.
    virtual void onTick(unsigned int tick);
    // Makes run() end after the current tick.
    virtual void shutdown();
    // Called with the code of an exception from a task, after it was logged; the task stays and the tick continues with
    // the next one. Exceptions from this function are caught.
    virtual void onException(unsigned long code);

    // The number of the run thread, by Thread::getCurrentThreadId().
    unsigned long getRunThreadId() const { return m_RunThreadId.load(std::memory_order_relaxed); }
    // Whether shutdown() was called since the last exit().
    bool isShutdown() const { return m_IsShutdown.load(std::memory_order_relaxed); }
    // Whether a tick is running. Run thread only.
    bool isTicking() const { return m_IsTicking; }
    // The number of started tasks.
    int getTaskCount() const;
    // Milliseconds, 1 to kLongestInterval; other values become the nearest of these. With a longer interval than
    // kTickInterval the library's sockets and questions still keep their times; a task that waits for a time of its own
    // sleeps or calls tickBy().
    void setTickInterval(unsigned int milliseconds)
    {
        m_TickInterval = milliseconds == 0 ? 1 : milliseconds < kLongestInterval ? milliseconds : kLongestInterval;
    }
    // Makes the next tick start at this time of getTimeTick() at the latest. Applies until that tick: a task that still
    // waits then calls it again, in each tick. Only on the run thread.
    void tickBy(unsigned int moment);

    // Sleeps until the waiter reports an event (by default: a socket is ready), wake() is called or the next tick is
    // due; at most one tick interval.
    void wait();
    // Ends the current or the next wait().
    void wake();

    // Replaces the waiter. Only on the run thread, and not while wait() runs.
    void setWaiter(const std::shared_ptr<Waiter>& waiter);
    // The waiter in use.
    const std::shared_ptr<Waiter>& getWaiter() const { return m_Waiters.back(); }

protected:
    // Ticks and waits until shutdown().
    void loop();

private:
    struct Entry
    {
        Task* m_Task;
        // Null for a task that no handle holds; its owner keeps it alive during its membership.
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

    // A task that stops during a tick leaves an entry without a task, which may still hold it: the entry is removed at
    // the end of the tick, and stopping allocates nothing.
    std::vector<Entry> m_Tasks;
    bool m_HasStopped = false;
    // The last one is in use; earlier ones are kept for a thread that may be waking them.
    std::vector<std::shared_ptr<Waiter>> m_Waiters;
    std::atomic<Waiter*> m_Waiter;
    std::atomic<bool> m_IsWoken{false};
    std::atomic<bool> m_IsShutdown{false};
    std::atomic<unsigned long> m_RunThreadId;
    unsigned int m_TickInterval = kTickInterval;
    unsigned int m_LastTick = 0;
    // The earliest time of tickBy() since the last tick began.
    unsigned int m_TickBy = 0;
    bool m_HasTickBy = false;
    bool m_IsTicking = false;
};

// A task of a System. A System holds its tasks by counted handles from start() to stop(); a task on the stack or inside
// another object must be stopped or destroyed before its System.
class COMMONGROUND_API System::Task : public virtual Unknown
{
public:
    Task() = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    ~Task() override;

    // Joins a System; init() and the first onTick() are called in the System's next tick. False if the task is already
    // started, if system is null, or if called on another thread than the System's.
    virtual bool start(System* system);
    // Leaves the System; calls exit() if init() was called. Does nothing outside a System.
    virtual void stop();
    // Suspends onTick() for the given milliseconds, or until waken() if that is earlier.
    virtual void sleep(unsigned int milliseconds);
    // Ends a sleep, and the System's wait too. May be called from any thread while the task is started; the other
    // operations must not.
    virtual void waken();
    // Called on the run thread before the first onTick(). False removes the task from the System, without exit().
    virtual bool init();
    // Called when the task leaves a System in which init() was called.
    virtual void exit();
    // The time of the tick from getTimeTick().
    virtual void onTick(unsigned int tick);

    // Null outside a System.
    System* getSystem() const { return m_System.load(std::memory_order_relaxed); }

private:
    friend class System;

    bool isDue(unsigned int tick);

    std::atomic<System*> m_System{nullptr};
    unsigned int m_SleepUntil = 0;
    bool m_IsAsleep = false;
    bool m_IsInitialised = false;
    std::atomic<bool> m_IsWakened{false};
};

// Implements the sleep of a System between ticks, and is called at the start and at the end of each tick. All functions
// but wake() are called on the System's thread.
class COMMONGROUND_API System::Waiter
{
public:
    virtual ~Waiter();
    // Returns when something is ready, after the given milliseconds, or at once if wake() was called since the last
    // wait.
    virtual void wait(unsigned int milliseconds) = 0;
    // From any thread.
    virtual void wake() = 0;
    // Called at the start and at the end of each tick; must not wait.
    virtual void beginTick() = 0;
    virtual void endTick() = 0;
};

// The System of a server process.
class COMMONGROUND_API ServiceSystem : public System
{
public:
    // With the default name.
    ServiceSystem();

    // init(), ServiceOn(), ticks until shutdown(), exit(). Returns whether init() and ServiceOn() were true.
    bool run() override;
    // Called after init(); false ends run() before its first tick.
    virtual bool ServiceOn();
    // Called by exit().
    virtual void ServiceOff();
    void exit() override;

    // Initially getDefaultSystemName() of the process's executable.
    const String_T<wchar_t>& getSystemName() const { return m_SystemName; }
    // The file name of a path, without the part after its last dot unless that part is a number: "zone" for "zone.exe",
    // "zone.1" for "zone.1". Empty only if the file name is.
    static String_T<wchar_t> getDefaultSystemName(const String_T<wchar_t>& executable);
    // Set it before run(): the log uses it as the name of its folder.
    void setSystemName(const String_T<wchar_t>& name) { m_SystemName = name; }

private:
    String_T<wchar_t> m_SystemName;
};

} // namespace zet
