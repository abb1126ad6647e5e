#include "examples/arena/game/race_view.h"

#include "examples/arena/text.h"
#include "framework/json.h"
#include "framework/string_helper.h"
#include "host/metrics.h"

#include <cmath>

namespace arena::game
{

namespace
{

// By Race::State.
constexpr const wchar_t* kStates[] = {L"joining", L"taking places", L"running", L"balancing", L"over"};
// Units of a name that are shown; players choose their names.
constexpr int kMostName = 40;

zet::JsonValue describe(const Runner& runner)
{
    zet::JsonValue pawn(zet::JsonValue::kObject);
    pawn[L"name"] = runner.getName().getSubString(0, kMostName);
    pawn[L"distance"] = std::round(static_cast<double>(runner.m_Distance) * 10) / 10;
    pawn[L"place"] = runner.m_Place;
    pawn[L"left"] = runner.m_HasLeft;
    return pawn;
}

} // namespace

std::string describeRaces(const Server& server)
{
    zet::JsonValue races(zet::JsonValue::kArray);
    server.forEachRace(
        [&](const Race& race)
        {
            if (races.size() >= kMostShown)
                return;
            zet::JsonValue& shown = races[races.size()];
            shown[L"id"] = zet::StringHelper::utf8ToWide(idToText(race.getId()));
            shown[L"name"] = race.getName().getSubString(0, kMostName);
            shown[L"state"] = kStates[race.getState()];
            shown[L"length"] = static_cast<double>(race::kTrackLength);
            shown[L"pawns"] = zet::JsonValue::kArray;
            for (const auto& runner : race.getRunners())
                shown[L"pawns"][shown[L"pawns"].size()] = describe(*runner);
        });
    return zet::StringHelper::wideToUtf8(zet::Json::convertToString(races, false)).getBuffer();
}

void showRaces(host::Service& service, const Server& server)
{
    service.addEvent("races", [&server] { return describeRaces(server); });
    service.getMetrics().addPrinter(
        [&server](host::MetricText& text)
        {
            unsigned long long races = 0;
            unsigned long long pawns = 0;
            server.forEachRace(
                [&](const Race& race)
                {
                    ++races;
                    pawns += race.getRunners().size();
                });
            text.beginGauge("arena_races", "Races of this game server, from their creation to their removal.");
            text.add({}, races);
            text.beginGauge("arena_pawns", "Pawns of these races.");
            text.add({}, pawns);
        });
}

} // namespace arena::game
