// The friends: who knows whom, what they write to each other, and what a player shows of itself. All of it is text.
//
//   a list of names     name "|" name "|" ...
//   a refused request   "!" and the reason, as the first text of the reply
#include "examples/arena/platform/friend_book.h"
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

#include <algorithm>

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr wchar_t kUnknownPlayer[] = L"!no such player";
constexpr wchar_t kOneself[] = L"!oneself";
constexpr wchar_t kFriendBefore[] = L"!a friend before";
constexpr wchar_t kNoFriend[] = L"!not a friend";
constexpr wchar_t kListFull[] = L"!the list is full";
constexpr wchar_t kNoDatabase[] = L"!the database does not answer";
constexpr wchar_t kWelcome[] = L"Welcome to the arena";

// How many messages a reply takes, and how long they are, in UTF-16 units.
constexpr size_t kMessages = kFriendMessages;
constexpr int kMessageLength = 200;

// The texts of a player, as kinds of the friend book; the last one is the first of nine.
constexpr int kPrestige = 0;
constexpr int kMoment = 1;
constexpr int kInfo = 2;
constexpr size_t kInfoTexts = 9;

Text shortened(const Text& text)
{
    return text.getSubString(0, kMessageLength);
}

const wchar_t* textOf(FriendResult result)
{
    switch (result)
    {
    case FriendResult::kDone:
        return L"";
    case FriendResult::kUnknown:
        return kUnknownPlayer;
    case FriendResult::kFull:
        return kListFull;
    case FriendResult::kBefore:
        return kFriendBefore;
    case FriendResult::kNoFriend:
        return kNoFriend;
    case FriendResult::kFailed:
        break;
    }
    return kNoDatabase;
}

// The first texts of a reply from a queue of messages.
template <class Respond>
void fill(Respond& reply, const std::deque<Text>& messages)
{
    reply.m_Text1.format(L"%d", static_cast<int>(messages.size()));
    Text* const texts[kMessages] = {&reply.m_Text2, &reply.m_Text3, &reply.m_Text4,
                                    &reply.m_Text5, &reply.m_Text6, &reply.m_Text7};
    for (size_t i = 0; i < std::min(messages.size(), kMessages); ++i)
        *texts[i] = messages[i];
}

class Friends
{
public:
    explicit Friends(Platform& platform) : m_Platform(platform) {}

    bool install(host::Handlers& handlers)
    {
        numberFriend(m_Packs);
        on<RequestFor<FriendSystemPack_SelfIdRespond>, FriendSystemPack_SelfIdRespond>(&Friends::tellId);
        on<RequestFor<FriendSystemPack_FriendListReply>, FriendSystemPack_FriendListReply>(&Friends::list);
        on<FriendSystemPack_FriendAddRequest, FriendSystemPack_FriendListReply>(&Friends::add);
        on<FriendSystemPack_FriendAddWithInfoRequest, FriendSystemPack_FriendListReply>(&Friends::addWithInfo);
        on<FriendSystemPack_FriendDeleteRequest, FriendSystemPack_FriendListReply>(&Friends::remove);
        on<FriendSystemPack_FriendLimitRequest, FriendSystemPack_FriendLimitRespond>(&Friends::tellLimit);
        on<FriendSystemPack_FriendInfoRequest, FriendSystemPack_FriendInfoRespond>(&Friends::tellInfo);
        on<FriendSystemPack_BasicFriendInfoRequest, FriendSystemPack_BasicFriendInfoRespond>(&Friends::tellBasicInfo);
        on<FriendSystemPack_FetchMsgRequest, FriendSystemPack_FetchMsgRespond>(&Friends::fetch);
        on<FriendSystemPack_FetchOfficalMsgRequest, FriendSystemPack_FetchOfficalMsgRespond>(&Friends::fetchOffical);
        onSilent<FriendSystemPack_SendMsgRequest>(&Friends::sendMessage);
        onSilent<FriendSystemPack_SelfMomentMsgRequest>(&Friends::publish);
        onSilent<FriendSystemPack_SetSelfPrestige>(&Friends::setPrestige);
        onSilent<FriendSystemPack_SetSelfVip>(&Friends::setVip);
        return m_Packs.install(handlers);
    }

private:
    template <class Request, class Reply>
    void on(void (Friends::*work)(Session&, const Request&, Reply&))
    {
        serve<Request, Reply>(m_Packs, [this, work](Session& session, const Request& request, Reply& reply)
                              { (this->*work)(session, request, reply); });
    }
    // There is no reply that could refuse a request which is not stored: the connection ends, so that the client knows.
    template <class Request>
    void onSilent(FriendResult (Friends::*work)(Session&, const Request&))
    {
        serveSilently<Request>(m_Packs,
                               [this, work](Session& session, const Request& request)
                               {
                                   if ((this->*work)(session, request) == FriendResult::kFailed)
                                       session.close();
                               });
    }
    Database& getDatabase() { return m_Platform.getAccounts().getDatabase(); }
    FriendResult store(Session& session, int kind, const Text& text)
    {
        return storeFriendTexts(getDatabase(), session.getStored().m_Id, {{kind, text}});
    }
    // The reply is the new list.
    static void answer(FriendResult result, const FriendNames& names, FriendSystemPack_FriendListReply& reply)
    {
        if (result != FriendResult::kDone)
            return refuse(reply, textOf(result));
        for (const Text& name : names)
            reply.m_Text1 += name + L"|";
    }

    void tellId(Session& session, const RequestFor<FriendSystemPack_SelfIdRespond>&,
                FriendSystemPack_SelfIdRespond& reply)
    {
        reply.m_Text1.format(L"%d", session.getStored().m_Id);
    }
    void list(Session& session, const RequestFor<FriendSystemPack_FriendListReply>&,
              FriendSystemPack_FriendListReply& reply)
    {
        FriendNames names;
        answer(readFriends(getDatabase(), session.getStored().m_Id, names), names, reply);
    }
    // m_Text2: the friend.
    void add(Session& session, const FriendSystemPack_FriendAddRequest& request,
             FriendSystemPack_FriendListReply& reply)
    {
        addWith({}, session, request.m_Text2, reply);
    }
    // The same; the texts from the fourth one on are what the player's own friends may know.
    void addWithInfo(Session& session, const FriendSystemPack_FriendAddWithInfoRequest& request,
                     FriendSystemPack_FriendListReply& reply)
    {
        const Text* const info[kInfoTexts] = {&request.m_Text4,  &request.m_Text5,  &request.m_Text6,
                                              &request.m_Text7,  &request.m_Text8,  &request.m_Text9,
                                              &request.m_Text10, &request.m_Text11, &request.m_Text12};
        FriendTexts own;
        for (size_t i = 0; i < kInfoTexts; ++i)
            own[kInfo + static_cast<int>(i)] = shortened(*info[i]);
        addWith(own, session, request.m_Text2, reply);
    }
    void addWith(const FriendTexts& own, Session& session, const Text& name, FriendSystemPack_FriendListReply& reply)
    {
        if (name == session.getStored().m_Name)
            return refuse(reply, kOneself);
        FriendNames names;
        answer(addFriend(getDatabase(), session.getStored().m_Id, name, own, names), names, reply);
    }
    void remove(Session& session, const FriendSystemPack_FriendDeleteRequest& request,
                FriendSystemPack_FriendListReply& reply)
    {
        FriendNames names;
        answer(removeFriend(getDatabase(), session.getStored().m_Id, request.m_Text2, names), names, reply);
    }
    void tellLimit(Session&, const FriendSystemPack_FriendLimitRequest&, FriendSystemPack_FriendLimitRespond& reply)
    {
        reply.m_Text1.format(L"%d", static_cast<int>(kMostFriends));
    }
    // The friend's name in the reply, or a refusal.
    template <class Reply>
    bool find(Session& session, const Text& name, int& account, FriendTexts& texts, Reply& reply)
    {
        const FriendResult result = readFriend(getDatabase(), session.getStored().m_Id, name, account, texts);
        reply.m_Text1 = result == FriendResult::kDone ? name : Text(textOf(result));
        return result == FriendResult::kDone;
    }
    // m_Text1: the friend. Name, prestige, number and latest moment.
    void tellInfo(Session& session, const FriendSystemPack_FriendInfoRequest& request,
                  FriendSystemPack_FriendInfoRespond& reply)
    {
        int account = 0;
        FriendTexts texts;
        if (!find(session, request.m_Text1, account, texts, reply))
            return;
        reply.m_Text2 = texts[kPrestige];
        reply.m_Text3.format(L"%d", account);
        reply.m_Text4 = texts[kMoment];
    }
    void tellBasicInfo(Session& session, const FriendSystemPack_BasicFriendInfoRequest& request,
                       FriendSystemPack_BasicFriendInfoRespond& reply)
    {
        int account = 0;
        FriendTexts texts;
        if (!find(session, request.m_Text1, account, texts, reply))
            return;
        Text* const info[kInfoTexts] = {&reply.m_Text2, &reply.m_Text3, &reply.m_Text4, &reply.m_Text5, &reply.m_Text6,
                                        &reply.m_Text7, &reply.m_Text8, &reply.m_Text9, &reply.m_Text10};
        for (size_t i = 0; i < kInfoTexts; ++i)
            *info[i] = texts[kInfo + static_cast<int>(i)];
    }
    void fetch(Session& session, const FriendSystemPack_FetchMsgRequest&, FriendSystemPack_FetchMsgRespond& reply)
    {
        std::deque<Text> messages;
        const FriendResult result = takeMessages(getDatabase(), session.getStored().m_Id, messages);
        if (result != FriendResult::kDone)
            return refuse(reply, textOf(result));
        fill(reply, messages);
    }
    void fetchOffical(Session&, const FriendSystemPack_FetchOfficalMsgRequest&,
                      FriendSystemPack_FetchOfficalMsgRespond& reply)
    {
        fill(reply, {kWelcome});
    }
    // m_Text1: to whom; m_Text2: what. A message to one who is not a friend is dropped, as there is no reply to refuse
    // it in. The receiver gets it at once if it is at this platform, and finds it later in any case.
    FriendResult sendMessage(Session& session, const FriendSystemPack_SendMsgRequest& request)
    {
        FriendSystemPack_MsgPush push;
        push.m_Text1 = session.getStored().m_Name + L"|" + shortened(request.m_Text2);
        const FriendResult result =
            sendToFriend(getDatabase(), session.getStored().m_Id, request.m_Text1, push.m_Text1);
        Session* const receiver = result == FriendResult::kDone ? m_Platform.findSession(request.m_Text1) : nullptr;
        if (receiver)
            m_Packs.send(*receiver, push);
        return result;
    }
    FriendResult publish(Session& session, const FriendSystemPack_SelfMomentMsgRequest& request)
    {
        return store(session, kMoment, shortened(request.m_Text2));
    }
    FriendResult setPrestige(Session& session, const FriendSystemPack_SetSelfPrestige& request)
    {
        return store(session, kPrestige, shortened(request.m_Text1));
    }
    // The VIP level is that of the account's record; a player cannot set it.
    FriendResult setVip(Session& session, const FriendSystemPack_SetSelfVip&)
    {
        Text level;
        level.format(L"%d", session.getAccount().m_GlobalData.m_VIPLevel);
        return store(session, kInfo, level);
    }

    Platform& m_Platform;
    FriendPacks m_Packs;
};

} // namespace

Feature serveFriends(Platform& platform)
{
    auto friends = std::make_shared<Friends>(platform);
    return friends->install(platform.getHandlers()) ? friends : nullptr;
}

} // namespace arena::platform
