// The game centre: zones register here, and clients query the zones.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/game_centre.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"

#include <vector>

// A zone as the game centre knows it, in CCmdGC_regGameZone and CCmdGC_gameZoneListResponse: two texts.
struct COMMONGROUND_API GameZoneInfo
{
    WIRE_INTERFACE_CMD

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Zone to game centre: registers the zone. Answered by CCmdGC_regGameZoneOk or, on failure, CCmdGC_regGameZoneFail.
class COMMONGROUND_API CCmdGC_regGameZone : public CCmdPlatform
{
public:
    CCmdGC_regGameZone() : CCmdPlatform(command_id::CCmdGC_regGameZone) {}
    COMMAND_INTERFACE(CCmdGC_regGameZone)

    GameZoneInfo m_GameZoneInfo;
};

// Answers CCmdGC_regGameZone: the zone is registered.
class COMMONGROUND_API CCmdGC_regGameZoneOk : public CCmdPlatform
{
public:
    CCmdGC_regGameZoneOk() : CCmdPlatform(command_id::CCmdGC_regGameZoneOk) {}
    COMMAND_INTERFACE(CCmdGC_regGameZoneOk)
};

// Answers CCmdGC_regGameZone: the zone is not registered.
class COMMONGROUND_API CCmdGC_regGameZoneFail : public CCmdPlatform
{
public:
    CCmdGC_regGameZoneFail() : CCmdPlatform(command_id::CCmdGC_regGameZoneFail) {}
    COMMAND_INTERFACE(CCmdGC_regGameZoneFail)
};

// Client to game centre: asks for the list of the zones. Answered by CCmdGC_gameZoneListResponse.
class COMMONGROUND_API CCmdGC_gameZoneListRequest : public CCmdPlatform
{
public:
    CCmdGC_gameZoneListRequest() : CCmdPlatform(command_id::CCmdGC_gameZoneListRequest) {}
    COMMAND_INTERFACE(CCmdGC_gameZoneListRequest)
};

// Answers CCmdGC_gameZoneListRequest: the zones. Read resizes the list to the count and does not clear it: for a zone
// that cannot be read, the object keeps the texts that it had at that position.
class COMMONGROUND_API CCmdGC_gameZoneListResponse : public CCmdPlatform
{
public:
    CCmdGC_gameZoneListResponse() : CCmdPlatform(command_id::CCmdGC_gameZoneListResponse) {}
    COMMAND_INTERFACE(CCmdGC_gameZoneListResponse)

    std::vector<GameZoneInfo> m_GameZoneInfos;
};
