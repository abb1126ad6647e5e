#include "examples/arena/platform/packs/match_features.h"
#include "examples/arena/platform/packs/packs.h"

namespace arena::platform
{

namespace
{

struct Match
{
    MatchPacks m_Packs;
    std::vector<std::shared_ptr<void>> m_Kept;
};

} // namespace

Feature serveMatch(Platform& platform)
{
    auto match = std::make_shared<Match>();
    numberMatch(match->m_Packs);
    addBestFamily(match->m_Packs);
    match->m_Kept = {addStamps(match->m_Packs), addTeams(match->m_Packs), addMeet(match->m_Packs),
                     addSeasons(match->m_Packs)};
    return match->m_Packs.install(platform.getHandlers()) ? match : nullptr;
}

} // namespace arena::platform
