#include "examples/arena/lesson/lesson.h"

#include "examples/arena/roles.h"
#include "examples/arena/server_role.h"
#include "framework/log.h"
#include "host/metrics.h"

#include <algorithm>

namespace arena::lesson
{

namespace
{

// The texts of refusals.
constexpr wchar_t kBadName[] = L"The name is empty or taken.";
constexpr wchar_t kNoLobby[] = L"Enter the lobby first.";
constexpr wchar_t kNoLesson[] = L"There is no such lesson that you may enter now.";
constexpr wchar_t kNotInLesson[] = L"You are not in a lesson.";
constexpr wchar_t kNotDancing[] = L"Your lesson has not started, or you are not dancing.";
constexpr wchar_t kOtherGame[] = L"This is not the game of your lesson.";

// The result and the text of a reply; none means success.
template <class Reply>
void answer(Peer& peer, Reply& reply, const wchar_t* refusal)
{
    reply.m_Byte1 = refusal ? kRefused : kGood;
    reply.m_Text1 = refusal ? refusal : L"";
    peer.send(reply);
}

void notify(const Lesson& lesson, const CCmdHead& command, const Peer* except = nullptr)
{
    for (Peer* user : lesson.m_Users)
        if (user != except)
            user->send(command);
}

} // namespace

void Peer::onEnd(const zet::EndCause& cause)
{
    CFrameworkClientSocket::onEnd(cause);
    m_Server.lose(*this);
}

Server::Server(host::Handlers& handlers)
{
    on(handlers, &Server::sync);
    on(handlers, &Server::enterLobby);
    on(handlers, &Server::getLessons);
    on(handlers, &Server::enterLesson);
    on(handlers, &Server::leaveLesson);
    on(handlers, &Server::startGame);
    on(handlers, &Server::submit);
    on(handlers, &Server::endGame);
    on(handlers, &Server::chat);
}

template <class Command>
void Server::on(host::Handlers& handlers, void (Server::*handle)(Peer&, Command&))
{
    handlers.on<Command>([this, handle](CCommandSocket& socket, Command& command)
                         { (this->*handle)(static_cast<Peer&>(socket), command); });
}

Lesson* Server::findLesson(Peer& peer)
{
    const auto found = m_Lessons.find(peer.m_Lesson);
    return found == m_Lessons.end() ? nullptr : &found->second;
}

void Server::fillValues(Peer& peer, int (&values)[CCmdMazurixEndGameReply::kValues])
{
    const Lesson* const lesson = findLesson(peer);
    values[0] = static_cast<int>(m_Lobby.size());
    values[1] = static_cast<int>(m_Lessons.size());
    values[2] = lesson ? static_cast<int>(lesson->m_Users.size()) : 0;
    values[3] = peer.m_Points;
    values[4] = peer.m_Submissions;
}

void Server::sync(Peer&, CCmdMazurixSyncLessonsRequest& command)
{
    // No command answers it. A lesson that is known keeps its users.
    for (const MazurixLessonInfo& info : command.m_MazurixLessonInfos)
        if (!info.m_Text1.isEmpty() && info.m_Word1 > 0 &&
            (m_Lessons.count(info.m_Text1) > 0 || static_cast<int>(m_Lessons.size()) < kMostLessons))
            m_Lessons[info.m_Text1].m_Info = info;
    zet::Log::message(L"%d lessons", static_cast<int>(m_Lessons.size()));
}

void Server::enterLobby(Peer& peer, CCmdMazurixEnterLobbyRequest& command)
{
    CCmdMazurixEnterLobbyReply reply;
    if (!peer.m_User.m_Text1.isEmpty() || command.m_Text1.isEmpty() || !m_Lobby.emplace(command.m_Text1, &peer).second)
        return answer(peer, reply, kBadName);
    peer.m_User.m_Text1 = command.m_Text1;
    reply.m_Text2 = m_Name;
    fillValues(peer, reply.m_Values);
    reply.m_MazurixLobbyInfo.m_Word1 = static_cast<unsigned short>(m_Lobby.size());
    reply.m_MazurixLobbyInfo.m_Text1 = m_Name;
    answer(peer, reply, nullptr);
}

void Server::getLessons(Peer& peer, CCmdMazurixGetLessonsRequest& command)
{
    CCmdMazurixGetLessonsReply reply;
    if (peer.m_User.m_Text1.isEmpty())
        return answer(peer, reply, kNoLobby);
    // The text is a teacher, or empty for all.
    for (const auto& [id, lesson] : m_Lessons)
        if (command.m_Text1.isEmpty() || command.m_Text1 == lesson.m_Info.m_Text3)
            reply.m_MazurixLessonInfos.push_back(lesson.m_Info);
    answer(peer, reply, nullptr);
}

void Server::enterLesson(Peer& peer, CCmdMazurixEnterLessonRequest& command)
{
    CCmdMazurixEnterLessonReply reply;
    const auto found = m_Lessons.find(command.m_Text1);
    if (peer.m_User.m_Text1.isEmpty())
        return answer(peer, reply, kNoLobby);
    if (found == m_Lessons.end() || found->second.m_HasStarted || findLesson(peer))
        return answer(peer, reply, kNoLesson);
    Lesson& lesson = found->second;
    peer.m_User.m_Text2 = command.m_Text2;
    peer.m_User.m_Text3 = command.m_Text3;
    peer.m_Lesson = lesson.m_Info.m_Text1;
    peer.m_Points = 0;
    peer.m_Submissions = 0;
    peer.m_HasEnded = false;
    CCmdMazurixOnUsersEnterLessonNotify present;
    for (const Peer* user : lesson.m_Users)
        present.m_MazurixUserInfos.push_back(user->m_User);
    CCmdMazurixOnUsersEnterLessonNotify entered;
    entered.m_MazurixUserInfos.push_back(peer.m_User);
    notify(lesson, entered);
    lesson.m_Users.push_back(&peer);
    reply.m_Value1 = static_cast<int>(lesson.m_Users.size());
    answer(peer, reply, nullptr);
    if (!present.m_MazurixUserInfos.empty())
        peer.send(present);
    if (reply.m_Value1 < lesson.m_Info.m_Word1)
        return;
    lesson.m_HasStarted = true;
    CCmdMazurixOnLessonStartedNotify started;
    for (const Peer* user : lesson.m_Users)
        started.m_MazurixUserInfos.push_back(user->m_User);
    notify(lesson, started);
}

void Server::startGame(Peer& peer, CCmdMazurixStartGameRequest& command)
{
    CCmdMazurixStartGameReply reply;
    const Lesson* const lesson = findLesson(peer);
    if (!lesson || !lesson->m_HasStarted || peer.m_HasEnded)
        return answer(peer, reply, kNotDancing);
    if (command.m_Text1 != peer.m_Lesson)
        return answer(peer, reply, kOtherGame);
    peer.m_IsDancing = true;
    answer(peer, reply, nullptr);
}

void Server::submit(Peer& peer, CCmdMazurixSubmitDataRequest& command)
{
    CCmdMazurixSubmitDataReply reply;
    if (!peer.m_IsDancing)
        return answer(peer, reply, kNotDancing);
    peer.m_Points += command.m_Word2;
    ++peer.m_Submissions;
    answer(peer, reply, nullptr);
}

void Server::endGame(Peer& peer, CCmdMazurixEndGameRequest& command)
{
    CCmdMazurixEndGameReply reply;
    Lesson* const lesson = findLesson(peer);
    if (!lesson || !peer.m_IsDancing)
        return answer(peer, reply, kNotDancing);
    if (command.m_Text1 != peer.m_Lesson)
        return answer(peer, reply, kOtherGame);
    peer.m_IsDancing = false;
    peer.m_HasEnded = true;
    ++lesson->m_Ended;
    lesson->m_Points += peer.m_Points;
    reply.m_Text2 = lesson->m_Info.m_Text2;
    fillValues(peer, reply.m_Values);
    answer(peer, reply, nullptr);
    endIfAllHave(*lesson);
}

void Server::endIfAllHave(Lesson& lesson)
{
    if (!lesson.m_HasStarted ||
        !std::all_of(lesson.m_Users.begin(), lesson.m_Users.end(), [](const Peer* user) { return user->m_HasEnded; }))
        return;
    notify(lesson, CCmdMazurixOnLessonEndedNotify());
    // The id, the users who have ended their games, a kind that is 0, and the points of all.
    CCmdMazurixOnDataExportedNotify exported;
    exported.m_MazurixExportInfo.m_Text1 = lesson.m_Info.m_Text1;
    exported.m_MazurixExportInfo.m_Word1 = static_cast<unsigned short>(lesson.m_Ended);
    exported.m_MazurixExportInfo.m_Word2 = static_cast<unsigned short>(std::min(lesson.m_Points, 0xFFFF));
    notify(lesson, exported);
    for (Peer* user : lesson.m_Users)
        user->m_HasEnded = false;
    lesson.m_HasStarted = false;
    lesson.m_Ended = 0;
    lesson.m_Points = 0;
}

void Server::chat(Peer& peer, CCmdMazurixSendChatRequest& command)
{
    CCmdMazurixSendChatReply reply;
    const Lesson* const lesson = findLesson(peer);
    if (!lesson)
        return answer(peer, reply, kNotInLesson);
    answer(peer, reply, nullptr);
    CCmdMazurixOnReceiveChatNotify chat;
    chat.m_Text1 = peer.m_User.m_Text1;
    chat.m_Text2 = command.m_Text1;
    notify(*lesson, chat, &peer);
}

void Server::leaveLesson(Peer& peer, CCmdMazurixLeaveLessonRequest&)
{
    CCmdMazurixLeaveLessonReply reply;
    Lesson* const lesson = findLesson(peer);
    if (!lesson)
        return answer(peer, reply, kNotInLesson);
    answer(peer, reply, nullptr);
    leave(peer, *lesson);
}

void Server::leave(Peer& peer, Lesson& lesson)
{
    std::erase(lesson.m_Users, &peer);
    peer.m_Lesson.clear();
    peer.m_IsDancing = false;
    CCmdMazurixOnUsersLeaveLessonNotify left;
    left.m_Texts.push_back(peer.m_User.m_Text1);
    notify(lesson, left);
    endIfAllHave(lesson);
}

void Server::lose(Peer& peer)
{
    if (peer.m_User.m_Text1.isEmpty())
        return;
    m_Lobby.erase(peer.m_User.m_Text1);
    Lesson* const lesson = findLesson(peer);
    if (!lesson)
        return;
    CCmdMazurixOnUserLeaveRoomNotify gone;
    gone.m_Text1 = peer.m_User.m_Text1;
    notify(*lesson, gone, &peer);
    leave(peer, *lesson);
}

} // namespace arena::lesson

namespace arena
{

int runLesson(int count, char** words)
{
    host::Service service(L"arena_lesson", "Runs dance lessons.", static_cast<unsigned char>(ServerType::Lesson));
    ServerRole role(service, ServerType::Lesson, L"lesson");
    static CCmdAnalyserSocket analyser;
    host::Handlers handlers(analyser);
    lesson::Server server(handlers);
    role.acceptGreetings(handlers);
    const zet::Unknown::Handle_T<lesson::Port> port(new lesson::Port(analyser, server));
    service.serve(*port);
    service.onStart(
        [&]
        {
            service.getMetrics().watch(analyser);
            service.getMetrics().watch("lesson", *port);
            server.setName(role.getName());
            return role.serve(*port);
        });
    return service.run(count, words);
}

} // namespace arena
