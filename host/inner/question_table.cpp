#include "host/inner/question_table.h"

#include "framework/inner/guard.h"
#include "framework/log.h"
#include "framework/peer_log.h"
#include "framework/platform/class_name.h"
#include "framework/string_helper.h"
#include "framework/time.h"

#include <algorithm>
#include <new>

namespace host::inner
{

namespace
{

using zet::TcpConnection;
namespace platform = zet::platform;

// Milliseconds that the table sleeps without questions; it wakes when there is one.
constexpr unsigned long long kIdle = 24 * 60 * 60 * 1000;
// The longest time to wait, a year.
constexpr std::chrono::milliseconds kLongest = std::chrono::hours(24 * 366);

bool isDown(const CCommandSocket& socket)
{
    const TcpConnection::ConnectionState state = socket.getConnectionState();
    return state != TcpConnection::kConnecting && state != TcpConnection::kEstablished;
}

// An exception from the host's code affects only this reply.
template <class Call>
void guarded(Call call) noexcept
{
    zet::inner::guardCall(call,
                          [](const char* what)
                          {
                              if (what)
                                  zet::Log::error(L"Exception in a callback: %s", zet::StringHelper::utf8ToWide(what));
                              else
                                  zet::Log::error(L"Unknown exception in a callback");
                          });
}

} // namespace

QuestionTable::Conversation& QuestionTable::conversationOf(CCommandSocket& socket)
{
    if (const auto found = m_BySocket.find(&socket); found != m_BySocket.end())
        return *found->second;
    Conversations made;
    made.push_back({&socket, {}, {}});
    const auto at = m_BySocket.emplace(&socket, made.begin()).first;
    try
    {
        watch(socket);
    }
    catch (const std::bad_alloc&)
    {
        m_BySocket.erase(at);
        throw;
    }
    m_Conversations.splice(m_Conversations.end(), made);
    return m_Conversations.back();
}

void QuestionTable::onWatchedEnd(const zet::ConnectionEvents& connection, zet::EndCause cause) noexcept
{
    const auto found = m_BySocket.find(&connection);
    if (found == m_BySocket.end())
        return;
    // The replies are made in the next tick; until then the object may be destroyed.
    const Conversations::iterator ended = found->second;
    m_BySocket.erase(found);
    ended->m_Cause = cause;
    m_Ended.splice(m_Ended.end(), m_Conversations, ended);
    wakeUp();
}

void QuestionTable::dropIfEmpty(Conversation& conversation)
{
    const auto found = m_BySocket.find(conversation.m_Socket);
    if (!conversation.m_Places.empty() || found == m_BySocket.end() || &*found->second != &conversation)
        return;
    unwatch(*conversation.m_Socket);
    m_Conversations.erase(found->second);
    m_BySocket.erase(found);
}

bool QuestionTable::areExpected(std::initializer_list<const std::type_info*> answers) const
{
    for (const std::type_info* const answer : answers)
        if (!m_Expected.contains(*answer))
        {
            zet::Log::error(L"Question not sent: Questions does not expect %s", platform::getClassName(*answer));
            return false;
        }
    return true;
}

void QuestionTable::ask(Waiter& waiter, CCommandSocket& socket, const CCmdHead& command,
                        std::initializer_list<const std::type_info*> answers, std::chrono::milliseconds timeOut)
{
    if (m_IsClosed)
    {
        zet::Log::error(L"Question not sent: its Questions was destroyed");
        return;
    }
    addTimer(waiter, timeOut);
    if (m_Observer)
    {
        waiter.m_Id = command.GetID();
        waiter.m_Asked = std::chrono::steady_clock::now();
    }
    if (isDown(socket))
        fail(waiter, {Unanswered::kEnded, socket.getEndCause()});
    else if (!areExpected(answers) || !sendAsPlaced(waiter, socket, command, answers))
        fail(waiter, {Unanswered::kNotSent});
    wakeUp();
}

// A command that was sent must have a place. One that was not sent must not have one, since no answer would ever take
// it.
bool QuestionTable::sendAsPlaced(Waiter& waiter, CCommandSocket& socket, const CCmdHead& command,
                                 std::initializer_list<const std::type_info*> answers)
{
    Conversation& conversation = conversationOf(socket);
    if (conversation.m_Places.size() >= static_cast<size_t>(Questions::kPlaceLimit))
    {
        zet::Log::error(L"Question not sent: %d wait for their answers (%s)", Questions::kPlaceLimit,
                        socket.getPeerName());
        return false;
    }
    // Add the place before the send and remove it if nothing was sent; neither allocates.
    std::list<QuestionPlace> place;
    place.push_back({&waiter, {}});
    for (const std::type_info* const answer : answers)
        place.front().m_Answers.emplace_back(*answer);
    const zet::Unknown::Handle_T<CCommandSocket> keep = socket.getRefCount() > 0 ? &socket : nullptr;
    const auto at = place.begin();
    conversation.m_Places.splice(conversation.m_Places.end(), place);
    bool isSent = false;
    const auto send = [&] { isSent = socket.send(command); };
    guarded(send);
    if (isSent)
        waiter.m_Place = &*at;
    else
        conversation.m_Places.erase(at);
    dropIfEmpty(conversation);
    return isSent;
}

void QuestionTable::wait(Waiter& waiter, std::chrono::milliseconds time)
{
    if (m_IsClosed)
    {
        zet::Log::error(L"No wait: its Questions was destroyed");
        return;
    }
    addTimer(waiter, time);
    wakeUp();
}

void QuestionTable::withdraw(Waiter& waiter) noexcept
{
    removeTimer(waiter);
    if (QuestionPlace* const place = std::exchange(waiter.m_Place, nullptr))
        place->m_Waiter = nullptr;
}

bool QuestionTable::takeAnswer(CCommandSocket& socket, CCmdHead& answer, const std::type_info& type)
{
    const auto found = m_BySocket.find(&socket);
    // The questions of an ended connection get their replies in the next tick.
    if (found == m_BySocket.end())
        return false;
    Conversation& conversation = *found->second;
    const auto place = std::find_if(conversation.m_Places.begin(), conversation.m_Places.end(),
                                    [&type](const QuestionPlace& each) {
                                        return std::find(each.m_Answers.begin(), each.m_Answers.end(),
                                                         std::type_index(type)) != each.m_Answers.end();
                                    });
    if (place == conversation.m_Places.end())
        return false;
    // Hold the table and the socket: the waiter may release both. Not shared_from_this(): the loader would have to look
    // up its exception.
    const std::shared_ptr<QuestionTable> keepTable = weak_from_this().lock();
    const zet::Unknown::Handle_T<CCommandSocket> keepSocket = socket.getRefCount() > 0 ? &socket : nullptr;
    Waiter* const waiter = place->m_Waiter;
    conversation.m_Places.erase(place);
    dropIfEmpty(conversation);
    if (waiter)
    {
        waiter->m_Place = nullptr;
        removeTimer(*waiter);
        reportEnd(*waiter, &type, {});
        guarded([&] { waiter->onAnswer(answer, type); });
    }
    else if (zet::PeerLog::takesLine())
        zet::Log::warning(L"%s (0x%04x) dropped: its question was given up (%s)", platform::getClassName(type),
                          answer.GetID(), socket.getPeerName());
    return true;
}

int QuestionTable::getOpenCount() const
{
    size_t count = 0;
    for (const Conversations* const all : {&m_Conversations, &m_Ended, &m_Ending})
        for (const Conversation& conversation : *all)
            count += static_cast<size_t>(std::count_if(conversation.m_Places.begin(), conversation.m_Places.end(),
                                                       [](const QuestionPlace& place) { return place.m_Waiter; }));
    return static_cast<int>(count);
}

void QuestionTable::closeTable()
{
    m_IsClosed = true;
    m_Observer = nullptr;
    stop();
    for (const auto& timer : m_Timers)
        timer.second->m_Number = 0;
    m_Timers.clear();
    m_BySocket.clear();
    for (const Conversation& conversation : m_Conversations)
        unwatch(*conversation.m_Socket);
    Conversations all;
    for (Conversations* const some : {&m_Conversations, &m_Ended, &m_Ending})
        all.splice(all.end(), *some);
    for (Conversation& conversation : all)
        for (QuestionPlace& place : conversation.m_Places)
            if (Waiter* const waiter = std::exchange(place.m_Waiter, nullptr))
                waiter->m_Place = nullptr;
}

void QuestionTable::onTick(unsigned int)
{
    // Handlers may release the table.
    const std::shared_ptr<QuestionTable> keep = weak_from_this().lock();
    m_Sleeps = false;
    now();
    replyToEnded();
    replyToDue();
    setNextTick();
}

void QuestionTable::replyToEnded()
{
    // Connections that end during these calls have their turn in the next tick.
    m_Ending.splice(m_Ending.end(), m_Ended);
    while (!m_Ending.empty())
    {
        std::list<QuestionPlace>& places = m_Ending.front().m_Places;
        if (places.empty())
        {
            Conversations dropped;
            dropped.splice(dropped.end(), m_Ending, m_Ending.begin());
            continue;
        }
        Waiter* const waiter = places.front().m_Waiter;
        const Unanswered why{Unanswered::kEnded, m_Ending.front().m_Cause};
        places.pop_front();
        if (!waiter)
            continue;
        waiter->m_Place = nullptr;
        removeTimer(*waiter);
        reportEnd(*waiter, nullptr, why);
        guarded([&] { waiter->onUnanswered(why); });
    }
}

void QuestionTable::replyToDue()
{
    // Timers that are set during these calls have their turn in the next tick. Otherwise callbacks that set new ones
    // would never let this tick end.
    const unsigned long long last = m_LastNumber;
    const unsigned long long moment = m_Now;
    while (!m_Timers.empty())
    {
        const auto first = m_Timers.begin();
        if (first->first.first > moment || first->first.second > last)
            return;
        Waiter* const waiter = first->second;
        removeTimer(*waiter);
        if (QuestionPlace* const place = std::exchange(waiter->m_Place, nullptr))
            place->m_Waiter = nullptr;
        reportEnd(*waiter, nullptr, waiter->m_Reason);
        guarded([waiter] { waiter->onUnanswered(waiter->m_Reason); });
    }
}

void QuestionTable::reportEnd(const Waiter& waiter, const std::type_info* answer, Unanswered why) noexcept
{
    // One that waits for a time has no id.
    if (!m_Observer || waiter.m_Id == 0)
        return;
    const QuestionEnd end{waiter.m_Id, answer, why, std::chrono::steady_clock::now() - waiter.m_Asked};
    guarded([&] { m_Observer->onQuestionEnd(end); });
}

unsigned long long QuestionTable::now()
{
    const unsigned int tick = zet::getTimeTick();
    // If the clock was set back, the time does not change.
    if (const int passed = static_cast<int>(tick - m_LastTick); passed > 0)
        m_Now += static_cast<unsigned int>(passed);
    m_LastTick = tick;
    return m_Now;
}

void QuestionTable::addTimer(Waiter& waiter, std::chrono::milliseconds time)
{
    const auto left = std::clamp(time, std::chrono::milliseconds(0), kLongest);
    const unsigned long long deadline = now() + static_cast<unsigned long long>(left.count());
    m_Timers.emplace(std::pair(deadline, m_LastNumber + 1), &waiter);
    waiter.m_Deadline = deadline;
    waiter.m_Number = ++m_LastNumber;
    waiter.m_Reason = {Unanswered::kTimedOut};
}

void QuestionTable::removeTimer(Waiter& waiter) noexcept
{
    if (waiter.m_Number != 0)
        m_Timers.erase({waiter.m_Deadline, std::exchange(waiter.m_Number, 0)});
}

// Changes the present timer, since a new one would need memory.
void QuestionTable::fail(Waiter& waiter, Unanswered reason)
{
    auto timer = m_Timers.extract({waiter.m_Deadline, waiter.m_Number});
    waiter.m_Deadline = m_Now;
    waiter.m_Reason = reason;
    timer.key().first = waiter.m_Deadline;
    m_Timers.insert(std::move(timer));
}

void QuestionTable::setNextTick()
{
    if (!getSystem())
        return;
    // They get their replies in the next tick.
    if (!m_Ended.empty())
        return getSystem()->tickBy(m_LastTick + zet::System::kTickInterval);
    unsigned long long left = kIdle;
    if (!m_Timers.empty())
    {
        const unsigned long long deadline = m_Timers.begin()->first.first;
        left = deadline > m_Now ? std::min(kIdle, deadline - m_Now) : 0;
    }
    sleep(static_cast<unsigned int>(left));
    m_Sleeps = true;
}

void QuestionTable::wakeUp()
{
    if (std::exchange(m_Sleeps, false))
        waken();
}

} // namespace host::inner
