// The travel feature: the attractions that a player knows, and how far the tasks of each are done.
// Fields without a comment are carried: moved without being read.
//
// The attract data string is the database's form of the map:
//
//   string    version "|" record*            version 0 is the only one that has records
//   record    id "-" unlocked "-" level ";"
#pragma once

#include "framework/platform/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <map>

class COMMONGROUND_API FAttractData final
{
public:
    WIRE_INTERFACE_BOTH_VIRTUAL

    bool IsValid() const { return m_AttractId >= 0; }

    int m_AttractId = -1;
    int m_IsUnlocked = 0;
    int m_TaskLevel = 0;
};

// A player's progress in the travel feature. The look-ups take the first valid attraction in key order whose
// m_AttractId is the one asked for, whatever its key.
class COMMONGROUND_API AccountTravelData
{
public:
    WIRE_INTERFACE_BOTH

    bool IsReaded() const { return m_IsReaded; }
    bool IsValid() const { return m_IsValid; }
    int getCurVehicle() const { return m_CurVehicle; }
    // 0 where there is no such attraction.
    int getIsUnlockedValue(int attractId) const;
    int getTaskLevelValue(int attractId) const;
    // Stores a valid attraction that is not known yet; existing progress is never overwritten.
    void SetAddNewAttractData(FAttractData attract);
    // Unlocks an attraction that is known; nothing else changes.
    void SetAttractToUnlock(int attractId);

    // Loading takes these three in turn: the version of the text, the part after it, the records.
    // An empty text leaves the version alone; one without "|" has version 0.
    void SetAnalyVersion(const zet::String_T<wchar_t>& text);
    // The whole text where it has no "|".
    zet::String_T<wchar_t> getStringFromAnalyVersion(const zet::String_T<wchar_t>& text) const;
    // Adds the records to the map; one of a known id replaces it. A record that is not a valid attraction is
    // dropped, and so is the rest after the last ";". With a version other than 0 nothing is stored.
    void LoadAttractDataFromString(const zet::String_T<wchar_t>& text);
    // The whole string, without the invalid attractions; empty for an empty map and for a version other than 0.
    zet::String_T<wchar_t> SaveStringFromAttractData() const;

    bool m_IsReaded = false;
    bool m_IsValid = false;
    int m_CurVehicle = 0;
    // The version of the attract data string.
    int m_AnalyVersion = 0;
    // By m_AttractId.
    std::map<int, FAttractData> m_AttractMap;
};
