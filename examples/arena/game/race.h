// One race on a game server: its pawns, from joining to the last exit.
#pragma once

#include "commands/race.h"
#include "commands/race_pawn.h"
#include "commands/zone_combat.h"
#include "examples/arena/protocol/race_numbers.h"
#include "transport/command_socket.h"
#include "transport/udp_client_socket.h"

#include <functional>
#include <memory>
#include <vector>

namespace arena::game
{

class Race;

// A player of a race. Sends over the player's own connection, or, without one, through the zone.
struct Runner
{
    Runner(Race& race, const CombatPlayerEntry& records) : m_Race(race), m_Records(records) {}

    const zet::String_T<wchar_t>& getName() const { return m_Records.m_Account.m_AccountName; }
    // Neither of the player's roads is known before the player has joined.
    void send(CCmdHead& command);
    // Over UDP, if the player has opened such a connection.
    void sendPosition(CCmdHead& command);

    Race& m_Race;
    CombatPlayerEntry m_Records;
    // The player's own connection, or the link to the zone for a player who joined through the tunnel.
    CCommandSocket* m_Socket = nullptr;
    bool m_IsTunneled = false;
    UdpClientSocket* m_Udp = nullptr;

    ChangingRoomEquip m_Equip;
    bool m_HasJoined = false;
    bool m_IsReady = false;
    bool m_IsDown = false;
    bool m_IsRunning = false;
    bool m_HasFinished = false;
    bool m_HasLeft = false;
    float m_Distance = 0.0f;
    float m_Penalty = 0.0f;
    int m_Place = race::kNoPlace;
};

class Race
{
public:
    enum State
    {
        // Players join and report ready.
        kJoining,
        // Pawns take their places.
        kRunningDown,
        kRunning,
        // All have finished: balances are closed, players leave.
        kBalancing,
        kOver
    };

    // onResult: called for each runner when the race is decided. onOver: called once, when the last runner has left.
    // Neither may destroy the race.
    Race(const zet::Uuid& id, const zet::String_T<wchar_t>& name, int pawns, std::function<void(Runner&)> onResult,
         std::function<void(Race&)> onOver);
    Race(const Race&) = delete;
    Race& operator=(const Race&) = delete;

    const zet::Uuid& getId() const { return m_Id; }
    const zet::String_T<wchar_t>& getName() const { return m_Name; }
    State getState() const { return m_State; }

    void setPlayers(const std::vector<CombatPlayerEntry>& players);
    void setCombat(bool isCombat) { m_IsCombat = isCombat; }
    Runner* find(const zet::String_T<wchar_t>& name);
    const std::vector<std::unique_ptr<Runner>>& getRunners() const { return m_Runners; }

    // 0, or a race::JoinRefusal. The answer precedes what the others are told.
    int join(Runner& runner, CCommandSocket& socket, bool isTunneled);
    // Ends the part of this runner in the race, whatever its state.
    void leave(Runner& runner);
    // The time limits: players who have not joined leave; pawns that run get no place; players who stay leave.
    void endJoining();
    void endRunning();
    void endBalancing();

    // The commands of a runner. One that does not fit the state of the race is logged and has no effect.
    void pawnReady(Runner& runner, CCmdGS_PawnReady& command);
    void runDown(Runner& runner, CCmdGS_RunDown& command);
    void startRun(Runner& runner, CCmdGS_PawnStartRun& command);
    void running(Runner& runner, CCmdGS_PawnRunning& command);
    void input(Runner& runner, CCmdGS_PawnInput& command);
    void powerTime(Runner& runner, CCmdGS_PowerTime& command);
    void chat(Runner& runner, CCmdGS_PlayersChat& command);
    void equip(Runner& runner, CCmdGS_PlayerEquipAttribute& command);
    void balance(Runner& runner, CCmdGS_RaceBalanceRequest& command);
    void test(Runner& runner, CCmdGS_test& command);
    void testPosition(Runner& runner, CCmdGS_testSyncPos& command);

private:
    // To all who have joined and not left, but for one, if it is not null.
    void broadcast(CCmdHead& command, const Runner* except = nullptr);
    void describe(Runner& runner, Runner& to);
    void foul(Runner& runner, race::Foul foul);
    void advance(Runner& runner, float distance);
    void finish(Runner& runner, int place);
    // Goes on to the next state if all runners who have not left are there.
    void step();
    bool areAll(bool Runner::*isDone) const;
    float getSeconds() const;

    const zet::Uuid m_Id;
    const zet::String_T<wchar_t> m_Name;
    const int m_Pawns;
    const std::function<void(Runner&)> m_OnResult;
    const std::function<void(Race&)> m_OnOver;
    bool m_IsCombat = false;
    State m_State = kJoining;
    std::vector<std::unique_ptr<Runner>> m_Runners;
    int m_Finished = 0;
    unsigned int m_Start = 0;
};

} // namespace arena::game
