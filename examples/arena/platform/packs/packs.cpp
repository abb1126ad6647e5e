#include "examples/arena/platform/packs/packs.h"

#include <algorithm>

namespace arena::platform
{

std::vector<Feature> installPacks(Platform& platform)
{
    std::vector<Feature> features = {
        serveHome(platform),         serveTravel(platform), serveFriends(platform),    serveAchievements(platform),
        serveChangingRoom(platform), serveAvatar(platform), serveInPurchase(platform), serveWizard(platform),
        serveWorldSquare(platform),  serveMatch(platform),  serveProfiling(platform),  serveQueryTool(platform),
        serveSocial(platform)};
    if (std::find(features.begin(), features.end(), nullptr) != features.end())
        features.clear();
    return features;
}

} // namespace arena::platform
