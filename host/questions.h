// Questions: commands that are sent with the classes of their answers and a time limit. A question gets exactly one
// reply: one of the answers, or the reason why it has no answer. Tasks (host/tasks.h) asks them; several Tasks may
// share a Questions.
#pragma once

#include "host/handlers.h"

#include <chrono>
#include <initializer_list>
#include <variant>

namespace host
{

// Why a question has no answer.
struct COMMONGROUND_API Unanswered
{
    enum Reason
    {
        // No answer was handled within the time limit.
        kTimedOut,
        // The connection ended, or was down when the question was asked.
        kEnded,
        // The command was not sent; a line in the log says why.
        kNotSent
    };

    // "timed out", "the connection ended", "not sent".
    const wchar_t* getText() const;

    Reason m_Reason = kNotSent;
    // For kEnded: why the connection ended.
    zet::EndCause m_Cause = {};
};

// How a question ended, for statistics.
struct COMMONGROUND_API QuestionEnd
{
    // The id of the command that asked.
    unsigned short m_Id = 0;
    // The class of the answer; null without one, and then m_Why says why.
    const std::type_info* m_Answer = nullptr;
    Unanswered m_Why = {};
    // From the call that asked to the reply, by a steady clock.
    std::chrono::nanoseconds m_Time{0};
};

// Sees the end of each question, for example to count answers by class. Called on the thread of the Questions.
class COMMONGROUND_API QuestionObserver
{
public:
    virtual ~QuestionObserver();
    // Called before the reply is passed on. It must not ask or destroy anything.
    virtual void onQuestionEnd(const QuestionEnd& end) = 0;
};

// The reply to a question: use std::get_if or std::visit.
template <class... Answers>
using Reply = std::variant<Answers..., Unanswered>;

namespace inner
{

class QuestionTable;
struct QuestionPlace;

// Waits for the reply to one question, or for a time. Belongs to the thread of its table.
class COMMONGROUND_API Waiter
{
public:
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

protected:
    Waiter();
    // Stops waiting. The question keeps its place, so that a later question does not get its answer.
    virtual ~Waiter();

    // Both start to wait. Later, not from within this call, one of the two functions below is called once. Throws
    // std::bad_alloc before anything was sent.
    void ask(const std::shared_ptr<QuestionTable>& table, CCommandSocket& socket, const CCmdHead& command,
             std::initializer_list<const std::type_info*> answers, std::chrono::milliseconds timeOut);
    void wait(const std::shared_ptr<QuestionTable>& table, std::chrono::milliseconds time);

private:
    friend class QuestionTable;

    // The class of the answer is that of type, and the answer may be moved from. Both functions may destroy the object.
    virtual void onAnswer(CCmdHead& answer, const std::type_info& type) = 0;
    virtual void onUnanswered(Unanswered why) = 0;

    std::shared_ptr<QuestionTable> m_Table;
    // Null while waiting for a time, and once the question has no place any more.
    QuestionPlace* m_Place = nullptr;
    // The key of the timer; number 0 for none.
    unsigned long long m_Deadline = 0;
    unsigned long long m_Number = 0;
    Unanswered m_Reason = {Unanswered::kTimedOut};
    // Of a question, if ends are reported: the id of its command, and when it was asked.
    unsigned short m_Id = 0;
    std::chrono::steady_clock::time_point m_Asked;
};

// Passes an answer to the oldest question of the socket that names its class. False if no question does.
COMMONGROUND_API bool takeAnswer(QuestionTable& table, CCommandSocket& socket, CCmdHead& answer,
                                 const std::type_info& type);
COMMONGROUND_API void reportUnasked(const CCmdHead& answer, const std::type_info& type, CCommandSocket& socket);

template <class... Types>
inline constexpr bool areDistinct = true;
template <class First, class... Rest>
inline constexpr bool areDistinct<First, Rest...> = !(std::is_same_v<First, Rest> || ...) && areDistinct<Rest...>;

template <class Command>
concept PackEnvelope = requires(Command& command)
{
    command.m_PackType;
};

template <class... Answers>
constexpr void checkAnswers()
{
    static_assert(sizeof...(Answers) > 0, "a question names the classes of its answers");
    static_assert((std::is_base_of_v<CCmdHead, Answers> && ...), "an answer is the class of a command");
    static_assert(areDistinct<Answers...>, "an answer is named once");
    static_assert((!PackEnvelope<Answers> && ...),
                  "a pack envelope is not an answer: any message that the peer sends in it would be taken for the "
                  "reply, so receive it by a PackRouter");
}

} // namespace inner

// The open questions of the sockets of one System and one analyser. A task of the System checks their time limits, and
// replies when a connection has ended; otherwise it sleeps.
//
// MATCHING: an answer belongs to the oldest question of its socket that names its class. A question that timed out or
// was cancelled keeps its place in this order, and its late answer is dropped and logged: a later question never gets
// it. So if a peer never answers a question, each later answer of that class goes to the question before its own; close
// the connection of such a peer. Pack envelopes are not accepted as answers, since peers send other messages than
// replies in them, too.
//
// LIFETIME: destroy the Tasks first; a question that is open when this object is destroyed gets no reply. The Handlers
// may be destroyed before or after. A socket may be destroyed at any time: its questions get their replies then.
//
// THREADS: all of it belongs to the thread of the System, and so do all sockets of the analyser.
class COMMONGROUND_API Questions
{
public:
    // The maximum number of open and given up questions of one connection; a further one is not sent.
    static constexpr int kPlaceLimit = 1024;

    // Starts its task in the System; call it on the thread of the System.
    Questions(Handlers& handlers, zet::System& system);
    ~Questions();
    Questions(const Questions&) = delete;
    Questions& operator=(const Questions&) = delete;

    // Installs, at start, the handlers of the classes that questions will name. An answer without a question is logged.
    // False in the cases of Handlers::on().
    template <class... Answers>
    bool expect()
    {
        inner::checkAnswers<Answers...>();
        return (expectBy<Answers>([](CCommandSocket& socket, Answers& answer)
                                  { inner::reportUnasked(answer, typeid(Answers), socket); }) &&
                ...);
    }
    // The same for one class, with a handler for the answers that no question waits for.
    template <class Answer, class Handler>
    bool expect(Handler otherwise)
    {
        inner::checkAnswers<Answer>();
        static_assert(std::is_invocable_v<Handler&, CCommandSocket&, Answer&>,
                      "the handler of expect<Answer>() takes (CCommandSocket&, Answer&)");
        return expectBy<Answer>(std::move(otherwise));
    }

    // For answers that do not come from the Handlers as commands, such as PackAnswer: questions may name the class from
    // now on. The returned callable passes an answer to the oldest question that names the class; false if none does.
    // It may outlive this object; if it returns true, the code that it called may have destroyed the caller.
    template <class Answer>
    auto addSource()
    {
        inner::checkAnswers<Answer>();
        addExpected(typeid(Answer));
        return [table = m_Table](CCommandSocket& socket, Answer& answer)
        { return inner::takeAnswer(*table, socket, answer, typeid(Answer)); };
    }

    // The number of questions that wait for their replies.
    int getOpenCount() const;
    // At start. The observer is not owned and outlives this object. It gets the end of each question that gets a reply;
    // a question that is cancelled has no end.
    void setObserver(QuestionObserver& observer);

private:
    friend class Tasks;

    template <class Answer, class Handler>
    bool expectBy(Handler otherwise)
    {
        if (!m_Handlers.on<Answer>(
                [table = m_Table, otherwise = std::move(otherwise)](CCommandSocket& socket, Answer& answer) mutable
                {
                    // If takeAnswer() is true, use nothing here after it: the code that it called may have destroyed
                    // this handler.
                    if (!inner::takeAnswer(*table, socket, answer, typeid(Answer)))
                        otherwise(socket, answer);
                }))
            return false;
        addExpected(typeid(Answer));
        return true;
    }
    void addExpected(const std::type_info& type);

    Handlers& m_Handlers;
    std::shared_ptr<inner::QuestionTable> m_Table;
};

} // namespace host
