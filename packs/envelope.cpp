#include "packs/envelope.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(CCmdPackEnvelope)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_PackType, r.m_PackIndex, r.m_PackData);
}

WIRE_ORDER_CMD(CCmdRecordEnvelope)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_PackType, r.m_PackData);
}

WIRE_SCHEMA(CCmdVoidDataEnvelope)
WIRE_WRITE(CCmdVoidDataEnvelope, CCmdPackager)
WIRE_WALK(CCmdVoidDataEnvelope)
{
    return BY_HAND(EndsWellBeforeItsBytes, HEAD(CCmdPlatform) && FIELDS(r.m_PackType, r.m_PackIndex, r.m_PackData));
}

// Written by hand: a failure before the size counts as success here, and so does a size below 1.
bool CCmdVoidDataEnvelope::Read(CCmdPackager* pk)
{
    wire::Reader<CCmdPackager> reader(*pk);
    if (!CCmdPlatform::Read(pk) || !reader.Fields("", m_PackType, m_PackIndex))
        return true;
    int size = 0;
    if (!reader.one(size))
        return false;
    if (size <= 0)
        return true;
    const unsigned char* bytes = size <= m_PackData.GetBufferSize() ? wire::Access::next(*pk, size) : nullptr;
    if (!bytes)
        return false;
    wire::Access::took(*pk, size);
    return m_PackData.Write(bytes, size);
}

WIRE_COMMAND(CCmdMatchPackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdMatchPackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdWizardPackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdWizardPackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdHomePackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdHomePackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdWorldSquarePackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdWorldSquarePackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdChangingRoomPackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdChangingRoomPackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdTravelWorldPackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdTravelWorldPackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdFriendSystemPackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdFriendSystemPackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdAchievementPackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdAchievementPackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdInPurchasePackRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdInPurchasePackReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdQueryToolRequest)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdQueryToolReply)
{
    return HEAD(CCmdPackEnvelope);
}

WIRE_COMMAND(CCmdProfilingPackRequest)
{
    return HEAD(CCmdRecordEnvelope);
}

WIRE_COMMAND(CCmdProfilingPackReply)
{
    return HEAD(CCmdRecordEnvelope);
}

WIRE_COMMAND(CCmdSportPackRequest)
{
    return HEAD(CCmdRecordEnvelope);
}

WIRE_COMMAND(CCmdSportPackReply)
{
    return HEAD(CCmdRecordEnvelope);
}

WIRE_COMMAND(CCmdSportPackNotify)
{
    return HEAD(CCmdRecordEnvelope);
}

WIRE_COMMAND(CCmdVoidDataRequest)
{
    return HEAD(CCmdVoidDataEnvelope);
}

WIRE_COMMAND(CCmdVoidDataReply)
{
    return HEAD(CCmdVoidDataEnvelope);
}
