// Letters between players, kept until their receivers ask for them, and short messages between players who are there.
#include "commands/mail.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/text.h"
#include "framework/time.h"

namespace arena::platform
{

namespace
{

using Text = zet::String_T<wchar_t>;

constexpr int kSubjectLimit = 100;
constexpr int kMessageLimit = 200;
// The longest ones fit into one command.
constexpr int kLetters = 16;
constexpr int kMessageKind = 1;

bool store(Platform& platform, int receiver, const Text& from, int kind, const Text& title, const Text& words)
{
    return platform.getAccounts().getDatabase().transact(
        [&](soci::session& sql)
        {
            const std::string sender = toUtf8(from);
            const std::string subject = toUtf8(title);
            const std::string body = toUtf8(words);
            const std::string sent = toUtf8(zet::Time::getCurrent().convertToString(true));
            sql << "INSERT INTO letters (receiver, sender, kind, subject, body, sent, seen) VALUES (:receiver, "
                   ":sender, :kind, :subject, :body, :sent, 0)",
                soci::use(receiver), soci::use(sender), soci::use(kind), soci::use(subject), soci::use(body),
                soci::use(sent);
            return true;
        });
}

// m_Text1: the receiver, m_Text3: the subject, m_Text4: the letter. The sender is the player, whatever m_Text2 says.
const wchar_t* send(Platform& platform, Session& session, const CLetter& letter)
{
    StoredAccount receiver;
    if (!session.isLoggedIn())
        return L"no player is logged in";
    if (letter.m_Text3.getLength() > kSubjectLimit || letter.m_Text4.getLength() > kTextLimit)
        return L"the letter is too long";
    if (!platform.getAccounts().find(letter.m_Text1, receiver))
        return platform.hasFailed() ? L"the letter was not saved" : L"there is no such player";
    return store(platform, receiver.m_Id, session.getStored().m_Name, letter.m_LetterType, letter.m_Text3,
                 letter.m_Text4)
               ? L""
               : L"the letter was not saved";
}

// m_Value1: only letters with a greater number. What is delivered counts as read from then on.
void receive(Platform& platform, Session& session, const CCmdMailReceiveRequest& request)
{
    CCmdMailReceiveReply reply;
    if (!session.isLoggedIn())
    {
        reply.m_Text1 = L"no player is logged in";
        session.send(reply);
        return;
    }
    const int id = session.getStored().m_Id;
    const bool isDone = platform.getAccounts().getDatabase().transact(
        [&](soci::session& sql)
        {
            const soci::rowset<soci::row> rows =
                (sql.prepare << "SELECT id, kind, sender, subject, body, sent, seen FROM letters WHERE receiver = "
                                ":receiver AND id > :after ORDER BY id LIMIT "
                             << kLetters,
                 soci::use(id), soci::use(request.m_Value1));
            int last = 0;
            for (const soci::row& row : rows)
            {
                CLetter letter;
                letter.m_LetterId = last = row.get<int>(0);
                letter.m_LetterType = row.get<int>(1);
                letter.m_Text1 = session.getStored().m_Name;
                letter.m_Text2 = fromUtf8(row.get<std::string>(2));
                letter.m_Text3 = fromUtf8(row.get<std::string>(3));
                letter.m_Text4 = fromUtf8(row.get<std::string>(4));
                letter.m_Text5 = fromUtf8(row.get<std::string>(5));
                letter.m_Read = row.get<int>(6) != 0;
                reply.m_Letters.push_back(letter);
            }
            sql << "UPDATE letters SET seen = 1 WHERE receiver = :receiver AND id > :after AND id <= :last",
                soci::use(id), soci::use(request.m_Value1), soci::use(last);
            return true;
        });
    if (!isDone)
    {
        reply.m_Letters.clear();
        reply.m_Text1 = L"the database does not answer";
    }
    session.send(reply);
}

// m_Text1: the receiver, m_Text3: the words. A player who is not at this platform gets them as a letter.
void message(Platform& platform, Session& session, const CCmdMessageSend& request)
{
    if (!session.isLoggedIn() || request.m_Text3.getLength() > kMessageLimit)
        return;
    const Text& from = session.getStored().m_Name;
    if (Session* const receiver = platform.findSession(request.m_Text1))
    {
        CCmdMessageRecv received;
        received.m_Value1 = request.m_Value1;
        received.m_Text1 = request.m_Text1;
        received.m_Text2 = from;
        received.m_Text3 = request.m_Text3;
        receiver->send(received);
        return;
    }
    StoredAccount receiver;
    if (platform.getAccounts().find(request.m_Text1, receiver))
        store(platform, receiver.m_Id, from, kMessageKind, L"", request.m_Text3);
}

} // namespace

void installMail(Platform& platform)
{
    platform.on<CCmdMailSendRequest>(
        [&platform](Session& session, const CCmdMailSendRequest& request)
        {
            CCmdMailSendReply reply;
            reply.m_Text1 = send(platform, session, request.m_Letter);
            session.send(reply);
        });
    platform.on<CCmdMailReceiveRequest>([&platform](Session& session, const CCmdMailReceiveRequest& request)
                                        { receive(platform, session, request); });
    platform.on<CCmdMessageSend>([&platform](Session& session, const CCmdMessageSend& request)
                                 { message(platform, session, request); });
}

} // namespace arena::platform
