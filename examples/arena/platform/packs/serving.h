// What the handlers of all pack features share: only a logged-in player is served, and a reply says in its result text
// why a request was refused. An empty text means that it was carried out.
#pragma once

#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/session.h"
#include "host/pack_router.h"

#include <algorithm>
#include <map>
#include <type_traits>

namespace arena::platform
{

// The result texts of all features; each feature adds its own.
constexpr wchar_t kNotLoggedIn[] = L"not logged in";
constexpr wchar_t kNotSaved[] = L"not saved";
constexpr wchar_t kTooFewDiamonds[] = L"too few diamonds";
constexpr wchar_t kNotEntered[] = L"not entered";
constexpr wchar_t kEnteredBefore[] = L"entered before";

// Sets the result text: m_Msg, or the first text of a reply without it. A reply without any text keeps its numbers,
// whose defaults mean that nothing was done.
template <class Reply>
void refuse(Reply& reply, const wchar_t* why)
{
    if constexpr (requires { reply.m_Msg; })
        reply.m_Msg = why;
    else if constexpr (requires { reply.m_Text1; })
        reply.m_Text1 = why;
}

// Saves the records that a handler has changed. False, with the reply refused, if they could not be saved.
template <class Reply>
bool save(Session& session, Reply& reply)
{
    if (session.save())
        return true;
    refuse(reply, kNotSaved);
    return false;
}

// Installs the handler of a request whose messages have their numbers. work takes (Session&, const Request&, Reply&)
// and is not called for a peer that is not logged in. The reply is sent after it.
template <class Request, class Reply, class Packs, class Work>
void serve(Packs& packs, Work work)
{
    packs.template on<Request>(
        [&packs, work](CCommandSocket& socket, const Request& request, auto& envelope)
        {
            // All sockets of this analyser are sessions.
            auto& session = static_cast<Session&>(socket);
            Reply reply;
            if (session.isLoggedIn())
                work(session, request, reply);
            else
                refuse(reply, kNotLoggedIn);
            packs.reply(socket, envelope, reply);
        });
}

// The same for a request that has no reply: that of a peer that is not logged in is dropped.
template <class Request, class Packs, class Work>
void serveSilently(Packs& packs, Work work)
{
    packs.template on<Request>(
        [work](CCommandSocket& socket, const Request& request)
        {
            auto& session = static_cast<Session&>(socket);
            if (session.isLoggedIn())
                work(session, request);
        });
}

// Takes diamonds. False, with the reply refused, if the player has too few. The caller saves.
template <class Reply>
bool pay(Session& session, int price, Reply& reply)
{
    int& diamonds = diamondsOf(session.getAccount());
    if (price < 0 || diamonds < price)
    {
        refuse(reply, kTooFewDiamonds);
        return false;
    }
    diamonds -= price;
    return true;
}

// The sessions that have entered a feature, until their login ends. Holds them, so that a later session is not taken
// for an ended one; those whose login has ended leave when the next one enters.
template <class Member>
class Members
{
public:
    // False if the session has entered before.
    bool add(Session& session, const Member& member)
    {
        std::erase_if(m_Members, [](const auto& each) { return !each.second.isIn(); });
        return m_Members.try_emplace(&session, Entry{&session, session.getStored().m_Id, member}).second;
    }
    // False if it has not entered.
    bool remove(Session& session) { return find(session) && m_Members.erase(&session) > 0; }
    // Null if it has not entered.
    Member* find(Session& session)
    {
        const auto found = m_Members.find(&session);
        return found == m_Members.end() || !found->second.isIn() ? nullptr : &found->second.m_Member;
    }
    template <class Work>
    void forEach(Work work)
    {
        for (auto& [session, entry] : m_Members)
            if (entry.isIn())
                work(*session, entry.m_Member);
    }
    int getCount() const
    {
        return static_cast<int>(
            std::count_if(m_Members.begin(), m_Members.end(), [](const auto& each) { return each.second.isIn(); }));
    }

private:
    struct Entry
    {
        // Whether the account that has entered is still the one of the session.
        bool isIn() const
        {
            return m_Session->getConnectionState() == zet::TcpConnection::kEstablished &&
                   m_Session->getStored().m_Id == m_Account;
        }

        zet::Unknown::Handle_T<Session> m_Session;
        int m_Account;
        Member m_Member;
    };

    std::map<Session*, Entry> m_Members;
};

} // namespace arena::platform
