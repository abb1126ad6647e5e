// A player's end of the pack features: the routers of all features, and what the scripts share.
#pragma once

#include "examples/arena/player/pack_account.h"
#include "examples/arena/protocol/pack_numbers.h"
#include "host/pack_questions.h"

#include <string>
#include <typeinfo>

namespace arena::player
{

class Players;

// How long a script waits for a reply.
constexpr std::chrono::seconds kPatience{10};

// The routers that the players of a process share. Each message that is sent or received is in the transcript.
class PackClient
{
public:
    // At start. False, and logged, if a router was refused.
    bool install(Players& players);

    // Notes a message that is being sent, and returns it.
    template <class Message>
    const Message& sent(PackAccount& player, const Message& message)
    {
        note(player, "sends", typeid(Message).name());
        return message;
    }
    // Returns the message of a reply, and notes it. A reply without a message returns null, and the player fails.
    template <class Message>
    const Message* received(PackAccount& player, const host::Reply<host::PackAnswer<Message>>& reply)
    {
        if (const auto* const answer = std::get_if<host::PackAnswer<Message>>(&reply))
        {
            note(player, "receives", typeid(Message).name());
            return &answer->m_Message;
        }
        player.fail("no %s: %ls", getClassName(typeid(Message).name()).c_str(),
                    std::get<host::Unanswered>(reply).getText());
        return nullptr;
    }

    HomePacks m_Home;
    TravelPacks m_Travel;
    FriendPacks m_Friends;
    AchievementPacks m_Achievements;
    ChangingRoomPacks m_ChangingRoom;
    InPurchasePacks m_InPurchase;
    WizardPacks m_Wizard;
    WorldSquarePacks m_WorldSquare;
    VoidDataPacks m_VoidData;
    MatchPacks m_Match;
    ProfilingPacks m_Profiling;
    QueryToolPacks m_QueryTool;
    SocialPacks m_Social;

private:
    // For each router: its numbers, and the replies that questions may name.
    bool installMatch(host::Handlers& handlers, host::Questions& questions);
    bool installTools(host::Handlers& handlers, host::Questions& questions);
    // Expects a message that also comes without a request; then it is only noted.
    template <class Message, class Packs>
    bool expectPush(Packs& packs, host::Questions& questions)
    {
        return host::expectPack<Message>(packs, questions,
                                         [this](CCommandSocket&, host::PackAnswer<Message>&)
                                         { notePush(typeid(Message).name()); });
    }
    // The name of a class outside namespaces, which GCC and Clang put after its length. For a RequestFor, the class of
    // the reply follows.
    static std::string getClassName(const char* encoded);
    static void note(PackAccount& player, const char* what, const char* encoded);
    void notePush(const char* encoded) const;

    bool m_IsVerbose = false;
};

// What a script expects: the player fails with the text if it is not met.
inline void expect(PackAccount& player, bool isMet, const char* text)
{
    if (!isMet)
        player.fail("%s", text);
}
// That a request was carried out, or was refused. The result is in the transcript.
void expectDone(PackAccount& player, const zet::String_T<wchar_t>& result, const char* what);
void expectRefused(PackAccount& player, const zet::String_T<wchar_t>& result, const char* what);

// One question of a script that goes on without waiting for its reply.
template <class Reply, class Packs, class Request, class Check>
host::Task askOnce(PackAccount& player, PackClient& packs, Packs& router, Request request, bool isRefused,
                   const char* what, Check check)
{
    const auto reply =
        co_await host::askPack<Reply>(router, player.getSocket(), packs.sent(player, request), kPatience);
    const auto* const answer = packs.received(player, reply);
    if (!answer)
        co_return;
    const zet::String_T<wchar_t>* result = nullptr;
    if constexpr (requires { answer->m_Msg; })
        result = &answer->m_Msg;
    else if constexpr (requires { answer->m_Text1; })
        result = &answer->m_Text1;
    if (isRefused && result)
        expectRefused(player, *result, what);
    else if (isRefused)
        player.note("refused: %s", what);
    else if (result)
        expectDone(player, *result, what);
    expect(player, check(*answer), what);
}

// The questions of a script about one feature. They are sent in the order of the calls and served in that order; the
// replies are checked when they come.
template <class Packs>
class PackTalk
{
public:
    PackTalk(PackAccount& player, PackClient& packs, Packs& router) : m_Player(player), m_Packs(packs), m_Router(router)
    {
    }

    // A request that is carried out. check gets the reply.
    template <class Reply, class Request, class Check>
    void done(const Request& request, const char* what, Check check)
    {
        m_Player.getTasks().start(askOnce<Reply>(m_Player, m_Packs, m_Router, request, false, what, check));
    }
    template <class Reply, class Request>
    void done(const Request& request, const char* what)
    {
        done<Reply>(request, what, [](const Reply&) { return true; });
    }
    // A request that is refused: the reply says why, or check finds that nothing was done.
    template <class Reply, class Request, class Check>
    void refused(const Request& request, const char* what, Check check)
    {
        m_Player.getTasks().start(askOnce<Reply>(m_Player, m_Packs, m_Router, request, true, what, check));
    }
    template <class Reply, class Request>
    void refused(const Request& request, const char* what)
    {
        refused<Reply>(request, what, [](const Reply&) { return true; });
    }
    // A request that has no reply.
    template <class Request>
    void send(const Request& request)
    {
        expect(m_Player, m_Router.send(m_Player.getSocket(), m_Packs.sent(m_Player, request)), "a message is sent");
    }

private:
    PackAccount& m_Player;
    PackClient& m_Packs;
    Packs& m_Router;
};

} // namespace arena::player
