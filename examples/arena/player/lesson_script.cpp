#include "examples/arena/player/lesson_script.h"

#include "examples/arena/lesson/lesson.h"
#include "examples/arena/player/listener.h"

namespace arena::player
{

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kStep = 5ms;
constexpr std::chrono::milliseconds kPatience = Listener::kPatience;
constexpr int kSubmissions = 3;
constexpr int kPoints = 7;

struct LessonOptions
{
    HostPort m_Server;
    zet::String_T<wchar_t> m_Lesson;
    zet::String_T<wchar_t> m_Teacher;
    // The users of the lesson. The first one brings the list of lessons.
    int m_Users = 1;
    int m_Number = 0;
    // The last user's connection ends during the lesson.
    bool m_LeavesEarly = false;
};

// What the users of a process share.
class LessonClient
{
public:
    explicit LessonClient(zet::System& system);

    CCmdAnalyserSocket m_Analyser;
    Groups m_Groups;

private:
    host::Handlers m_Handlers;

public:
    host::Questions m_Questions;
};

class LessonUser : public Listener
{
public:
    LessonUser(Player& player, Place& place, const LessonOptions& options)
        : Listener(player, &place), m_Options(options), m_Client(Shared<LessonClient>::of(player)),
          m_Tasks(m_Client.m_Questions)
    {
    }
    ~LessonUser() { ListenerSocket::end(m_Socket); }

    // Notes whether the reply is good, and fails if it should not be as it is. The first part is the question's name.
    template <class Reply>
    void expectReply(const char* question, const char* name, const Reply& reply, lesson::Result result)
    {
        if (!isFirst(question, reply, {name}))
            return;
        note(std::string(name) + (result == lesson::kGood ? ": good" : ": refused"));
        expect(std::get<0>(reply).m_Byte1 == result, name);
        expect(std::get<0>(reply).m_Text1.isEmpty() == (result == lesson::kGood), "a reason with each refusal");
    }

    const LessonOptions m_Options;
    LessonClient& m_Client;
    zet::Unknown::Handle_T<ListenerSocket> m_Socket;
    MazurixExportInfo m_Exported;
    int m_Dancers = 0;
    // Last, so that it is destroyed first.
    host::Tasks m_Tasks;
};

LessonClient::LessonClient(zet::System& system) : m_Handlers(m_Analyser), m_Questions(m_Handlers, system)
{
    m_Questions.expect<CCmdMazurixEnterLobbyReply, CCmdMazurixGetLessonsReply, CCmdMazurixEnterLessonReply,
                       CCmdMazurixLeaveLessonReply, CCmdMazurixStartGameReply, CCmdMazurixSubmitDataReply,
                       CCmdMazurixEndGameReply, CCmdMazurixSendChatReply>();
    count<CCmdMazurixOnUsersEnterLessonNotify>(m_Handlers, "CCmdMazurixOnUsersEnterLessonNotify");
    count<CCmdMazurixOnUsersLeaveLessonNotify>(m_Handlers, "CCmdMazurixOnUsersLeaveLessonNotify");
    count<CCmdMazurixOnLessonStartedNotify, LessonUser>(
        m_Handlers, "CCmdMazurixOnLessonStartedNotify",
        [](LessonUser& user, CCmdMazurixOnLessonStartedNotify& started)
        { user.m_Dancers = static_cast<int>(started.m_MazurixUserInfos.size()); });
    count<CCmdMazurixOnLessonEndedNotify>(m_Handlers, "CCmdMazurixOnLessonEndedNotify");
    count<CCmdMazurixOnDataExportedNotify, LessonUser>(m_Handlers, "CCmdMazurixOnDataExportedNotify",
                                                       [](LessonUser& user, CCmdMazurixOnDataExportedNotify& exported)
                                                       { user.m_Exported = exported.m_MazurixExportInfo; });
    count<CCmdMazurixOnUserLeaveRoomNotify>(m_Handlers, "CCmdMazurixOnUserLeaveRoomNotify");
    count<CCmdMazurixOnReceiveChatNotify>(m_Handlers, "CCmdMazurixOnReceiveChatNotify");
}

// In the lobby, until the lesson is entered.
host::Task enter(LessonUser& user, bool& isIn)
{
    CCommandSocket& socket = *user.m_Socket;
    const CCmdMazurixGetLessonsRequest askLessons;
    const auto early = co_await host::ask<CCmdMazurixGetLessonsReply>(socket, askLessons, kPatience);
    user.expectReply("CCmdMazurixGetLessonsRequest", "CCmdMazurixGetLessonsReply", early, lesson::kRefused);
    CCmdMazurixEnterLobbyRequest lobby;
    lobby.m_Text1 = user.m_Player.getName();
    for (const lesson::Result result : {lesson::kGood, lesson::kRefused})
    {
        const auto entered = co_await host::ask<CCmdMazurixEnterLobbyReply>(socket, lobby, kPatience);
        user.expectReply("CCmdMazurixEnterLobbyRequest", "CCmdMazurixEnterLobbyReply", entered, result);
    }
    if (user.m_Options.m_Number == 0)
    {
        CCmdMazurixSyncLessonsRequest sync;
        sync.m_MazurixLessonInfos.resize(2);
        sync.m_MazurixLessonInfos[0].m_Text1 = user.m_Options.m_Lesson;
        sync.m_MazurixLessonInfos[0].m_Text3 = user.m_Options.m_Teacher;
        sync.m_MazurixLessonInfos[0].m_Word1 = static_cast<unsigned short>(user.m_Options.m_Users);
        sync.m_MazurixLessonInfos[1] = sync.m_MazurixLessonInfos[0];
        sync.m_MazurixLessonInfos[1].m_Text1 = L"another lesson";
        sync.m_MazurixLessonInfos[1].m_Text3 = L"another teacher";
        socket.send(sync);
    }
    // The others wait for it.
    CCmdMazurixGetLessonsRequest ofTeacher;
    ofTeacher.m_Text1 = user.m_Options.m_Teacher;
    bool isThere = false;
    for (auto left = kPatience; left > 0ms && !isThere && !user.m_Player.isInterrupted(); left -= 20ms)
    {
        const auto lessons = co_await host::ask<CCmdMazurixGetLessonsReply>(socket, ofTeacher, kPatience);
        const auto* const list = std::get_if<CCmdMazurixGetLessonsReply>(&lessons);
        isThere = list && list->m_MazurixLessonInfos.size() == 1;
        if (!isThere)
            co_await host::sleep(20ms);
    }
    user.expect(isThere, "the lesson in the list");
    CCmdMazurixEnterLessonRequest enter;
    enter.m_Text1 = L"no such lesson";
    const auto wrong = co_await host::ask<CCmdMazurixEnterLessonReply>(socket, enter, kPatience);
    user.expectReply("CCmdMazurixEnterLessonRequest", "CCmdMazurixEnterLessonReply", wrong, lesson::kRefused);
    enter.m_Text1 = user.m_Options.m_Lesson;
    enter.m_Text2 = user.m_Player.getName();
    const auto entered = co_await host::ask<CCmdMazurixEnterLessonReply>(socket, enter, kPatience);
    user.expectReply("CCmdMazurixEnterLessonRequest", "CCmdMazurixEnterLessonReply", entered, lesson::kGood);
    isIn = std::get_if<CCmdMazurixEnterLessonReply>(&entered) != nullptr;
}

// In the lesson, until all have ended.
host::Task dance(LessonUser& user, bool leavesEarly)
{
    CCommandSocket& socket = *user.m_Socket;
    const LessonOptions& options = user.m_Options;
    user.beginWait();
    while (user.isWaiting("CCmdMazurixOnLessonStartedNotify"))
        co_await host::sleep(kStep);
    user.expect(user.m_Dancers == options.m_Users, "all users of the lesson");
    CCmdMazurixSubmitDataRequest data;
    data.m_Word2 = kPoints;
    const auto early = co_await host::ask<CCmdMazurixSubmitDataReply>(socket, data, kPatience);
    user.expectReply("CCmdMazurixSubmitDataRequest", "CCmdMazurixSubmitDataReply", early, lesson::kRefused);
    CCmdMazurixSendChatRequest chat;
    chat.m_Text1 = L"hello";
    const auto said = co_await host::ask<CCmdMazurixSendChatReply>(socket, chat, kPatience);
    user.expectReply("CCmdMazurixSendChatRequest", "CCmdMazurixSendChatReply", said, lesson::kGood);
    user.beginWait();
    while (user.isWaiting("CCmdMazurixOnReceiveChatNotify", options.m_Users - 1))
        co_await host::sleep(kStep);
    CCmdMazurixStartGameRequest start;
    start.m_Text1 = L"another lesson";
    const auto other = co_await host::ask<CCmdMazurixStartGameReply>(socket, start, kPatience);
    user.expectReply("CCmdMazurixStartGameRequest", "CCmdMazurixStartGameReply", other, lesson::kRefused);
    start.m_Text1 = options.m_Lesson;
    const auto started = co_await host::ask<CCmdMazurixStartGameReply>(socket, start, kPatience);
    user.expectReply("CCmdMazurixStartGameRequest", "CCmdMazurixStartGameReply", started, lesson::kGood);
    if (leavesEarly)
        co_return;
    for (int i = 0; i < kSubmissions; ++i)
    {
        data.m_Word1 = static_cast<unsigned short>(i);
        const auto taken = co_await host::ask<CCmdMazurixSubmitDataReply>(socket, data, kPatience);
        user.expectReply("CCmdMazurixSubmitDataRequest", "CCmdMazurixSubmitDataReply", taken, lesson::kGood);
    }
    CCmdMazurixEndGameRequest end;
    end.m_Text1 = options.m_Lesson;
    const auto ended = co_await host::ask<CCmdMazurixEndGameReply>(socket, end, kPatience);
    user.expectReply("CCmdMazurixEndGameRequest", "CCmdMazurixEndGameReply", ended, lesson::kGood);
    if (const auto* const reply = std::get_if<CCmdMazurixEndGameReply>(&ended))
        user.expect(reply->m_Values[3] == kSubmissions * kPoints && reply->m_Values[4] == kSubmissions, "own points");
    user.beginWait();
    while (user.isWaiting("CCmdMazurixOnLessonEndedNotify") || user.isWaiting("CCmdMazurixOnDataExportedNotify"))
        co_await host::sleep(kStep);
    const int remaining = options.m_Users - (options.m_LeavesEarly ? 1 : 0);
    user.expect(user.m_Exported.m_Word1 == remaining && user.m_Exported.m_Word2 == remaining * kSubmissions * kPoints,
                "the points of all");
    // The first one leaves, the second time in vain; the others leave with their connections.
    if (options.m_Number > 0)
        co_return;
    const CCmdMazurixLeaveLessonRequest leave;
    for (const lesson::Result result : {lesson::kGood, lesson::kRefused})
    {
        const auto left = co_await host::ask<CCmdMazurixLeaveLessonReply>(socket, leave, kPatience);
        user.expectReply("CCmdMazurixLeaveLessonRequest", "CCmdMazurixLeaveLessonReply", left, result);
    }
}

host::Task takePart(LessonUser& user)
{
    const LessonOptions& options = user.m_Options;
    const auto isBusy = [&user] { return user.m_Tasks.getCount() > 1; };
    user.m_Socket = ListenerSocket::open(user.m_Client.m_Analyser, user, options.m_Server);
    if (!user.m_Socket)
        co_return;
    bool isIn = false;
    user.m_Tasks.start(enter(user, isIn));
    while (isBusy())
        co_await host::sleep(kStep);
    if (!isIn)
        co_return;
    user.m_Tasks.start(dance(user, options.m_LeavesEarly && options.m_Number == options.m_Users - 1));
    while (isBusy())
        co_await host::sleep(kStep);
    // The others stay until the first one has left.
    user.beginWait();
    while (options.m_Number > 0 && !options.m_LeavesEarly && user.isWaiting("CCmdMazurixOnUsersLeaveLessonNotify"))
        co_await host::sleep(kStep);
}

} // namespace

bool installLesson(Players& players)
{
    players.share<Shared<LessonClient>>().install(players);
    return true;
}

host::Task playLesson(Player& player)
{
    const PlayerOptions& all = player.getPlayers().getOptions();
    Place place(player, Shared<LessonClient>::of(player).m_Groups);
    while (place.isWaiting())
        co_await host::sleep(kStep);
    const zet::String_T<wchar_t>& first = place.getGroup().m_Names.front();
    LessonOptions options;
    options.m_Server = all.m_Servers.at("lesson");
    options.m_Lesson = L"waltz of " + first;
    options.m_Teacher = L"teacher of " + first;
    options.m_Users = place.getSize();
    options.m_Number = place.getNumber();
    options.m_LeavesEarly = all.m_IsUntilLost;
    LessonUser user(player, place, options);
    user.m_Tasks.start(takePart(user));
    while (user.m_Tasks.getCount() > 0)
        co_await host::sleep(kStep);
}

} // namespace arena::player
