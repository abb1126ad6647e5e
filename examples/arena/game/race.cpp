#include "examples/arena/game/race.h"

#include "commands/zone_tunnel.h"
#include "examples/arena/text.h"
#include "framework/log.h"
#include "framework/time.h"

#include <algorithm>

namespace arena::game
{

void Runner::send(CCmdHead& command)
{
    if (!m_Socket)
        return;
    if (!m_IsTunneled)
    {
        m_Socket->send(command);
        return;
    }
    CCmdGZ_serverToClient tunnel;
    tunnel.m_AccountName = getName();
    if (toCCmdGZ_serverToClient(&command, &tunnel))
        m_Socket->send(tunnel);
}

void Runner::sendPosition(CCmdHead& command)
{
    if (m_Udp)
        m_Udp->send(command);
    else
        send(command);
}

Race::Race(const zet::Uuid& id, const zet::String_T<wchar_t>& name, int pawns, std::function<void(Runner&)> onResult,
           std::function<void(Race&)> onOver)
    : m_Id(id), m_Name(name), m_Pawns(pawns), m_OnResult(std::move(onResult)), m_OnOver(std::move(onOver))
{
}

void Race::setPlayers(const std::vector<CombatPlayerEntry>& players)
{
    if (!m_Runners.empty())
        return;
    for (const CombatPlayerEntry& player : players)
        m_Runners.push_back(std::make_unique<Runner>(*this, player));
}

Runner* Race::find(const zet::String_T<wchar_t>& name)
{
    for (const auto& runner : m_Runners)
        if (runner->getName() == name)
            return runner.get();
    return nullptr;
}

float Race::getSeconds() const
{
    return static_cast<float>(zet::getTimeTick() - m_Start) / 1000.0f;
}

void Race::broadcast(CCmdHead& command, const Runner* except)
{
    for (const auto& runner : m_Runners)
        if (runner.get() != except && runner->m_HasJoined && !runner->m_HasLeft)
            runner->send(command);
}

bool Race::areAll(bool Runner::*isDone) const
{
    return std::all_of(m_Runners.begin(), m_Runners.end(),
                       [isDone](const auto& runner) { return runner->m_HasLeft || (*runner).*isDone; });
}

int Race::join(Runner& runner, CCommandSocket& socket, bool isTunneled)
{
    if (m_State != kJoining || runner.m_HasLeft)
        return race::kRaceHasBegun;
    if (runner.m_HasJoined)
        return race::kJoinedAlready;
    runner.m_HasJoined = true;
    runner.m_Socket = &socket;
    runner.m_IsTunneled = isTunneled;
    CCmdGS_joinGameOk ok;
    runner.send(ok);
    for (const auto& other : m_Runners)
        if (other.get() != &runner && other->m_HasJoined && !other->m_HasLeft)
        {
            describe(runner, *other);
            describe(*other, runner);
        }
    return 0;
}

void Race::describe(Runner& runner, Runner& to)
{
    CCmdGS_OtherJoin records;
    records.m_CombatData = runner.m_Records.m_CombatData;
    records.m_Account = runner.m_Records.m_Account;
    records.m_GlobalData = runner.m_Records.m_GlobalData;
    to.send(records);
    // The lane, the number of pawns and the mode.
    const auto self =
        std::find_if(m_Runners.begin(), m_Runners.end(), [&](const auto& each) { return each.get() == &runner; });
    const int lane = static_cast<int>(self - m_Runners.begin()) + 1;
    CCmdGS_PlayerEnter enter;
    enter.m_Text1 = runner.getName();
    enter.m_Value1 = lane;
    enter.m_Value2 = m_Pawns;
    enter.m_Value3 = m_IsCombat;
    enter.m_Text2 = m_Name;
    to.send(enter);
    CCmdGS_GamePlayer player;
    player.m_Value1 = lane;
    player.m_Text1 = runner.getName();
    player.m_Value2 = runner.m_Records.m_GlobalData.m_VIPLevel;
    player.m_Value3 = runner.m_Records.m_CombatData.m_CombatRating;
    player.m_Flag1 = runner.m_IsReady;
    player.m_Flag2 = m_IsCombat;
    player.m_Text2 = m_Name;
    player.m_Float1 = race::kTrackLength;
    player.m_ChangingRoomEquip = runner.m_Equip;
    to.send(player);
}

void Race::leave(Runner& runner)
{
    if (runner.m_HasLeft)
        return;
    runner.m_HasLeft = true;
    runner.m_Socket = nullptr;
    runner.m_Udp = nullptr;
    step();
}

void Race::endJoining()
{
    if (m_State != kJoining)
        return;
    for (const auto& runner : m_Runners)
        if (!runner->m_HasJoined)
            leave(*runner);
    // A game whose players never came.
    if (m_Runners.empty())
        step();
}

void Race::endRunning()
{
    if (m_State == kJoining || m_State == kRunningDown)
    {
        m_State = kRunning;
        m_Start = zet::getTimeTick();
    }
    for (const auto& runner : m_Runners)
        if (m_State == kRunning && !runner->m_HasFinished && !runner->m_HasLeft)
            finish(*runner, race::kNoPlace);
}

void Race::endBalancing()
{
    for (const auto& runner : m_Runners)
        leave(*runner);
    if (m_Runners.empty())
        step();
}

void Race::step()
{
    const bool isEmpty =
        std::all_of(m_Runners.begin(), m_Runners.end(), [](const auto& each) { return each->m_HasLeft; });
    if (m_State == kJoining && !isEmpty && areAll(&Runner::m_HasJoined) && areAll(&Runner::m_IsReady))
    {
        m_State = kRunningDown;
        CCmdGS_AllPlayerReady all;
        broadcast(all);
    }
    if (m_State == kRunningDown && !isEmpty && areAll(&Runner::m_IsDown))
    {
        m_State = kRunning;
        m_Start = zet::getTimeTick();
        CCmdGS_AllRunDown all;
        broadcast(all);
        CCmdGS_PawnCanRun go;
        broadcast(go);
    }
    if (m_State < kBalancing && (isEmpty || (m_State == kRunning && areAll(&Runner::m_HasFinished))))
    {
        m_State = kBalancing;
        for (const auto& runner : m_Runners)
        {
            CCmdGS_PlayerReward reward;
            reward.m_Text1 = runner->getName();
            reward.m_Value1 = runner->m_Place;
            reward.m_Value2 = race::pointsOf(runner->m_Place);
            reward.m_Value3 = race::coinsOf(runner->m_Place);
            broadcast(reward);
            m_OnResult(*runner);
        }
    }
    if (m_State == kBalancing && isEmpty)
    {
        m_State = kOver;
        m_OnOver(*this);
    }
}

void Race::pawnReady(Runner& runner, CCmdGS_PawnReady& command)
{
    if (m_State != kJoining || runner.m_IsReady)
        return;
    runner.m_IsReady = true;
    command.m_Text1 = runner.getName();
    broadcast(command, &runner);
    step();
}

void Race::runDown(Runner& runner, CCmdGS_RunDown&)
{
    if (m_State != kRunningDown)
    {
        zet::Log::warning(L"%s runs down in state %d", runner.getName(), static_cast<int>(m_State));
        return;
    }
    runner.m_IsDown = true;
    step();
}

void Race::startRun(Runner& runner, CCmdGS_PawnStartRun& command)
{
    if (m_State == kJoining || m_State == kRunningDown)
        return foul(runner, race::kFalseStart);
    if (m_State != kRunning || runner.m_IsRunning)
        return;
    runner.m_IsRunning = true;
    command.m_Text1 = runner.getName();
    // To the runner too: from then on its positions count, also those over UDP.
    broadcast(command);
}

void Race::foul(Runner& runner, race::Foul foul)
{
    runner.m_Penalty += race::kFoulPenalty;
    CCmdGS_PawnFouled fouled;
    fouled.m_Text1 = runner.getName();
    fouled.m_Float1 = race::kFoulPenalty;
    fouled.m_Byte1 = foul;
    broadcast(fouled);
}

void Race::running(Runner& runner, CCmdGS_PawnRunning& command)
{
    if (m_State != kRunning || !runner.m_IsRunning || runner.m_HasFinished)
        return;
    // Also refuses what is no number.
    if (!(command.m_Float1 >= runner.m_Distance && command.m_Float1 <= runner.m_Distance + race::kLongestStride))
        return foul(runner, race::kImpossibleStride);
    advance(runner, command.m_Float1);
}

void Race::input(Runner& runner, CCmdGS_PawnInput&)
{
    if (m_State == kRunning && runner.m_IsRunning && !runner.m_HasFinished)
        advance(runner, runner.m_Distance + race::kStepLength);
}

void Race::advance(Runner& runner, float distance)
{
    runner.m_Distance = distance;
    CCmdGS_PlayerRaceData data;
    data.m_Text1 = runner.getName();
    data.m_Value1 = 1 + static_cast<int>(std::count_if(m_Runners.begin(), m_Runners.end(),
                                                       [&](const auto& each) { return each->m_Distance > distance; }));
    data.m_Float1 = distance;
    data.m_Float2 = getSeconds();
    for (const auto& other : m_Runners)
        if (other.get() != &runner && other->m_HasJoined && !other->m_HasLeft)
            other->sendPosition(data);
    if (distance >= race::kTrackLength)
        finish(runner, ++m_Finished);
}

void Race::finish(Runner& runner, int place)
{
    runner.m_HasFinished = true;
    runner.m_Place = place;
    CCmdGS_PawnScore score;
    score.m_Text1 = runner.getName();
    score.m_Value1 = place;
    score.m_Float1 = getSeconds() + runner.m_Penalty;
    broadcast(score);
    step();
}

void Race::powerTime(Runner& runner, CCmdGS_PowerTime& command)
{
    if (m_State != kRunning)
        return;
    command.m_Text1 = runner.getName();
    broadcast(command, &runner);
}

void Race::chat(Runner& runner, CCmdGS_PlayersChat& command)
{
    command.m_Text1 = (runner.getName() + L": " + command.m_Text1).getSubString(0, kTextLimit);
    broadcast(command);
}

void Race::equip(Runner& runner, CCmdGS_PlayerEquipAttribute& command)
{
    runner.m_Equip = command.m_ChangingRoomEquip;
    command.m_Text1 = runner.getName();
    broadcast(command, &runner);
}

void Race::balance(Runner& runner, CCmdGS_RaceBalanceRequest& command)
{
    // The player names the place that it has seen.
    if (m_State != kBalancing || command.m_Text1 != runner.getName() || command.m_Value1 != runner.m_Place)
    {
        zet::Log::warning(L"%s closes a balance that is not its own", runner.getName());
        return;
    }
    CCmdGS_RaceBalanceOK ok;
    runner.send(ok);
}

void Race::test(Runner& runner, CCmdGS_test& command)
{
    runner.send(command);
}

void Race::testPosition(Runner& runner, CCmdGS_testSyncPos& command)
{
    command.m_Text1 = runner.getName();
    runner.sendPosition(command);
}

} // namespace arena::game
