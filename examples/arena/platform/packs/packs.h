// The pack features of the platform. Each has one file; its numbers are in examples/arena/protocol/pack_numbers.h.
#pragma once

#include <memory>
#include <vector>

namespace arena::platform
{

class Platform;

// What serves one feature: its router and what it keeps in memory. Null, and logged, if it could not be installed.
using Feature = std::shared_ptr<void>;

// Installs all features in the platform's handlers. Keep the result as long as these are used, and no longer than the
// platform lives; it is empty, and the reason logged, if one could not be installed.
std::vector<Feature> installPacks(Platform& platform);

Feature serveHome(Platform& platform);
Feature serveTravel(Platform& platform);
Feature serveFriends(Platform& platform);
Feature serveAchievements(Platform& platform);
Feature serveChangingRoom(Platform& platform);
// Adds its handlers to the platform's void-data router, and does not install it.
Feature serveAvatar(Platform& platform);
Feature serveInPurchase(Platform& platform);
Feature serveWizard(Platform& platform);
Feature serveWorldSquare(Platform& platform);
// Match, match type, match 4, combat and BS4.
Feature serveMatch(Platform& platform);
Feature serveProfiling(Platform& platform);
Feature serveQueryTool(Platform& platform);
Feature serveSocial(Platform& platform);

} // namespace arena::platform
