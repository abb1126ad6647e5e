// The travel: attractions that a player discovers and unlocks for diamonds. The rules of unlocking are those of
// AccountTravelData, the prices are the platform's.
#include "examples/arena/platform/packs/packs.h"
#include "examples/arena/platform/packs/serving.h"
#include "examples/arena/platform/platform.h"
#include "examples/arena/protocol/pack_numbers.h"

#include <algorithm>

namespace arena::platform
{

namespace
{

constexpr wchar_t kNoSuchAttraction[] = L"no such attraction";
constexpr wchar_t kUnlockedBefore[] = L"unlocked before";
constexpr wchar_t kNotUnlocked[] = L"a save cannot unlock an attraction";
constexpr wchar_t kLevelSkipped[] = L"a task is finished level by level";

// The attractions of a new player are 1 to 3; each costs what follows.
constexpr int kAttractions = 3;
constexpr int kPrice = 30;
constexpr int kTaskLevels = 5;

void load(Session& session, const TravelWorldPack_LoadData_Request&, TravelWorldPack_LoadData_Reply& reply)
{
    AccountTravelData& travel = session.getAccount().m_TravelData;
    if (!travel.IsValid())
    {
        for (int id = 1; id <= kAttractions; ++id)
        {
            FAttractData attraction;
            attraction.m_AttractId = id;
            travel.SetAddNewAttractData(attraction);
        }
        travel.m_IsValid = true;
        save(session, reply);
    }
    travel.m_IsReaded = true;
    reply.m_TravelData = travel;
}

// A player saves the vehicle, and the task levels of unlocked attractions, one level at a time.
void saveData(Session& session, const TravelWorldPack_SaveData_Request& request, TravelWorldPack_SaveData_Reply& reply)
{
    AccountTravelData& travel = session.getAccount().m_TravelData;
    const AccountTravelData& wanted = request.m_TravelData;
    for (const auto& [id, attraction] : wanted.m_AttractMap)
    {
        if (travel.m_AttractMap.count(id) == 0)
            return refuse(reply, kNoSuchAttraction);
        if (attraction.m_IsUnlocked != travel.getIsUnlockedValue(id))
            return refuse(reply, kNotUnlocked);
        const int known = travel.getTaskLevelValue(id);
        if (attraction.m_TaskLevel == known)
            continue;
        if (travel.getIsUnlockedValue(id) == 0 || attraction.m_TaskLevel != known + 1 || known == kTaskLevels)
            return refuse(reply, kLevelSkipped);
    }
    for (const auto& [id, attraction] : wanted.m_AttractMap)
        travel.m_AttractMap[id].m_TaskLevel = attraction.m_TaskLevel;
    travel.m_CurVehicle = wanted.getCurVehicle();
    save(session, reply);
}

void unlock(Session& session, const TravelWorldPack_AttractUnLock_Request& request,
            TravelWorldPack_AttractUnLock_Reply& reply)
{
    AccountTravelData& travel = session.getAccount().m_TravelData;
    if (travel.m_AttractMap.count(request.m_AttractId) == 0)
        refuse(reply, kNoSuchAttraction);
    else if (travel.getIsUnlockedValue(request.m_AttractId) != 0)
        refuse(reply, kUnlockedBefore);
    else if (pay(session, kPrice, reply))
    {
        travel.SetAttractToUnlock(request.m_AttractId);
        save(session, reply);
    }
    reply.m_TravelData = travel;
}

} // namespace

Feature serveTravel(Platform& platform)
{
    auto packs = std::make_shared<TravelPacks>();
    numberTravel(*packs);
    serve<TravelWorldPack_LoadData_Request, TravelWorldPack_LoadData_Reply>(*packs, load);
    serve<TravelWorldPack_SaveData_Request, TravelWorldPack_SaveData_Reply>(*packs, saveData);
    serve<TravelWorldPack_AttractUnLock_Request, TravelWorldPack_AttractUnLock_Reply>(*packs, unlock);
    return packs->install(platform.getHandlers()) ? packs : nullptr;
}

} // namespace arena::platform
