// A player's connection to the platform.
#pragma once

#include "examples/arena/platform/accounts.h"
#include "transport/framework_client_socket.h"

namespace arena::platform
{

class Platform;

// Belongs to the thread of the platform's System.
class Session : public CFrameworkClientSocket
{
public:
    // The platform outlives the session.
    Session(Platform& platform, CCmdAnalyserSocket* analyser);
    ~Session() override;

    bool isLoggedIn() const { return m_Stored.m_Id != 0; }
    // The records of the logged-in player; only while isLoggedIn(). They stay when the connection ends, so that a
    // handler that is running can finish; the reference is valid until end(), the next begin() or the session's end.
    CAccount& getAccount() { return *m_Stored.m_Records; }
    // Writes the records in one transaction before the answer is sent. False if another platform was first or the
    // database failed: the records are then those of the database again, and the caller refuses. If the player has
    // logged in elsewhere, the session is kicked out as well; if the records cannot be read again, it is ended.
    bool save() { return save({}); }
    // The same with further statements in the transaction.
    bool save(const Accounts::Also& also);
    // Makes the records those of the database again, after a change that is not to be saved. If the player has logged
    // in elsewhere, the session is kicked out; if they cannot be read, it is ended.
    void undo();

    // The login, and its end: the database is not changed.
    void begin(const StoredAccount& account);
    void end();
    // Tells the client that its session has ended, and closes the connection.
    void kickOut();
    // Whether it was kicked out or ended.
    bool isKickedOut() const { return m_IsKickedOut; }

    // The hash that the database has now.
    void setPassword(const std::string& hash) { m_Stored.m_Password = hash; }
    const StoredAccount& getStored() const { return m_Stored; }
    // Never 0. A number, unlike a pointer, may be kept for later: Platform::findSession(number).
    unsigned long long getNumber() const { return m_Number; }

    void onEnd(const zet::EndCause& cause) override;
    const wchar_t* getClassName() const override { return L"Session"; }

    // A password of this connection is being checked: no second login before it is done.
    bool m_IsBusy = false;
    // The ticket of the login, as the client knows it.
    zet::Uuid m_TicketId;
    // The server that the player has chosen before the login; 0 for none.
    int m_ChosenServer = 0;
    // The number of the order that it opened last.
    std::string m_Order;
    // The game that the player has started: FGameObject's kind and number, 0 for none.
    int m_GameType = 0;
    int m_GameId = 0;

private:
    // The same without a word: the player is not logged in elsewhere, and may come back.
    void drop();

    Platform& m_Platform;
    const unsigned long long m_Number;
    StoredAccount m_Stored;
    bool m_IsKickedOut = false;
};

} // namespace arena::platform
