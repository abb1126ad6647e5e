// An account that plays the scripts of the pack features for a player, with a connection and records of its own.
#pragma once

#include "examples/arena/player/line.h"
#include "host/tasks.h"
#include "playerdata/account.h"

namespace arena::player
{

class Player;

// Belongs to the thread of its System. The player outlives it.
class PackAccount
{
public:
    // Connects to the server of the player. There is no login yet.
    PackAccount(Player& player, const zet::String_T<wchar_t>& name);

    const zet::String_T<wchar_t>& getName() const { return m_Name; }
    CCommandSocket& getSocket() const { return *m_Line; }
    // The last records that the server confirmed.
    CAccount& getAccount() { return *m_Account; }
    host::Tasks& getTasks() { return m_Tasks; }
    // Whether the connection has ended, or the player is interrupted. What is not as expected then follows from that.
    bool isInterrupted() const;

    // A line of the player's transcript: "Ann: as Ann-1f: sends HomePack_LoadData_Request".
    [[gnu::format(printf, 2, 3)]] void note(const char* format, ...);
    // An expectation that was not met: the player fails, unless the connection has ended.
    [[gnu::format(printf, 2, 3)]] void fail(const char* format, ...);

private:
    Player& m_Player;
    const zet::String_T<wchar_t> m_Name;
    const zet::Unknown::Handle_T<CAccount> m_Account;
    const Line m_Line;
    // Last, so that the tasks end first.
    host::Tasks m_Tasks;
};

} // namespace arena::player
