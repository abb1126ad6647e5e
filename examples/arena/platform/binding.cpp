// Phones and outside accounts of a player, passwords, switching and fetching accounts.
#include "commands/account_access.h"
#include "commands/account_binding.h"
#include "examples/arena/platform/catalogue.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/platform_codes.h"

namespace arena::platform
{

namespace
{

using namespace protocol;
using Text = zet::String_T<wchar_t>;

constexpr int kIdentityLimit = 128;

template <class Fail>
void refuse(Session& session, Result result, const wchar_t* reason)
{
    Fail fail;
    fail.m_Text1 = reason;
    fail.m_Value1 = result;
    session.send(fail);
}

// m_Text1: the phone, m_Text2: the code of the text message.
void bindPhone(Platform& platform, Session& session, const CCmdBindPhone& request)
{
    const Text& phone = request.m_Text1;
    if (!session.isLoggedIn())
        return refuse<CCmdBindPhoneFail>(session, kNotLoggedIn, L"no player is logged in");
    if (phone.isEmpty() || phone.getLength() > kIdentityLimit || request.m_Text2 != getPhoneCode(phone))
        return refuse<CCmdBindPhoneFail>(session, kWrongCode, L"the code is wrong");
    if (!platform.getAccounts().bind(identity::kPhone, phone, session.getStored().m_Id))
        return platform.hasFailed()
                   ? refuse<CCmdBindPhoneFail>(session, kNotSaved, L"the phone was not saved")
                   : refuse<CCmdBindPhoneFail>(session, kTaken, L"the phone or the account is bound already");
    CCmdBindPhoneSuccess success;
    success.m_Text1 = phone;
    success.m_Text2 = session.getStored().m_Name;
    success.m_Flag1 = true;
    success.m_GlobalData = session.getAccount().m_GlobalData;
    session.send(success);
}

// An account without a password and without another identity could not be entered any more.
Result unbind(Platform& platform, Session& session, const char* kind)
{
    if (!session.isLoggedIn())
        return kNotLoggedIn;
    if (session.getStored().m_Password.empty())
        return kNotAllowed;
    if (platform.getAccounts().unbind(kind, session.getStored().m_Id))
        return kDone;
    return platform.hasFailed() ? kNotSaved : kUnknownThing;
}

const wchar_t* wordsOf(Result result)
{
    switch (result)
    {
    case kDone:
        return L"";
    case kNotLoggedIn:
        return L"no player is logged in";
    case kNotAllowed:
        return L"the account needs a password first";
    case kNotSaved:
        return L"the change was not saved";
    default:
        return L"nothing is bound";
    }
}

// Logged-in players may ask whether a phone is free; the account that has it is not told to others.
void queryPhone(Platform& platform, Session& session, const CCmdQueryPhoneRequest& request)
{
    CCmdQueryPhoneReply reply;
    StoredAccount account;
    reply.m_Text1 = request.m_Text1;
    reply.m_Flag1 =
        session.isLoggedIn() && platform.getAccounts().findByIdentity(identity::kPhone, request.m_Text1, account);
    if (reply.m_Flag1 && account.m_Id == session.getStored().m_Id)
        reply.m_Text2 = account.m_Name;
    reply.m_Value1 = !session.isLoggedIn() ? kNotLoggedIn : platform.hasFailed() ? kNotSaved : kDone;
    session.send(reply);
}

// m_Text1: the outside account, m_Value1: its service, m_Text2: the service's token.
void bindOutside(Platform& platform, Session& session, const CCmdBindThirdAccountRequest& request)
{
    CCmdBindThirdAccountReply reply;
    reply.m_Text1 = request.m_Text1;
    reply.m_Value2 = request.m_Value1;
    const auto refuseWith = [&](Result result, const wchar_t* reason)
    {
        reply.m_Value1 = result;
        reply.m_Text2 = reason;
        session.send(reply);
    };
    if (!session.isLoggedIn())
        return refuseWith(kNotLoggedIn, L"no player is logged in");
    const Text value = getOutsideIdentity(request.m_Value1, request.m_Text1);
    if (value.getLength() > kIdentityLimit || request.m_Text2 != getOutsideToken(request.m_Text1))
        return refuseWith(kWrongCode, L"the token is wrong");
    if (!platform.getAccounts().bind(identity::kOutside, value, session.getStored().m_Id))
        return platform.hasFailed() ? refuseWith(kNotSaved, L"the outside account was not saved")
                                    : refuseWith(kTaken, L"the outside account or the account is bound already");
    reply.m_Flag1 = true;
    reply.m_GlobalData = session.getAccount().m_GlobalData;
    session.send(reply);
}

// m_Text1: the name. The reply says to which phone a code goes, with its last digits only.
void findPassword(Platform& platform, Session& session, const CCmdFindPassword& request)
{
    StoredAccount account;
    Text phone;
    if (platform.getAccounts().find(request.m_Text1, account))
        phone = platform.getAccounts().getIdentity(identity::kPhone, account.m_Id);
    if (platform.hasFailed())
        return refuse<CCmdFindPasswordFail>(session, kNotSaved, L"the database does not answer");
    if (phone.isEmpty())
        return refuse<CCmdFindPasswordFail>(session, kUnknownAccount, L"no account of this name has a phone");
    CCmdFindPasswordSuccess success;
    success.m_Text1 = account.m_Name;
    success.m_Text2 = Text(L"***") + phone.getSubString(phone.getLength() - 2, 2);
    session.send(success);
}

void storePassword(Platform& platform, Session& session, int kind, const Text& password)
{
    session.m_IsBusy = platform.getPasswords().hash(
        password,
        [&platform, number = session.getNumber(), id = session.getStored().m_Id, kind](const std::string& hash)
        {
            Session* const waiting = platform.findSession(number);
            if (!waiting)
                return;
            waiting->m_IsBusy = false;
            if (hash.empty() || !waiting->isLoggedIn() || waiting->getStored().m_Id != id ||
                !platform.getAccounts().setPassword(id, hash))
                return refuse<CCmdUpdatePasswordFail>(*waiting, kNotSaved, L"the password was not saved");
            waiting->setPassword(hash);
            CCmdUpdatePasswordSuccess success;
            success.m_Value1 = kind;
            success.m_Text1 = waiting->getStored().m_Name;
            waiting->send(success);
        });
    if (!session.m_IsBusy)
        refuse<CCmdUpdatePasswordFail>(session, kBusy, L"too many passwords");
}

// m_Text1: the password so far, empty if there is none; m_Text2: the new one.
void updatePassword(Platform& platform, Session& session, const CCmdUpdatePassword& request)
{
    using Fail = CCmdUpdatePasswordFail;
    if (!session.isLoggedIn())
        return refuse<Fail>(session, kNotLoggedIn, L"no player is logged in");
    if (session.m_IsBusy)
        return refuse<Fail>(session, kBusy, L"a password is being checked");
    if (request.m_Text2.isEmpty() || request.m_Text2.getLength() > kIdentityLimit)
        return refuse<Fail>(session, kBadName, L"a password has 1 to 128 characters");
    if (session.getStored().m_Password.empty())
        return storePassword(platform, session, request.m_Value1, request.m_Text2);
    session.m_IsBusy = platform.getPasswords().check(
        request.m_Text1, session.getStored().m_Password,
        [&platform, number = session.getNumber(), kind = request.m_Value1, password = request.m_Text2](bool isRight)
        {
            Session* const waiting = platform.findSession(number);
            if (!waiting)
                return;
            waiting->m_IsBusy = false;
            if (!isRight || !waiting->isLoggedIn())
                return refuse<Fail>(*waiting, kWrongPassword, L"the old password is wrong");
            storePassword(platform, *waiting, kind, password);
        });
    if (!session.m_IsBusy)
        refuse<Fail>(session, kBusy, L"too many passwords");
}

// The answer of a switch has no AccountData: the client fetches it.
void finishSwitch(Platform& platform, Session& session, int id)
{
    zet::Uuid ticket;
    if (!logIn(platform, session, id, ticket))
        return refuse<CCmdSwitchAccountFail>(session, kNotSaved, L"the database does not answer");
    CCmdSwitchAccountSuccess success;
    success.m_Id1 = ticket;
    success.m_GlobalData = session.getAccount().m_GlobalData;
    success.m_LingYuanGouData = session.getAccount().m_LingYuanGouData;
    success.m_GameShop = getShop();
    success.m_Text1 = session.getStored().m_Name;
    success.m_Flag1 = true;
    session.send(success);
}

// m_Text1: the name of the other account, m_Text2: its password.
void switchAccount(Platform& platform, Session& session, const CCmdSwitchAccount& request)
{
    using Fail = CCmdSwitchAccountFail;
    if (!session.isLoggedIn())
        return refuse<Fail>(session, kNotLoggedIn, L"no player is logged in");
    if (session.m_IsBusy)
        return refuse<Fail>(session, kBusy, L"a password is being checked");
    StoredAccount account;
    if (!platform.getAccounts().find(request.m_Text1, account) && platform.hasFailed())
        return refuse<Fail>(session, kNotSaved, L"the database does not answer");
    session.m_IsBusy = platform.getPasswords().check(
        request.m_Text2, account.m_Password,
        [&platform, number = session.getNumber(), id = account.m_Id](bool isRight)
        {
            Session* const waiting = platform.findSession(number);
            if (!waiting)
                return;
            waiting->m_IsBusy = false;
            if (!isRight || !waiting->isLoggedIn())
                return refuse<Fail>(*waiting, kWrongPassword, L"the name or the password is wrong");
            finishSwitch(platform, *waiting, id);
        });
    if (!session.m_IsBusy)
        refuse<Fail>(session, kBusy, L"too many passwords");
}

// A player gets its own account only.
void fetchAccount(Session& session, const CCmdFetchAccountRequest& request)
{
    CCmdFetchAccountReply reply;
    const bool isOwn = session.isLoggedIn() && request.m_Text1 == session.getStored().m_Name;
    reply.m_Value1 = isOwn ? kDone : session.isLoggedIn() ? kNotAllowed : kNotLoggedIn;
    reply.m_Text1 = isOwn ? L"" : L"only the own account can be fetched";
    if (isOwn)
    {
        reply.m_Text2 = session.getStored().m_Name;
        copyAccount(session.getAccount().m_Account, reply.m_Account);
    }
    session.send(reply);
}

} // namespace

void installBindings(Platform& platform)
{
    platform.on<CCmdBindPhone>([&platform](Session& session, const CCmdBindPhone& request)
                               { bindPhone(platform, session, request); });
    platform.on<CCmdUnBindPhoneRequest>(
        [&platform](Session& session, const CCmdUnBindPhoneRequest&)
        {
            CCmdUnBindPhoneReply reply;
            reply.m_Text1 = wordsOf(unbind(platform, session, identity::kPhone));
            session.send(reply);
        });
    // The text names the kind of the binding; there is only that of an outside account.
    platform.on<CCmdUnBindUserRequest>(
        [&platform](Session& session, const CCmdUnBindUserRequest&)
        {
            CCmdUnBindUserReply reply;
            reply.m_Text1 = wordsOf(unbind(platform, session, identity::kOutside));
            session.send(reply);
        });
    platform.on<CCmdQueryPhoneRequest>([&platform](Session& session, const CCmdQueryPhoneRequest& request)
                                       { queryPhone(platform, session, request); });
    platform.on<CCmdBindThirdAccountRequest>([&platform](Session& session, const CCmdBindThirdAccountRequest& request)
                                             { bindOutside(platform, session, request); });
    platform.on<CCmdFindPassword>([&platform](Session& session, const CCmdFindPassword& request)
                                  { findPassword(platform, session, request); });
    platform.on<CCmdUpdatePassword>([&platform](Session& session, const CCmdUpdatePassword& request)
                                    { updatePassword(platform, session, request); });
    platform.on<CCmdSwitchAccount>([&platform](Session& session, const CCmdSwitchAccount& request)
                                   { switchAccount(platform, session, request); });
    platform.on<CCmdFetchAccountRequest>([](Session& session, const CCmdFetchAccountRequest& request)
                                         { fetchAccount(session, request); });
}

} // namespace arena::platform
