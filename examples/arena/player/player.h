// One scripted player: its connection, its records, and what it has counted.
#pragma once

#include "examples/arena/address.h"
#include "host/tasks.h"
#include "playerdata/account.h"
#include "transport/framework_client_proxy_socket.h"

#include <vector>

namespace arena::player
{

class Players;
struct Script;

// Plays its scripts one after the other on a connection to a platform, if there is one, which it makes anew, with
// growing delays, whenever it has ended. The script under way when a connection ends is played again from its start.
// Belongs to the thread of its System.
class Player
{
public:
    // How long a script waits for an answer.
    static constexpr std::chrono::milliseconds kPatience{10000};
    static constexpr std::chrono::milliseconds kFirstDelay{250};
    static constexpr std::chrono::milliseconds kLongestDelay{4000};
    // After as many logins from elsewhere the player gives up.
    static constexpr int kMostKicks = 5;
    // A script that the ends of connections interrupt as often in a row has failed.
    static constexpr int kMostRepeats = 10;
    // The same, and how long the player connects after its last script, if it expects outages.
    static constexpr int kMostRepeatsInOutages = 40;
    static constexpr std::chrono::milliseconds kLongestOutage{60000};

    Player(Players& players, const zet::String_T<wchar_t>& name, int number);
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    // The connection to the platform, which there is; a new object after each reconnect.
    CCommandSocket& getSocket();
    // The last records that the server confirmed.
    CAccount& getAccount() { return *m_Account; }
    // Takes the record of an answer into getAccount().
    void confirm(const AccountData& record);
    const zet::String_T<wchar_t>& getName() const { return m_Name; }
    // From 0 in the process: for scripts that several players play together.
    int getNumber() const { return m_Number; }
    // Of the script: cancelled when the connection ends.
    host::Tasks& getTasks() { return m_Tasks; }
    // Shared by the players of the process.
    Players& getPlayers() { return m_Players; }
    host::Handlers& getHandlers();
    CCmdAnalyserSocket& getAnalyser();
    zet::System& getSystem();

    // A line of the transcript, if it is printed: "Ann: CCmdLogin -> CCmdLoginSuccess".
    [[gnu::format(printf, 2, 3)]] void note(const char* format, ...);
    // An expectation that was not met: counted and printed, and the run fails. What follows from the end of a
    // connection is only noted, since the script is played again; so is everything, but as a refusal that is always
    // printed, if the player expects outages.
    [[gnu::format(printf, 2, 3)]] void fail(const char* format, ...);
    int getFailures() const { return m_Failures; }
    // A server to which the script has connected is lost: the script is played again.
    void interrupt() { m_IsInterrupted = true; }
    bool isInterrupted() const { return m_IsInterrupted; }

    // Plays the scripts, again and again until Players::isOver(), at least once. Then it logs in anew on a new
    // connection, and its record has to be the last one. isDone() follows.
    void start();
    bool isDone() const { return m_IsDone; }
    // Always, if the players do without a platform.
    bool isConnected() const;
    // Connects after an end or a failure, and logins that the server has ended.
    int getReconnects() const { return m_Reconnects; }
    int getKicks() const { return m_Kicks; }
    // Scripts that were interrupted by interrupt().
    int getInterruptions() const { return m_Interruptions; }
    // The scripts that were played to their end.
    int getPlayed() const { return m_Played; }

    // The platform names the server for this player. If it is another one, the connection to this one is closed, and
    // the player connects to the other; where that fails, to an address of the platform again.
    void moveTo(const HostPort& address);
    // For Players: the server has ended the login on this connection.
    void onKick(CCommandSocket& socket);

private:
    class Connection;

    host::Task live();
    bool isConnecting() const;
    void openConnection();
    void closeConnection();
    // fail(), also if the player expects outages.
    void failForGood(const char* words);
    // Counts an interrupted script. False if there were too many.
    bool mayRepeat(const Script& script);
    // The fields of the record that a login does not change, as bytes.
    std::vector<unsigned char> getRecord();

    Players& m_Players;
    const zet::String_T<wchar_t> m_Name;
    const int m_Number;
    const zet::Unknown::Handle_T<CAccount> m_Account;
    zet::Unknown::Handle_T<Connection> m_Connection;
    // Where it was moved to; port 0 for nowhere.
    HostPort m_Moved;
    // The index in the addresses of the platform.
    size_t m_Choice = 0;
    int m_Failures = 0;
    int m_Reconnects = 0;
    int m_Kicks = 0;
    int m_Played = 0;
    int m_Repeats = 0;
    int m_Interruptions = 0;
    bool m_IsInterrupted = false;
    bool m_HasMoved = false;
    bool m_IsDone = false;
    host::Tasks m_Tasks;
    host::Tasks m_Life;
};

} // namespace arena::player
