// The friends: who knows whom, what they write to each other, and what a player shows of itself. All of it is text.
//
//   a list of names     name "|" name "|" ...
//   a refused request   "!" and the reason, as the first text of the reply
//
// The friend service keeps its data in memory: they end with the process.
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

#include <algorithm>
#include <deque>
#include <set>

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
constexpr wchar_t kWelcome[] = L"Welcome to the arena";

// Their names with separators fit into one text.
constexpr size_t kMostFriends = 15;
// How many messages a player finds, and how long they are, in UTF-16 units.
constexpr size_t kMessages = 6;
constexpr int kMessageLength = 200;
constexpr size_t kInfoTexts = 9;

struct Profile
{
    int m_Id = 0;
    Text m_Prestige;
    Text m_Moment;
    Text m_Info[kInfoTexts];
    std::set<Text> m_Friends;
    // The latest ones last.
    std::deque<Text> m_Messages;
};

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
    void on(void (Friends::*work)(Profile&, const Text&, const Request&, Reply&))
    {
        serve<Request, Reply>(m_Packs,
                              [this, work](Session& session, const Request& request, Reply& reply)
                              {
                                  const Text& name = session.getAccount().m_Account.m_AccountName;
                                  (this->*work)(profileOf(session), name, request, reply);
                              });
    }
    template <class Request>
    void onSilent(void (Friends::*work)(Session&, Profile&, const Request&))
    {
        serveSilently<Request>(m_Packs, [this, work](Session& session, const Request& request)
                               { (this->*work)(session, profileOf(session), request); });
    }
    // A player has a profile from the first request on.
    Profile& profileOf(Session& session)
    {
        const AccountData& account = session.getAccount().m_Account;
        Profile& profile = m_Profiles[account.m_AccountName];
        profile.m_Id = account.m_AccountId;
        return profile;
    }

    void tellId(Profile& self, const Text&, const RequestFor<FriendSystemPack_SelfIdRespond>&,
                FriendSystemPack_SelfIdRespond& reply)
    {
        reply.m_Text1.format(L"%d", self.m_Id);
    }
    static void writeList(const Profile& self, Text& list)
    {
        for (const Text& name : self.m_Friends)
            list += name + L"|";
    }
    void list(Profile& self, const Text&, const RequestFor<FriendSystemPack_FriendListReply>&,
              FriendSystemPack_FriendListReply& reply)
    {
        writeList(self, reply.m_Text1);
    }
    // m_Text2: the friend. The reply is the new list.
    void add(Profile& self, const Text& name, const FriendSystemPack_FriendAddRequest& request,
             FriendSystemPack_FriendListReply& reply)
    {
        if (request.m_Text2 == name)
            return refuse(reply, kOneself);
        if (m_Profiles.count(request.m_Text2) == 0)
            return refuse(reply, kUnknownPlayer);
        if (self.m_Friends.size() >= kMostFriends)
            return refuse(reply, kListFull);
        if (!self.m_Friends.insert(request.m_Text2).second)
            return refuse(reply, kFriendBefore);
        writeList(self, reply.m_Text1);
    }
    // The same; the texts from the fourth one on are what the player's own friends may know.
    void addWithInfo(Profile& self, const Text& name, const FriendSystemPack_FriendAddWithInfoRequest& request,
                     FriendSystemPack_FriendListReply& reply)
    {
        FriendSystemPack_FriendAddRequest plain;
        plain.m_Text2 = request.m_Text2;
        const size_t before = self.m_Friends.size();
        add(self, name, plain, reply);
        if (self.m_Friends.size() == before)
            return;
        const Text* const info[kInfoTexts] = {&request.m_Text4,  &request.m_Text5,  &request.m_Text6,
                                              &request.m_Text7,  &request.m_Text8,  &request.m_Text9,
                                              &request.m_Text10, &request.m_Text11, &request.m_Text12};
        for (size_t i = 0; i < kInfoTexts; ++i)
            self.m_Info[i] = info[i]->getSubString(0, kMessageLength);
    }
    void remove(Profile& self, const Text&, const FriendSystemPack_FriendDeleteRequest& request,
                FriendSystemPack_FriendListReply& reply)
    {
        if (self.m_Friends.erase(request.m_Text2) == 0)
            return refuse(reply, kNoFriend);
        writeList(self, reply.m_Text1);
    }
    void tellLimit(Profile&, const Text&, const FriendSystemPack_FriendLimitRequest&,
                   FriendSystemPack_FriendLimitRespond& reply)
    {
        reply.m_Text1.format(L"%d", static_cast<int>(kMostFriends));
    }
    // m_Text1: the friend. Name, prestige, number and latest moment.
    void tellInfo(Profile& self, const Text&, const FriendSystemPack_FriendInfoRequest& request,
                  FriendSystemPack_FriendInfoRespond& reply)
    {
        if (self.m_Friends.count(request.m_Text1) == 0)
            return refuse(reply, kNoFriend);
        const Profile& other = m_Profiles[request.m_Text1];
        reply.m_Text1 = request.m_Text1;
        reply.m_Text2 = other.m_Prestige;
        reply.m_Text3.format(L"%d", other.m_Id);
        reply.m_Text4 = other.m_Moment;
    }
    void tellBasicInfo(Profile& self, const Text&, const FriendSystemPack_BasicFriendInfoRequest& request,
                       FriendSystemPack_BasicFriendInfoRespond& reply)
    {
        if (self.m_Friends.count(request.m_Text1) == 0)
            return refuse(reply, kNoFriend);
        const Profile& other = m_Profiles[request.m_Text1];
        reply.m_Text1 = request.m_Text1;
        Text* const info[kInfoTexts] = {&reply.m_Text2, &reply.m_Text3, &reply.m_Text4, &reply.m_Text5, &reply.m_Text6,
                                        &reply.m_Text7, &reply.m_Text8, &reply.m_Text9, &reply.m_Text10};
        for (size_t i = 0; i < kInfoTexts; ++i)
            *info[i] = other.m_Info[i];
    }
    void fetch(Profile& self, const Text&, const FriendSystemPack_FetchMsgRequest&,
               FriendSystemPack_FetchMsgRespond& reply)
    {
        fill(reply, self.m_Messages);
        self.m_Messages.clear();
    }
    void fetchOffical(Profile&, const Text&, const FriendSystemPack_FetchOfficalMsgRequest&,
                      FriendSystemPack_FetchOfficalMsgRespond& reply)
    {
        fill(reply, {kWelcome});
    }
    // m_Text1: to whom; m_Text2: what. A message to one who is not a friend is dropped, as there is no reply to refuse
    // it in. The receiver gets it at once if it is here, and finds it later in any case.
    void sendMessage(Session& session, Profile& self, const FriendSystemPack_SendMsgRequest& request)
    {
        if (self.m_Friends.count(request.m_Text1) == 0)
            return;
        std::deque<Text>& messages = m_Profiles[request.m_Text1].m_Messages;
        if (messages.size() == kMessages)
            messages.pop_front();
        messages.push_back(session.getAccount().m_Account.m_AccountName + L"|" +
                           request.m_Text2.getSubString(0, kMessageLength));
        if (Session* const receiver = m_Platform.findSession(request.m_Text1))
        {
            FriendSystemPack_MsgPush push;
            push.m_Text1 = messages.back();
            m_Packs.send(*receiver, push);
        }
    }
    void publish(Session&, Profile& self, const FriendSystemPack_SelfMomentMsgRequest& request)
    {
        self.m_Moment = request.m_Text2.getSubString(0, kMessageLength);
    }
    void setPrestige(Session&, Profile& self, const FriendSystemPack_SetSelfPrestige& request)
    {
        self.m_Prestige = request.m_Text1.getSubString(0, kMessageLength);
    }
    // The VIP level is that of the account's record; a player cannot set it.
    void setVip(Session& session, Profile& self, const FriendSystemPack_SetSelfVip&)
    {
        self.m_Info[0].format(L"%d", session.getAccount().m_GlobalData.m_VIPLevel);
    }

    Platform& m_Platform;
    FriendPacks m_Packs;
    std::map<Text, Profile> m_Profiles;
};

} // namespace

Feature serveFriends(Platform& platform)
{
    auto friends = std::make_shared<Friends>(platform);
    return friends->install(platform.getHandlers()) ? friends : nullptr;
}

} // namespace arena::platform
