// The travel feature: the attractions that a player knows, and the progress of their tasks.
// Fields without a comment are carried: moved without being read.
//
// The attract data string is the database's form of the map:
//
//   string    version "|" record*            version 0 is the only one that has records
//   record    id "-" unlocked "-" level ";"
#pragma once

#include "framework/export.h"
#include "framework/string.h"
#include "packaging/wire_interface.h"

#include <map>

// One attraction of a player's travel record.
class COMMONGROUND_API FAttractData final
{
public:
    WIRE_INTERFACE_BOTH_VIRTUAL

    // Whether this is an attraction, not an empty record.
    bool IsValid() const { return m_AttractId >= 0; }

    // -1 for none; the attraction is valid if this is 0 or more.
    int m_AttractId = -1;
    // Unlocked if not 0.
    int m_IsUnlocked = 0;
    // The level reached in the task of the attraction.
    int m_TaskLevel = 0;
};

// A player's progress in the travel feature. A lookup returns the first valid attraction in key order with the given
// m_AttractId, whatever its key.
class COMMONGROUND_API AccountTravelData
{
public:
    WIRE_INTERFACE_BOTH

    // The three values as fields of the same names.
    bool IsReaded() const { return m_IsReaded; }
    bool IsValid() const { return m_IsValid; }
    int getCurVehicle() const { return m_CurVehicle; }
    // 0 if there is no such attraction.
    int getIsUnlockedValue(int attractId) const;
    int getTaskLevelValue(int attractId) const;
    // Adds a valid attraction that is not known yet; existing progress is never overwritten.
    void SetAddNewAttractData(FAttractData attract);
    // Unlocks a known attraction; nothing else changes.
    void SetAttractToUnlock(int attractId);

    // A load calls these three in order: the version of the text, the text after it, the records. An empty text does
    // not change the version; one without "|" has version 0.
    void SetAnalyVersion(const zet::String_T<wchar_t>& text);
    // The whole text if it has no "|".
    zet::String_T<wchar_t> getStringFromAnalyVersion(const zet::String_T<wchar_t>& text) const;
    // Adds the records to the map; a record replaces a known one of the same id. Invalid attractions are dropped, and
    // so is the text after the last ";". With a version other than 0 nothing is stored.
    void LoadAttractDataFromString(const zet::String_T<wchar_t>& text);
    // The whole string, without the invalid attractions; empty for an empty map and for a version other than 0.
    zet::String_T<wchar_t> SaveStringFromAttractData() const;

    // What IsReaded returns.
    bool m_IsReaded = false;
    // What IsValid returns.
    bool m_IsValid = false;
    // What getCurVehicle returns.
    int m_CurVehicle = 0;
    // The version of the attract data string.
    int m_AnalyVersion = 0;
    // By m_AttractId.
    std::map<int, FAttractData> m_AttractMap;
};
