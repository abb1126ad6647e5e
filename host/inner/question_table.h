// The questions of a Questions and the times that its Tasks wait for.
#pragma once

#include "framework/system.h"
#include "host/questions.h"
#include "net/inner/end_watcher.h"

#include <list>
#include <map>
#include <typeindex>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace host::inner
{

// The place of a question in the order of its connection. Without a waiter the question was given up, and the place
// takes its late answer.
struct QuestionPlace
{
    Waiter* m_Waiter;
    std::vector<std::type_index> m_Answers;
};

// Ticked by its System. Handlers and waiters hold it, so it may outlive its Questions; then it is closed.
class QuestionTable final : public zet::System::Task,
                            public std::enable_shared_from_this<QuestionTable>,
                            private zet::inner::EndWatcher
{
public:
    void addExpected(const std::type_info& type) { m_Expected.insert(type); }
    void ask(Waiter& waiter, CCommandSocket& socket, const CCmdHead& command,
             std::initializer_list<const std::type_info*> answers, std::chrono::milliseconds timeOut);
    void wait(Waiter& waiter, std::chrono::milliseconds time);
    void withdraw(Waiter& waiter) noexcept;
    bool takeAnswer(CCommandSocket& socket, CCmdHead& answer, const std::type_info& type);
    int getOpenCount() const;
    // Leaves the System and forgets all waiters.
    void closeTable();

    void onTick(unsigned int tick) override;
    const wchar_t* getClassName() const override { return L"host::Questions"; }

    // Null for none.
    QuestionObserver* m_Observer = nullptr;

private:
    // The places of one connection, in the order in which the questions were asked.
    struct Conversation
    {
        CCommandSocket* m_Socket;
        zet::EndCause m_Cause;
        std::list<QuestionPlace> m_Places;
    };
    using Conversations = std::list<Conversation>;

    void onWatchedEnd(const zet::ConnectionEvents& connection, zet::EndCause cause) noexcept override;
    Conversation& conversationOf(CCommandSocket& socket);
    bool sendAsPlaced(Waiter& waiter, CCommandSocket& socket, const CCmdHead& command,
                      std::initializer_list<const std::type_info*> answers);
    bool areExpected(std::initializer_list<const std::type_info*> answers) const;
    void dropIfEmpty(Conversation& conversation);

    // Answer is null without one.
    void reportEnd(const Waiter& waiter, const std::type_info* answer, Unanswered why) noexcept;
    unsigned long long now();
    void addTimer(Waiter& waiter, std::chrono::milliseconds time);
    void removeTimer(Waiter& waiter) noexcept;
    // The waiter gets the reason in the next tick.
    void fail(Waiter& waiter, Unanswered reason);
    void replyToEnded();
    void replyToDue();
    void setNextTick();
    void wakeUp();

    // The questions of open connections; of ended connections; and of ended connections whose replies are being made.
    Conversations m_Conversations;
    Conversations m_Ended;
    Conversations m_Ending;
    std::unordered_map<const zet::ConnectionEvents*, Conversations::iterator> m_BySocket;
    // By deadline, in milliseconds of m_Now, and by number.
    std::map<std::pair<unsigned long long, unsigned long long>, Waiter*> m_Timers;
    unsigned long long m_LastNumber = 0;
    // The time in milliseconds, which does not wrap, and the value of the clock when it was set.
    unsigned long long m_Now = 0;
    unsigned int m_LastTick = 0;
    std::unordered_set<std::type_index> m_Expected;
    bool m_IsClosed = false;
    bool m_Sleeps = false;
};

} // namespace host::inner
