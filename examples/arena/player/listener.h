// What a scripted player receives, and waiting for it.
#pragma once

#include "examples/arena/player/groups.h"
#include "examples/arena/player/players.h"
#include "transport/framework_client_socket.h"

#include <map>
#include <string>

namespace arena::player
{

class ListenerSocket;

// In UTF-8.
std::string textOf(const host::Unanswered& unanswered);

// Counts the commands that arrive without a question, by their classes, and notes them.
class Listener
{
public:
    static constexpr std::chrono::milliseconds kPatience{10000};

    // The place is not owned; null for a script that each player plays alone.
    explicit Listener(Player& player, Place* place = nullptr) : m_Player(player), m_Place(place) {}
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void note(const std::string& line) { m_Player.note("%s", line.c_str()); }
    void fail(const std::string& line) { m_Player.fail("%s", line.c_str()); }

    void received(const char* kind);
    int getCount(const char* kind) const;
    // Waiting for that many commands of a kind begins with beginWait(); isWaiting() is false when they are there. Fails
    // after kPatience. False at once if the script is interrupted.
    void beginWait();
    bool isWaiting(const char* kind, int count = 1);
    // Notes a question and its reply by their classes. True for the first of the answers.
    template <class Reply>
    bool isFirst(const char* question, const Reply& reply, std::initializer_list<const char*> names);
    // Fails unless the condition holds.
    void expect(bool condition, const char* what)
    {
        if (!condition)
            fail(what);
    }
    // The server has closed this connection, or it is lost: the script is interrupted for the whole group.
    virtual void onLost(const ListenerSocket& socket);

    Player& m_Player;
    Place* const m_Place;

protected:
    ~Listener() = default;

private:
    std::map<std::string, int> m_Received;
    unsigned int m_WaitStart = 0;
};

// A connection of a listener, which outlives it. All sockets of the scripts' analysers are of this class.
class ListenerSocket : public CFrameworkClientSocket
{
public:
    ListenerSocket(CCmdAnalyserSocket& analyser, Listener& listener)
        : CFrameworkClientSocket(&analyser), m_Listener(listener)
    {
    }
    // Started and connecting. Null where it is refused at once; then the script is interrupted for the whole group.
    static zet::Unknown::Handle_T<ListenerSocket> open(CCmdAnalyserSocket& analyser, Listener& listener,
                                                       const HostPort& server);
    // Closes it, and takes it out of its System.
    static void end(zet::Unknown::Handle_T<ListenerSocket>& socket);
    void onEnd(const zet::EndCause& cause) override;

    Listener& m_Listener;

private:
    bool m_IsEnding = false;
};

inline Listener& listenerOf(CCommandSocket& socket)
{
    return static_cast<ListenerSocket&>(socket).m_Listener;
}

// What the scripts of a topic share in this process: made by install(), and destroyed after the players.
template <class Client>
class Shared
{
public:
    void install(Players& players)
    {
        m_Client = std::make_unique<Client>(players.getSystem());
        players.watch(m_Client->m_Questions);
    }
    static Client& of(Player& player) { return *player.getPlayers().template share<Shared>().m_Client; }

private:
    std::unique_ptr<Client> m_Client;
};

// Counts the commands of a class.
template <class Command>
void count(host::Handlers& handlers, const char* kind)
{
    handlers.on<Command>([kind](CCommandSocket& socket, Command&) { listenerOf(socket).received(kind); });
}

// The same for the class of a script's listener, and keeps what the callable takes from the commands.
template <class Command, class Own, class Keep>
void count(host::Handlers& handlers, const char* kind, Keep keep)
{
    handlers.on<Command>(
        [kind, keep](CCommandSocket& socket, Command& command)
        {
            keep(static_cast<Own&>(listenerOf(socket)), command);
            listenerOf(socket).received(kind);
        });
}

template <class Reply>
bool Listener::isFirst(const char* question, const Reply& reply, std::initializer_list<const char*> names)
{
    if (const auto* const unanswered = std::get_if<host::Unanswered>(&reply))
    {
        fail(std::string(question) + ": " + textOf(*unanswered));
        return false;
    }
    note(std::string(question) + " -> " + names.begin()[reply.index()]);
    return reply.index() == 0;
}

} // namespace arena::player
