// Tasks ask questions and wait for times, as coroutines or with callbacks. They run in ticks, without threads.
//
//   host::Task logIn(CCommandSocket& socket)
//   {
//       CCmdLogin login;
//       const auto reply = co_await host::ask<CCmdLoginSuccess, CCmdLoginFail>(socket, login, 5s);
//       if (const auto* success = std::get_if<CCmdLoginSuccess>(&reply)) ...
//       co_await host::sleep(200ms);
//   }
//   ...
//   tasks.start(logIn(socket));
//
// Coroutines need a compiler that has them (__cpp_impl_coroutine); the library itself does not, and the callbacks work
// with every compiler.
#pragma once

#include "host/questions.h"

#ifdef __cpp_impl_coroutine
#include <coroutine>
#include <optional>
#endif

namespace host
{

class Tasks;
#ifdef __cpp_impl_coroutine
class Task;
#endif

namespace inner
{

// A task, question or timer that a Tasks owns.
class COMMONGROUND_API Job
{
public:
    Job(const Job&) = delete;
    Job& operator=(const Job&) = delete;

    const std::shared_ptr<QuestionTable>& getTable() const { return m_Table; }
    // Whether its owner was destroyed or has cancelled it.
    bool isCancelled() const { return m_IsCancelled; }
    // Frees the object.
    virtual void destroy() = 0;

    // If true, the object is not destroyed with its owner, but when it waits next.
    bool m_IsRunning = false;

protected:
    Job() = default;
    // Leaves its owner.
    virtual ~Job();
    void leave();

private:
    friend class host::Tasks;

    std::shared_ptr<QuestionTable> m_Table;
    Tasks* m_Owner = nullptr;
    Job* m_Before = nullptr;
    Job* m_After = nullptr;
    bool m_IsCancelled = false;
};

// Logs the exception that is being handled.
COMMONGROUND_API void reportTaskException() noexcept;

// Makes the reply from the answer, which is of one of these classes.
template <class... Answers, class Take>
void passAnswer(CCmdHead& answer, const std::type_info& type, Take take)
{
    static_cast<void>(((type == typeid(Answers) &&
                        (take(Reply<Answers...>(std::in_place_type<Answers>, static_cast<Answers&&>(answer))), true)) ||
                       ...));
}

template <class Callback, class... Answers>
class CallbackQuestion final : public Job, private Waiter
{
public:
    explicit CallbackQuestion(Callback callback) : m_Callback(std::move(callback)) {}

    void ask(CCommandSocket& socket, const CCmdHead& command, std::chrono::milliseconds timeOut)
    {
        Waiter::ask(getTable(), socket, command, {&typeid(Answers)...}, timeOut);
    }
    void destroy() override { delete this; }

private:
    void onAnswer(CCmdHead& answer, const std::type_info& type) override
    {
        passAnswer<Answers...>(answer, type, [this](Reply<Answers...>&& reply) { finish(std::move(reply)); });
    }
    void onUnanswered(Unanswered why) override { finish(why); }
    void finish(Reply<Answers...> reply)
    {
        const std::unique_ptr<CallbackQuestion> self(this);
        leave();
        m_Callback(std::move(reply));
    }

    Callback m_Callback;
};

template <class Callback>
class CallbackTimer final : public Job, private Waiter
{
public:
    explicit CallbackTimer(Callback callback) : m_Callback(std::move(callback)) {}

    void start(std::chrono::milliseconds time) { wait(getTable(), time); }
    void destroy() override { delete this; }

private:
    void onAnswer(CCmdHead&, const std::type_info&) override {}
    void onUnanswered(Unanswered) override
    {
        const std::unique_ptr<CallbackTimer> self(this);
        leave();
        m_Callback();
    }

    Callback m_Callback;
};

} // namespace inner

// Owns tasks and cancels them when it is destroyed, so make it a member of the object that they use. Several may share
// a Questions. All of it belongs to the thread of the System of the Questions.
//
// CANCELLING: a waiting coroutine is destroyed where it waits, with its local variables; a running one, where it waits
// next. A pending callback is destroyed without a call.
//
// An exception from a task or a callback ends it, and is logged. start(), ask() and after() call no callback and resume
// no coroutine; start() runs its own coroutine until it waits.
class COMMONGROUND_API Tasks
{
public:
    // Destroy it before the Questions, which is not owned.
    explicit Tasks(Questions& questions);
    ~Tasks();
    Tasks(const Tasks&) = delete;
    Tasks& operator=(const Tasks&) = delete;

    // Sends the command and calls the callback once, with a Reply<Answers...>, from a tick.
    template <class... Answers, class Callback>
    void ask(CCommandSocket& socket, const CCmdHead& command, std::chrono::milliseconds timeOut, Callback callback)
    {
        inner::checkAnswers<Answers...>();
        static_assert(std::is_invocable_v<Callback&, Reply<Answers...>>,
                      "the callback of ask<Answers...>() takes a Reply<Answers...>");
        auto question = std::make_unique<inner::CallbackQuestion<Callback, Answers...>>(std::move(callback));
        adopt(*question);
        question->ask(socket, command, timeOut);
        static_cast<void>(question.release());
    }

    // Calls the callback once, in the first tick after the given time.
    template <class Callback>
    void after(std::chrono::milliseconds time, Callback callback)
    {
        static_assert(std::is_invocable_v<Callback&>, "the callback of after() takes nothing");
        auto timer = std::make_unique<inner::CallbackTimer<Callback>>(std::move(callback));
        adopt(*timer);
        timer->start(time);
        static_cast<void>(timer.release());
    }

#ifdef __cpp_impl_coroutine
    // Runs the coroutine until it waits, and then from tick to tick.
    void start(Task task);
    // The same with a callable that returns a Task, such as a lambda, whose captures live as long as the coroutine.
    template <class Callable>
    requires std::is_invocable_r_v<Task, Callable&>
    void start(Callable callable);
#endif

    // Cancels all tasks.
    void cancel();
    // The number of waiting tasks, including a coroutine that is running.
    int getCount() const;

private:
    friend class inner::Job;

    void adopt(inner::Job& job);

    std::shared_ptr<inner::QuestionTable> m_Table;
    inner::Job* m_First = nullptr;
};

#ifdef __cpp_impl_coroutine

namespace inner
{

// A coroutine of a Tasks.
class CoroutineJob : public Job
{
public:
    // Continues the coroutine; afterwards this object may be destroyed.
    virtual void resume() = 0;
};

template <class... Answers>
struct [[nodiscard]] AskRequest
{
    CCommandSocket& m_Socket;
    const CCmdHead& m_Command;
    std::chrono::milliseconds m_TimeOut;
};

struct [[nodiscard]] SleepRequest
{
    std::chrono::milliseconds m_Time;
};

// Kept out of line: some compilers use the frame of a coroutine after an inlined await_suspend() has destroyed it.
template <class... Answers>
class AskAwaiter final : private Waiter
{
public:
    AskAwaiter(CoroutineJob& job, const AskRequest<Answers...>& request) : m_Job(job), m_Request(request) {}

    bool await_ready() const noexcept { return false; }
    [[gnu::noinline]] void await_suspend(std::coroutine_handle<>)
    {
        if (m_Job.isCancelled())
            return m_Job.destroy();
        ask(m_Job.getTable(), m_Request.m_Socket, m_Request.m_Command, {&typeid(Answers)...}, m_Request.m_TimeOut);
        m_Job.m_IsRunning = false;
    }
    Reply<Answers...> await_resume() { return std::move(*m_Reply); }

private:
    void onAnswer(CCmdHead& answer, const std::type_info& type) override
    {
        passAnswer<Answers...>(answer, type, [this](Reply<Answers...>&& reply) { m_Reply.emplace(std::move(reply)); });
        m_Job.resume();
    }
    void onUnanswered(Unanswered why) override
    {
        m_Reply.emplace(why);
        m_Job.resume();
    }

    CoroutineJob& m_Job;
    const AskRequest<Answers...> m_Request;
    std::optional<Reply<Answers...>> m_Reply;
};

class SleepAwaiter final : private Waiter
{
public:
    SleepAwaiter(CoroutineJob& job, SleepRequest request) : m_Job(job), m_Request(request) {}

    bool await_ready() const noexcept { return false; }
    [[gnu::noinline]] void await_suspend(std::coroutine_handle<>)
    {
        if (m_Job.isCancelled())
            return m_Job.destroy();
        wait(m_Job.getTable(), m_Request.m_Time);
        m_Job.m_IsRunning = false;
    }
    void await_resume() const noexcept {}

private:
    void onAnswer(CCmdHead&, const std::type_info&) override {}
    void onUnanswered(Unanswered) override { m_Job.resume(); }

    CoroutineJob& m_Job;
    const SleepRequest m_Request;
};

} // namespace inner

// To be awaited at once, in a Task: sends the command and returns a Reply<Answers...>. The classes must be expected by
// the Questions.
template <class... Answers>
inner::AskRequest<Answers...> ask(CCommandSocket& socket, const CCmdHead& command, std::chrono::milliseconds timeOut)
{
    inner::checkAnswers<Answers...>();
    return {socket, command, timeOut};
}

// To be awaited at once, in a Task: continues in the first tick after the given time; with 0 ms, in the next tick.
inline inner::SleepRequest sleep(std::chrono::milliseconds time)
{
    return {time};
}

// A coroutine for Tasks::start(); one that is not started is destroyed. Its parameters are copied or refer to what the
// caller keeps alive.
class [[nodiscard]] Task
{
public:
    class promise_type;

    // Takes the coroutine over; the other object has none then.
    Task(Task&& other) noexcept : m_Handle(std::exchange(other.m_Handle, nullptr)) {}
    Task& operator=(Task&& other) noexcept
    {
        std::swap(m_Handle, other.m_Handle);
        return *this;
    }
    ~Task()
    {
        if (m_Handle)
            m_Handle.destroy();
    }

private:
    friend class Tasks;

    explicit Task(std::coroutine_handle<promise_type> handle) : m_Handle(handle) {}

    std::coroutine_handle<promise_type> m_Handle;
};

class Task::promise_type final : public inner::CoroutineJob
{
public:
    Task get_return_object() { return Task(handle()); }
    std::suspend_always initial_suspend() const noexcept { return {}; }
    // The coroutine destroys its own frame when it ends.
    std::suspend_never final_suspend() const noexcept { return {}; }
    void return_void() const noexcept {}
    void unhandled_exception() const noexcept { inner::reportTaskException(); }

    template <class... Answers>
    inner::AskAwaiter<Answers...> await_transform(inner::AskRequest<Answers...>&& request)
    {
        return {*this, request};
    }
    inner::SleepAwaiter await_transform(inner::SleepRequest&& request) { return {*this, request}; }

    void resume() override
    {
        m_IsRunning = true;
        handle().resume();
    }
    void destroy() override { handle().destroy(); }

private:
    friend class host::Tasks;

    std::coroutine_handle<promise_type> handle() { return std::coroutine_handle<promise_type>::from_promise(*this); }

    // The callable that made the coroutine, if there was one; destroyed after the variables of the coroutine.
    std::shared_ptr<void> m_Callable;
};

inline void Tasks::start(Task task)
{
    Task::promise_type& coroutine = std::exchange(task.m_Handle, nullptr).promise();
    adopt(coroutine);
    coroutine.resume();
}

template <class Callable>
requires std::is_invocable_r_v<Task, Callable&>
void Tasks::start(Callable callable)
{
    auto kept = std::make_shared<Callable>(std::move(callable));
    Task task = (*kept)();
    task.m_Handle.promise().m_Callable = std::move(kept);
    start(std::move(task));
}

#endif

} // namespace host
