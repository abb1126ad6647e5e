// Logins: all variants end in enter(), which counts the login in the database and delivers the records.
#include "commands/login.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/database.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/platform_codes.h"
#include "examples/arena/text.h"
#include "framework/log.h"

namespace arena::platform
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

constexpr int kNameLimit = 32;
constexpr int kPasswordLimit = 128;

void refuse(Session& session, Result result, const wchar_t* reason)
{
    CCmdLoginFail fail;
    fail.m_Text1 = reason;
    fail.m_Value1 = result;
    session.send(fail);
}

// Letters, digits, '-' and '_': the text forms of records, logs and addresses use the other characters.
bool isName(const Text& name)
{
    for (const wchar_t c : name.view())
        if (!((c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'-' ||
              c == L'_'))
            return false;
    return !name.isEmpty() && name.getLength() <= kNameLimit;
}

std::string newTicket(zet::Uuid& id)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    zet::uuid_create(id);
    unsigned char bytes[sizeof id];
    std::memcpy(bytes, &id, sizeof id);
    std::string ticket;
    for (const unsigned char byte : bytes)
    {
        ticket += kDigits[byte >> 4];
        ticket += kDigits[byte & 15];
    }
    return ticket;
}

} // namespace

bool logIn(Platform& platform, Session& session, int id, zet::Uuid& ticket)
{
    const std::string text = newTicket(ticket);
    StoredAccount account;
    if (!platform.getAccounts().logIn(id, platform.getOwner(), text, account))
        return false;
    Session* const older = platform.findSession(account.m_Name);
    if (older && older != &session)
        older->kickOut();
    session.begin(account);
    session.m_TicketId = ticket;
    CAccount& records = session.getAccount();
    records.m_GlobalData.CheckVIP(records.m_Account);
    records.m_GlobalData.AddLastServerID(session.m_ChosenServer);
    if (!session.save())
    {
        session.end();
        return false;
    }
    zet::Log::message(L"%s is logged in", account.m_Name);
    return true;
}

void takeClientFields(const AccountData& from, AccountData& to)
{
    // A longer one would make every later answer with the account unreadable.
    if (from.m_AccountNote.getLength() <= kTextLimit)
        to.m_AccountNote = from.m_AccountNote;
    to.AddNewbieFlag(from.m_NewbieFlag);
    to.m_Flag = from.m_Flag;
}

namespace
{

// The fields that CCmdLoginSuccess and CCmdHpwdLoginSuccess share.
template <class Success>
void fill(Success& success, Session& session, const zet::Uuid& ticket)
{
    const CAccount& records = session.getAccount();
    success.m_Id1 = ticket;
    success.m_GlobalData = records.m_GlobalData;
    success.m_LingYuanGouData = records.m_LingYuanGouData;
    copyAccount(records.m_Account, success.m_Account);
    success.m_GameShop = getShop();
}

void replyToTicket(Session& session, const zet::Uuid& ticket)
{
    CCmdHpwdLoginSuccess success;
    fill(success, session, ticket);
    success.m_Text1 = session.getStored().m_Name;
    success.m_Text2 = fromUtf8(session.getStored().m_Ticket);
    session.send(success);
}

void enter(Platform& platform, Session& session, int id)
{
    zet::Uuid ticket;
    if (!logIn(platform, session, id, ticket))
        return refuse(session, kNotSaved, L"the database does not answer");
    CCmdLoginSuccess success;
    fill(success, session, ticket);
    session.send(success);
}

// An account that exists, by name and password.
void enterByPassword(Platform& platform, Session& session, const Text& name, const Text& password)
{
    if (session.m_IsBusy)
        return refuse(session, kBusy, L"a login is under way");
    StoredAccount account;
    const bool isKnown = isName(name) && platform.getAccounts().find(name, account);
    if (!isKnown && isName(name) && platform.hasFailed())
        return refuse(session, kNotSaved, L"the database does not answer");
    // A name that is not known takes as long as a wrong password, so that names cannot be found out by the time.
    session.m_IsBusy = platform.getPasswords().check(
        password, account.m_Password,
        [&platform, number = session.getNumber(), id = account.m_Id, isKnown](bool isRight)
        {
            Session* const waiting = platform.findSession(number);
            if (!waiting)
                return;
            waiting->m_IsBusy = false;
            if (isRight)
                enter(platform, *waiting, id);
            else
                refuse(*waiting, isKnown ? kWrongPassword : kUnknownAccount, L"the name or the password is wrong");
        });
    if (!session.m_IsBusy)
        refuse(session, kBusy, L"too many logins");
}

// A new account with a name and a password, and the login to it. An account that exists is entered.
void enterOrRegister(Platform& platform, Session& session, const Text& name, const Text& password)
{
    StoredAccount account;
    if (!isName(name) || password.isEmpty() || password.getLength() > kPasswordLimit)
        return refuse(session, kBadName, L"a name has 1 to 32 letters, digits, - and _, and needs a password");
    if (platform.getAccounts().find(name, account))
        return enterByPassword(platform, session, name, password);
    if (platform.hasFailed())
        return refuse(session, kNotSaved, L"the database does not answer");
    if (session.m_IsBusy)
        return refuse(session, kBusy, L"a login is under way");
    session.m_IsBusy = platform.getPasswords().hash(
        password,
        [&platform, number = session.getNumber(), name](const std::string& hash)
        {
            Session* const waiting = platform.findSession(number);
            if (!waiting)
                return;
            waiting->m_IsBusy = false;
            const zet::Unknown::Handle_T<CAccount> records = makeRecords();
            if (hash.empty() || !platform.getAccounts().create(name, hash, nullptr, L"", *records))
                return hash.empty() || platform.hasFailed() ? refuse(*waiting, kNotSaved, L"the account was not saved")
                                                            : refuse(*waiting, kTaken, L"the name was taken meanwhile");
            enter(platform, *waiting, records->m_Account.m_AccountId);
        });
    if (!session.m_IsBusy)
        refuse(session, kBusy, L"too many logins");
}

// An account that is known by an identity instead of a password, made at its first login. Its name is that of the kind
// and a random number.
void enterByIdentity(Platform& platform, Session& session, const char* kind, const Text& value)
{
    if (value.isEmpty() || value.getLength() > kPasswordLimit)
        return refuse(session, kBadName, L"the identity is missing");
    StoredAccount account;
    if (platform.getAccounts().findByIdentity(kind, value, account))
        return enter(platform, session, account.m_Id);
    zet::Uuid id;
    zet::uuid_create(id);
    const Text name = fromUtf8(kind) + L"-" + zet::formatText(L"%08x", id.m_Data1);
    const zet::Unknown::Handle_T<CAccount> records = makeRecords();
    if (!platform.getAccounts().create(name, "", kind, value, *records))
        return refuse(session, kNotSaved, L"the account could not be made");
    enter(platform, session, records->m_Account.m_AccountId);
}

// The second form of a login: by the ticket of the last one, such as after a lost connection.
void resume(Platform& platform, Session& session, const Text& ticket)
{
    StoredAccount account;
    zet::Uuid renewed;
    if (!platform.getAccounts().findByTicket(toUtf8(ticket), account) ||
        !logIn(platform, session, account.m_Id, renewed))
    {
        CCmdHpwdLoginCancel cancel;
        cancel.m_Text1 = !ticket.isEmpty() && platform.hasFailed() ? L"the database does not answer"
                                                                   : L"the ticket is not valid any more";
        session.send(cancel);
        return;
    }
    replyToTicket(session, renewed);
}

// Whether the ticket is that of this connection's login.
void check(Session& session, const CCmdLoginCheck& question)
{
    if (session.isLoggedIn() && toUtf8(question.m_Text1) == session.getStored().m_Ticket)
        return replyToTicket(session, session.m_TicketId);
    CCmdHpwdLoginCancel cancel;
    cancel.m_Text1 = L"the ticket is not that of a login";
    session.send(cancel);
}

} // namespace

void installLogins(Platform& platform)
{
    platform.on<CCmdLogin>([&platform](Session& session, const CCmdLogin& login)
                           { enterByPassword(platform, session, login.m_Text1, login.m_Text2); });
    platform.on<CCmdBaseLogin>(
        [&platform](Session& session, const CCmdBaseLogin& login)
        { enterOrRegister(platform, session, login.m_Texts[kLoginName], login.m_Texts[kLoginPassword]); });
    platform.on<CCmdGuestLogin>(
        [&platform](Session& session, const CCmdGuestLogin& login)
        { enterByIdentity(platform, session, identity::kDevice, login.m_Texts[kLoginDevice]); });
    platform.on<CCmdMacLogin>([&platform](Session& session, const CCmdMacLogin& login)
                              { enterByIdentity(platform, session, identity::kMac, login.m_Texts[kLoginDevice]); });
    // m_Text1: the phone, m_Text2: the code of the text message.
    platform.on<CCmdMobileLogin>(
        [&platform](Session& session, const CCmdMobileLogin& login)
        {
            if (login.m_Text2 != getPhoneCode(login.m_Text1))
                return refuse(session, kWrongCode, L"the code is wrong");
            enterByIdentity(platform, session, identity::kPhone, login.m_Text1);
        });
    // m_Text1: the outside account, m_Value1: its service; the service's token in the place of the password.
    platform.on<CCmdThirdAccountLogin>(
        [&platform](Session& session, const CCmdThirdAccountLogin& login)
        {
            if (login.m_Texts[kLoginPassword] != getOutsideToken(login.m_Text1))
                return refuse(session, kWrongCode, L"the token is wrong");
            enterByIdentity(platform, session, identity::kOutside, getOutsideIdentity(login.m_Value1, login.m_Text1));
        });
    // m_Text1: the outside account, m_Text2: the service's token.
    platform.on<CCmdWechatdAccountLogin>(
        [&platform](Session& session, const CCmdWechatdAccountLogin& login)
        {
            if (login.m_Text2 != getOutsideToken(login.m_Text1))
                return refuse(session, kWrongCode, L"the token is wrong");
            enterByIdentity(platform, session, identity::kWechat, login.m_Text1);
        });
    platform.on<CCmdLoginHPWD>([&platform](Session& session, const CCmdLoginHPWD& login)
                               { resume(platform, session, login.m_Text1); });
    platform.on<CCmdLoginCheck>([](Session& session, const CCmdLoginCheck& question) { check(session, question); });
    platform.on<CCmdLoginStateRequest>(
        [](Session& session, const CCmdLoginStateRequest&)
        {
            CCmdLoginStateReply reply;
            reply.m_Value1 = session.isLoggedIn() ? kIn : kOut;
            session.send(reply);
        });
    platform.on<CCmdLogout>(
        [&platform](Session& session, const CCmdLogout& logout)
        {
            if (!session.isLoggedIn())
                return;
            takeClientFields(logout.m_Account, session.getAccount().m_Account);
            // A logout has no answer. If another platform was first, its records stay.
            if (session.save())
                platform.getAccounts().logOut(session.getStored());
            session.end();
        });
}

} // namespace arena::platform
