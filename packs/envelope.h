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

    int m_PackType = 0;
    int m_PackIndex = 0;
    CCmdPackager m_PackData;

protected:
    explicit CCmdPackEnvelope(unsigned short id) : CCmdPlatform(id) {}
};

// Only a type, and a message of up to 65,536 bytes.
class COMMONGROUND_API CCmdRecordEnvelope : public CCmdPlatform
{
public:
    WIRE_INTERFACE_CMD_OVERRIDE

    int m_PackType = 0;
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

    int m_PackType = 0;
    int m_PackIndex = 0;
    CDataPackager m_PackData;

protected:
    explicit CCmdVoidDataEnvelope(unsigned short id) : CCmdPlatform(id) {}
};

class COMMONGROUND_API CCmdMatchPackRequest : public CCmdPackEnvelope
{
public:
    CCmdMatchPackRequest() : CCmdPackEnvelope(command_id::CCmdMatchPackRequest) {}
    COMMAND_INTERFACE(CCmdMatchPackRequest)
};

class COMMONGROUND_API CCmdMatchPackReply : public CCmdPackEnvelope
{
public:
    CCmdMatchPackReply() : CCmdPackEnvelope(command_id::CCmdMatchPackReply) {}
    COMMAND_INTERFACE(CCmdMatchPackReply)
};

class COMMONGROUND_API CCmdWizardPackRequest : public CCmdPackEnvelope
{
public:
    CCmdWizardPackRequest() : CCmdPackEnvelope(command_id::CCmdWizardPackRequest) {}
    COMMAND_INTERFACE(CCmdWizardPackRequest)
};

class COMMONGROUND_API CCmdWizardPackReply : public CCmdPackEnvelope
{
public:
    CCmdWizardPackReply() : CCmdPackEnvelope(command_id::CCmdWizardPackReply) {}
    COMMAND_INTERFACE(CCmdWizardPackReply)
};

class COMMONGROUND_API CCmdHomePackRequest : public CCmdPackEnvelope
{
public:
    CCmdHomePackRequest() : CCmdPackEnvelope(command_id::CCmdHomePackRequest) {}
    COMMAND_INTERFACE(CCmdHomePackRequest)
};

class COMMONGROUND_API CCmdHomePackReply : public CCmdPackEnvelope
{
public:
    CCmdHomePackReply() : CCmdPackEnvelope(command_id::CCmdHomePackReply) {}
    COMMAND_INTERFACE(CCmdHomePackReply)
};

class COMMONGROUND_API CCmdWorldSquarePackRequest : public CCmdPackEnvelope
{
public:
    CCmdWorldSquarePackRequest() : CCmdPackEnvelope(command_id::CCmdWorldSquarePackRequest) {}
    COMMAND_INTERFACE(CCmdWorldSquarePackRequest)
};

class COMMONGROUND_API CCmdWorldSquarePackReply : public CCmdPackEnvelope
{
public:
    CCmdWorldSquarePackReply() : CCmdPackEnvelope(command_id::CCmdWorldSquarePackReply) {}
    COMMAND_INTERFACE(CCmdWorldSquarePackReply)
};

class COMMONGROUND_API CCmdChangingRoomPackRequest : public CCmdPackEnvelope
{
public:
    CCmdChangingRoomPackRequest() : CCmdPackEnvelope(command_id::CCmdChangingRoomPackRequest) {}
    COMMAND_INTERFACE(CCmdChangingRoomPackRequest)
};

class COMMONGROUND_API CCmdChangingRoomPackReply : public CCmdPackEnvelope
{
public:
    CCmdChangingRoomPackReply() : CCmdPackEnvelope(command_id::CCmdChangingRoomPackReply) {}
    COMMAND_INTERFACE(CCmdChangingRoomPackReply)
};

class COMMONGROUND_API CCmdTravelWorldPackRequest : public CCmdPackEnvelope
{
public:
    CCmdTravelWorldPackRequest() : CCmdPackEnvelope(command_id::CCmdTravelWorldPackRequest) {}
    COMMAND_INTERFACE(CCmdTravelWorldPackRequest)
};

class COMMONGROUND_API CCmdTravelWorldPackReply : public CCmdPackEnvelope
{
public:
    CCmdTravelWorldPackReply() : CCmdPackEnvelope(command_id::CCmdTravelWorldPackReply) {}
    COMMAND_INTERFACE(CCmdTravelWorldPackReply)
};

class COMMONGROUND_API CCmdFriendSystemPackRequest : public CCmdPackEnvelope
{
public:
    CCmdFriendSystemPackRequest() : CCmdPackEnvelope(command_id::CCmdFriendSystemPackRequest) {}
    COMMAND_INTERFACE(CCmdFriendSystemPackRequest)
};

class COMMONGROUND_API CCmdFriendSystemPackReply : public CCmdPackEnvelope
{
public:
    CCmdFriendSystemPackReply() : CCmdPackEnvelope(command_id::CCmdFriendSystemPackReply) {}
    COMMAND_INTERFACE(CCmdFriendSystemPackReply)
};

class COMMONGROUND_API CCmdAchievementPackRequest : public CCmdPackEnvelope
{
public:
    CCmdAchievementPackRequest() : CCmdPackEnvelope(command_id::CCmdAchievementPackRequest) {}
    COMMAND_INTERFACE(CCmdAchievementPackRequest)
};

class COMMONGROUND_API CCmdAchievementPackReply : public CCmdPackEnvelope
{
public:
    CCmdAchievementPackReply() : CCmdPackEnvelope(command_id::CCmdAchievementPackReply) {}
    COMMAND_INTERFACE(CCmdAchievementPackReply)
};

class COMMONGROUND_API CCmdInPurchasePackRequest : public CCmdPackEnvelope
{
public:
    CCmdInPurchasePackRequest() : CCmdPackEnvelope(command_id::CCmdInPurchasePackRequest) {}
    COMMAND_INTERFACE(CCmdInPurchasePackRequest)
};

class COMMONGROUND_API CCmdInPurchasePackReply : public CCmdPackEnvelope
{
public:
    CCmdInPurchasePackReply() : CCmdPackEnvelope(command_id::CCmdInPurchasePackReply) {}
    COMMAND_INTERFACE(CCmdInPurchasePackReply)
};

class COMMONGROUND_API CCmdQueryToolRequest : public CCmdPackEnvelope
{
public:
    CCmdQueryToolRequest() : CCmdPackEnvelope(command_id::CCmdQueryToolRequest) {}
    COMMAND_INTERFACE(CCmdQueryToolRequest)
};

class COMMONGROUND_API CCmdQueryToolReply : public CCmdPackEnvelope
{
public:
    CCmdQueryToolReply() : CCmdPackEnvelope(command_id::CCmdQueryToolReply) {}
    COMMAND_INTERFACE(CCmdQueryToolReply)
};

class COMMONGROUND_API CCmdProfilingPackRequest : public CCmdRecordEnvelope
{
public:
    CCmdProfilingPackRequest() : CCmdRecordEnvelope(command_id::CCmdProfilingPackRequest) {}
    COMMAND_INTERFACE(CCmdProfilingPackRequest)
};

class COMMONGROUND_API CCmdProfilingPackReply : public CCmdRecordEnvelope
{
public:
    CCmdProfilingPackReply() : CCmdRecordEnvelope(command_id::CCmdProfilingPackReply) {}
    COMMAND_INTERFACE(CCmdProfilingPackReply)
};

class COMMONGROUND_API CCmdSportPackRequest : public CCmdRecordEnvelope
{
public:
    CCmdSportPackRequest() : CCmdRecordEnvelope(command_id::CCmdSportPackRequest) {}
    COMMAND_INTERFACE(CCmdSportPackRequest)
};

class COMMONGROUND_API CCmdSportPackReply : public CCmdRecordEnvelope
{
public:
    CCmdSportPackReply() : CCmdRecordEnvelope(command_id::CCmdSportPackReply) {}
    COMMAND_INTERFACE(CCmdSportPackReply)
};

class COMMONGROUND_API CCmdSportPackNotify : public CCmdRecordEnvelope
{
public:
    CCmdSportPackNotify() : CCmdRecordEnvelope(command_id::CCmdSportPackNotify) {}
    COMMAND_INTERFACE(CCmdSportPackNotify)
};

class COMMONGROUND_API CCmdVoidDataRequest : public CCmdVoidDataEnvelope
{
public:
    CCmdVoidDataRequest() : CCmdVoidDataEnvelope(command_id::CCmdVoidDataRequest) {}
    COMMAND_INTERFACE(CCmdVoidDataRequest)
};

class COMMONGROUND_API CCmdVoidDataReply : public CCmdVoidDataEnvelope
{
public:
    CCmdVoidDataReply() : CCmdVoidDataEnvelope(command_id::CCmdVoidDataReply) {}
    COMMAND_INTERFACE(CCmdVoidDataReply)
};
