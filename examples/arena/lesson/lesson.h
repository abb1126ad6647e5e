// A dance-lesson service: a lobby, lessons, and the users who dance in them.
#pragma once

#include "commands/lesson.h"
#include "host/handlers.h"
#include "transport/framework_server_socket.h"

#include <map>
#include <vector>

namespace arena::lesson
{

// The first byte of each reply. The text says why.
enum Result : unsigned char
{
    kGood = 0,
    kRefused = 1
};

// MazurixLessonInfo: m_Text1 is the id, m_Text2 the title, m_Text3 the teacher, m_Text4 the room, m_Text5 the date;
// m_Word1 the number of users with which the lesson starts.
// CCmdMazurixSubmitDataRequest: the position in the lesson, a kind of movement, and its points.
// The seven values of a reply: users online, lessons, users of the own lesson, own points, own submissions; then 0.

class Server;

class Peer : public CFrameworkClientSocket
{
public:
    Peer(CCmdAnalyserSocket& analyser, Server& server) : CFrameworkClientSocket(&analyser), m_Server(server) {}
    void onEnd(const zet::EndCause& cause) override;

    // The user once it is in the lobby: the name, a nickname and a look.
    MazurixUserInfo m_User;
    // The id of the lesson that it is in.
    zet::String_T<wchar_t> m_Lesson;
    int m_Points = 0;
    int m_Submissions = 0;
    bool m_IsDancing = false;
    bool m_HasEnded = false;

private:
    Server& m_Server;
};

class Port : public CFrameworkServerSocket
{
public:
    Port(CCmdAnalyserSocket& analyser, Server& server)
        : CFrameworkServerSocket(L"", 0), m_Analyser(analyser), m_Server(server)
    {
    }
    void onAccept() override { accept(zet::Unknown::Handle_T<Peer>(new Peer(m_Analyser, m_Server))); }

private:
    CCmdAnalyserSocket& m_Analyser;
    Server& m_Server;
};

struct Lesson
{
    MazurixLessonInfo m_Info;
    std::vector<Peer*> m_Users;
    bool m_HasStarted = false;
    // Of the users who have ended their games.
    int m_Ended = 0;
    int m_Points = 0;
};

class Server
{
public:
    static constexpr int kMostLessons = 1000;

    // The handlers are not owned.
    explicit Server(host::Handlers& handlers);

    void setName(const zet::String_T<wchar_t>& name) { m_Name = name; }
    void lose(Peer& peer);

private:
    template <class Command>
    void on(host::Handlers& handlers, void (Server::*handle)(Peer&, Command&));
    void sync(Peer& peer, CCmdMazurixSyncLessonsRequest& command);
    void enterLobby(Peer& peer, CCmdMazurixEnterLobbyRequest& command);
    void getLessons(Peer& peer, CCmdMazurixGetLessonsRequest& command);
    void enterLesson(Peer& peer, CCmdMazurixEnterLessonRequest& command);
    void leaveLesson(Peer& peer, CCmdMazurixLeaveLessonRequest& command);
    void startGame(Peer& peer, CCmdMazurixStartGameRequest& command);
    void submit(Peer& peer, CCmdMazurixSubmitDataRequest& command);
    void endGame(Peer& peer, CCmdMazurixEndGameRequest& command);
    void chat(Peer& peer, CCmdMazurixSendChatRequest& command);

    // The lesson that the peer is in; null for none.
    Lesson* findLesson(Peer& peer);
    void leave(Peer& peer, Lesson& lesson);
    // Ends the lesson once all who are in it have ended their games; it can be danced again then.
    void endIfAllHave(Lesson& lesson);
    void fillValues(Peer& peer, int (&values)[CCmdMazurixEndGameReply::kValues]);

    zet::String_T<wchar_t> m_Name;
    std::map<zet::String_T<wchar_t>, Peer*> m_Lobby;
    std::map<zet::String_T<wchar_t>, Lesson> m_Lessons;
};

} // namespace arena::lesson
