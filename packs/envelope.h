// The pack envelopes: one pair of commands per feature, whose messages are opaque bytes inside. m_PackType identifies
// the message; client and server agree on its numbers. m_PackIndex belongs to the host and is passed unchanged.
//
//   CCmdPackEnvelope, CCmdVoidDataEnvelope   head, type:32, index:32, size:32, the message's bytes
//   CCmdRecordEnvelope                       head, type:32, size:32, the message's bytes
//
// To send, a host writes its message into m_PackData; to receive, it creates the message of m_PackType and reads it
// from there. Read appends to m_PackData and keeps its read pointer; Write sends all of it, wherever the read pointer
// is. A size beyond the available bytes is refused, and so is a negative one, except in the void-data pair, which
// treats it as 0. Copies are deep.
//
// No envelope has a common result. A reply says in fields of its own how the operation ended, most often in a text
// m_Msg; the server defines the text, and whether an empty one means success.
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/envelope.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "packaging/data_packager.h"
#include "packaging/wire_interface.h"

// Type and index, and a message of any size.
class COMMONGROUND_API CCmdPackEnvelope : public CCmdPlatform
{
public:
    WIRE_INTERFACE_CMD_OVERRIDE

    // Which message of the feature the payload holds.
    int m_PackType = 0;
    // A second word, which the library passes unchanged.
    int m_PackIndex = 0;
    // The payload: what the message's Write produced.
    CCmdPackager m_PackData;

protected:
    explicit CCmdPackEnvelope(unsigned short id) : CCmdPlatform(id) {}
};

// Only a type, and a message of up to 65,536 bytes.
class COMMONGROUND_API CCmdRecordEnvelope : public CCmdPlatform
{
public:
    WIRE_INTERFACE_CMD_OVERRIDE

    // Which message of the feature the payload holds.
    int m_PackType = 0;
    // The payload: what the message's Write produced.
    CDataPackager m_PackData;

protected:
    explicit CCmdRecordEnvelope(unsigned short id) : CCmdPlatform(id) {}
};

// Type and index, and a message of up to 65,536 bytes. Read returns true if head, type or index cannot be read, and the
// object keeps its values from there on: the dispatch refuses bytes that the read pointer has not reached, and delivers
// the command if none are left. Read returns false if the size cannot be read. A size of 0 or less is valid and adds no
// bytes.
class COMMONGROUND_API CCmdVoidDataEnvelope : public CCmdPlatform
{
public:
    WIRE_INTERFACE_CMD_OVERRIDE

    // Which message of the feature the payload holds.
    int m_PackType = 0;
    // A second word, which the library passes unchanged.
    int m_PackIndex = 0;
    // The payload: what the message's Write produced.
    CDataPackager m_PackData;

protected:
    explicit CCmdVoidDataEnvelope(unsigned short id) : CCmdPlatform(id) {}
};

// Client to server: a request of the match feature, see packs/match.h. Answered by CCmdMatchPackReply.
class COMMONGROUND_API CCmdMatchPackRequest : public CCmdPackEnvelope
{
public:
    CCmdMatchPackRequest() : CCmdPackEnvelope(command_id::CCmdMatchPackRequest) {}
    COMMAND_INTERFACE(CCmdMatchPackRequest)
};

// Answers CCmdMatchPackRequest: a reply of the match feature, see packs/match.h. Its notices are sent as replies.
class COMMONGROUND_API CCmdMatchPackReply : public CCmdPackEnvelope
{
public:
    CCmdMatchPackReply() : CCmdPackEnvelope(command_id::CCmdMatchPackReply) {}
    COMMAND_INTERFACE(CCmdMatchPackReply)
};

// Client to server: a request of the wizard game, see packs/wizard_square.h. Answered by CCmdWizardPackReply.
class COMMONGROUND_API CCmdWizardPackRequest : public CCmdPackEnvelope
{
public:
    CCmdWizardPackRequest() : CCmdPackEnvelope(command_id::CCmdWizardPackRequest) {}
    COMMAND_INTERFACE(CCmdWizardPackRequest)
};

// Answers CCmdWizardPackRequest: a reply of the wizard game, see packs/wizard_square.h.
class COMMONGROUND_API CCmdWizardPackReply : public CCmdPackEnvelope
{
public:
    CCmdWizardPackReply() : CCmdPackEnvelope(command_id::CCmdWizardPackReply) {}
    COMMAND_INTERFACE(CCmdWizardPackReply)
};

// Client to server: a request of the home feature, see packs/home.h. Answered by CCmdHomePackReply.
class COMMONGROUND_API CCmdHomePackRequest : public CCmdPackEnvelope
{
public:
    CCmdHomePackRequest() : CCmdPackEnvelope(command_id::CCmdHomePackRequest) {}
    COMMAND_INTERFACE(CCmdHomePackRequest)
};

// Answers CCmdHomePackRequest: a reply of the home feature, see packs/home.h.
class COMMONGROUND_API CCmdHomePackReply : public CCmdPackEnvelope
{
public:
    CCmdHomePackReply() : CCmdPackEnvelope(command_id::CCmdHomePackReply) {}
    COMMAND_INTERFACE(CCmdHomePackReply)
};

// Client to server: a request of the world square, see packs/wizard_square.h. Answered by CCmdWorldSquarePackReply.
class COMMONGROUND_API CCmdWorldSquarePackRequest : public CCmdPackEnvelope
{
public:
    CCmdWorldSquarePackRequest() : CCmdPackEnvelope(command_id::CCmdWorldSquarePackRequest) {}
    COMMAND_INTERFACE(CCmdWorldSquarePackRequest)
};

// Answers CCmdWorldSquarePackRequest: a reply of the world square, see packs/wizard_square.h.
class COMMONGROUND_API CCmdWorldSquarePackReply : public CCmdPackEnvelope
{
public:
    CCmdWorldSquarePackReply() : CCmdPackEnvelope(command_id::CCmdWorldSquarePackReply) {}
    COMMAND_INTERFACE(CCmdWorldSquarePackReply)
};

// Client to server: a request of the changing room, see packs/changing_room.h. Answered by CCmdChangingRoomPackReply.
class COMMONGROUND_API CCmdChangingRoomPackRequest : public CCmdPackEnvelope
{
public:
    CCmdChangingRoomPackRequest() : CCmdPackEnvelope(command_id::CCmdChangingRoomPackRequest) {}
    COMMAND_INTERFACE(CCmdChangingRoomPackRequest)
};

// Answers CCmdChangingRoomPackRequest: a reply of the changing room, see packs/changing_room.h.
class COMMONGROUND_API CCmdChangingRoomPackReply : public CCmdPackEnvelope
{
public:
    CCmdChangingRoomPackReply() : CCmdPackEnvelope(command_id::CCmdChangingRoomPackReply) {}
    COMMAND_INTERFACE(CCmdChangingRoomPackReply)
};

// Client to server: a request of the travel feature, see packs/travel.h. Answered by CCmdTravelWorldPackReply.
class COMMONGROUND_API CCmdTravelWorldPackRequest : public CCmdPackEnvelope
{
public:
    CCmdTravelWorldPackRequest() : CCmdPackEnvelope(command_id::CCmdTravelWorldPackRequest) {}
    COMMAND_INTERFACE(CCmdTravelWorldPackRequest)
};

// Answers CCmdTravelWorldPackRequest: a reply of the travel feature, see packs/travel.h.
class COMMONGROUND_API CCmdTravelWorldPackReply : public CCmdPackEnvelope
{
public:
    CCmdTravelWorldPackReply() : CCmdPackEnvelope(command_id::CCmdTravelWorldPackReply) {}
    COMMAND_INTERFACE(CCmdTravelWorldPackReply)
};

// Client to server: a request of the friend feature, see packs/friend.h. Answered by CCmdFriendSystemPackReply.
class COMMONGROUND_API CCmdFriendSystemPackRequest : public CCmdPackEnvelope
{
public:
    CCmdFriendSystemPackRequest() : CCmdPackEnvelope(command_id::CCmdFriendSystemPackRequest) {}
    COMMAND_INTERFACE(CCmdFriendSystemPackRequest)
};

// Answers CCmdFriendSystemPackRequest: a reply of the friend feature, see packs/friend.h.
class COMMONGROUND_API CCmdFriendSystemPackReply : public CCmdPackEnvelope
{
public:
    CCmdFriendSystemPackReply() : CCmdPackEnvelope(command_id::CCmdFriendSystemPackReply) {}
    COMMAND_INTERFACE(CCmdFriendSystemPackReply)
};

// Client to server: a request of the achievement feature, see packs/achievement.h. Answered by
// CCmdAchievementPackReply.
class COMMONGROUND_API CCmdAchievementPackRequest : public CCmdPackEnvelope
{
public:
    CCmdAchievementPackRequest() : CCmdPackEnvelope(command_id::CCmdAchievementPackRequest) {}
    COMMAND_INTERFACE(CCmdAchievementPackRequest)
};

// Answers CCmdAchievementPackRequest: a reply of the achievement feature, see packs/achievement.h.
class COMMONGROUND_API CCmdAchievementPackReply : public CCmdPackEnvelope
{
public:
    CCmdAchievementPackReply() : CCmdPackEnvelope(command_id::CCmdAchievementPackReply) {}
    COMMAND_INTERFACE(CCmdAchievementPackReply)
};

// Client to server: a request of in-purchase, see packs/in_purchase.h. Answered by CCmdInPurchasePackReply.
class COMMONGROUND_API CCmdInPurchasePackRequest : public CCmdPackEnvelope
{
public:
    CCmdInPurchasePackRequest() : CCmdPackEnvelope(command_id::CCmdInPurchasePackRequest) {}
    COMMAND_INTERFACE(CCmdInPurchasePackRequest)
};

// Answers CCmdInPurchasePackRequest: a reply of in-purchase, see packs/in_purchase.h.
class COMMONGROUND_API CCmdInPurchasePackReply : public CCmdPackEnvelope
{
public:
    CCmdInPurchasePackReply() : CCmdPackEnvelope(command_id::CCmdInPurchasePackReply) {}
    COMMAND_INTERFACE(CCmdInPurchasePackReply)
};

// Query tool to server: a request of the query tool, see packs/query_tool.h. Answered by CCmdQueryToolReply.
class COMMONGROUND_API CCmdQueryToolRequest : public CCmdPackEnvelope
{
public:
    CCmdQueryToolRequest() : CCmdPackEnvelope(command_id::CCmdQueryToolRequest) {}
    COMMAND_INTERFACE(CCmdQueryToolRequest)
};

// Answers CCmdQueryToolRequest: a reply of the query tool, see packs/query_tool.h.
class COMMONGROUND_API CCmdQueryToolReply : public CCmdPackEnvelope
{
public:
    CCmdQueryToolReply() : CCmdPackEnvelope(command_id::CCmdQueryToolReply) {}
    COMMAND_INTERFACE(CCmdQueryToolReply)
};

// Between client and server: a request of profiling, see packs/profiling.h. Answered by CCmdProfilingPackReply.
class COMMONGROUND_API CCmdProfilingPackRequest : public CCmdRecordEnvelope
{
public:
    CCmdProfilingPackRequest() : CCmdRecordEnvelope(command_id::CCmdProfilingPackRequest) {}
    COMMAND_INTERFACE(CCmdProfilingPackRequest)
};

// Answers CCmdProfilingPackRequest: a reply of profiling, see packs/profiling.h.
class COMMONGROUND_API CCmdProfilingPackReply : public CCmdRecordEnvelope
{
public:
    CCmdProfilingPackReply() : CCmdRecordEnvelope(command_id::CCmdProfilingPackReply) {}
    COMMAND_INTERFACE(CCmdProfilingPackReply)
};

// Client to sport server: a request of the sport server, see packs/sport.h. Answered by CCmdSportPackReply.
class COMMONGROUND_API CCmdSportPackRequest : public CCmdRecordEnvelope
{
public:
    CCmdSportPackRequest() : CCmdRecordEnvelope(command_id::CCmdSportPackRequest) {}
    COMMAND_INTERFACE(CCmdSportPackRequest)
};

// Answers CCmdSportPackRequest: a reply of the sport server, see packs/sport.h.
class COMMONGROUND_API CCmdSportPackReply : public CCmdRecordEnvelope
{
public:
    CCmdSportPackReply() : CCmdRecordEnvelope(command_id::CCmdSportPackReply) {}
    COMMAND_INTERFACE(CCmdSportPackReply)
};

// Sport server to client: a notice of the sport server, see packs/sport.h. It has no request.
class COMMONGROUND_API CCmdSportPackNotify : public CCmdRecordEnvelope
{
public:
    CCmdSportPackNotify() : CCmdRecordEnvelope(command_id::CCmdSportPackNotify) {}
    COMMAND_INTERFACE(CCmdSportPackNotify)
};

// Client to platform server: a small request about an account, see commands/account_payloads.h, game_payloads.h,
// shop_payloads.h and packs/avatar.h. Answered by CCmdVoidDataReply.
class COMMONGROUND_API CCmdVoidDataRequest : public CCmdVoidDataEnvelope
{
public:
    CCmdVoidDataRequest() : CCmdVoidDataEnvelope(command_id::CCmdVoidDataRequest) {}
    COMMAND_INTERFACE(CCmdVoidDataRequest)
};

// Answers CCmdVoidDataRequest: a reply about an account, see the same headers.
class COMMONGROUND_API CCmdVoidDataReply : public CCmdVoidDataEnvelope
{
public:
    CCmdVoidDataReply() : CCmdVoidDataEnvelope(command_id::CCmdVoidDataReply) {}
    COMMAND_INTERFACE(CCmdVoidDataReply)
};
