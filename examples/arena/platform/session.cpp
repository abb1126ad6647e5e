#include "examples/arena/platform/session.h"
#include "commands/login.h"
#include "examples/arena/platform/platform.h"
#include "framework/log.h"

namespace arena::platform
{

Session::Session(Platform& platform, CCmdAnalyserSocket* analyser)
    : CFrameworkClientSocket(analyser), m_Platform(platform), m_Number(platform.addSession(*this))
{
}

Session::~Session()
{
    end();
    m_Platform.removeSession(*this);
}

bool Session::save(const Accounts::Also& also)
{
    const Saved saved = m_Platform.getAccounts().save(m_Stored, also);
    if (saved == Saved::kLost)
        kickOut();
    if (saved == Saved::kUnreadable)
        drop();
    return saved == Saved::kDone;
}

void Session::undo()
{
    const long long epoch = m_Stored.m_Epoch;
    if (!m_Platform.getAccounts().reload(m_Stored))
        drop();
    else if (m_Stored.m_Epoch != epoch)
        kickOut();
}

void Session::begin(const StoredAccount& account)
{
    end();
    m_Stored = account;
    m_Platform.addPlayer(*this);
}

void Session::end()
{
    if (!isLoggedIn())
        return;
    m_Platform.removePlayer(*this);
    m_Stored = StoredAccount();
    m_GameType = 0;
    m_GameId = 0;
    m_Order.clear();
}

void Session::kickOut()
{
    if (m_IsKickedOut)
        return;
    if (isLoggedIn())
        zet::Log::message(L"%s is kicked out", m_Stored.m_Name);
    send(CCmdAccountKickOut());
    drop();
}

void Session::drop()
{
    if (m_IsKickedOut)
        return;
    m_IsKickedOut = true;
    if (isLoggedIn())
        m_Platform.removePlayer(*this);
    close();
}

void Session::onEnd(const zet::EndCause&)
{
    // The ticket stays valid, so that a player whose connection broke comes back without a password.
    m_Platform.removePlayer(*this);
    m_Platform.removeSession(*this);
}

} // namespace arena::platform
