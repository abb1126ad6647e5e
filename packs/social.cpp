#include "packs/social.h"

#include "packaging/wire/order.h"

namespace
{

zet::Uuid freshId()
{
    zet::Uuid id;
    zet::uuid_create(id);
    return id;
}

} // namespace

zet::Uuid CCmdSocialPlatform::g_VerifySeed = freshId();

CCmdSocialPlatform::CCmdSocialPlatform(unsigned short id)
    : CCmdPlatform(id), m_VerifySeed(g_VerifySeed.m_Node.convertToString())
{
}

CCmdSocialReply::CCmdSocialReply(const CCmdSocialRequest* request) : CCmdSocialReply()
{
    m_PackType = request->m_PackType;
    m_PackIndex = request->m_PackIndex;
}

zet::String_T<wchar_t> getSocialErrMsg(int error)
{
    switch (error)
    {
    case kSocialErrorNone:
        return L"";
    case kSocialErrorNoToken:
        return L"创建access_token失败";
    case kSocialErrorInvalidToken:
        return L"无效的access_token";
    case kSocialErrorNoFreeApi:
        return L"没有空闲的API";
    default:
        return L"Unknow Error";
    }
}

WIRE_ORDER_CMD(CCmdSocialPlatform)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_VerifySeed, r.m_PackType, r.m_PackIndex, r.m_PackData);
}

WIRE_COMMAND(CCmdSocialRequest)
{
    return HEAD(CCmdSocialPlatform) && FIELDS(r.m_Extra);
}

WIRE_COMMAND(CCmdSocialReply)
{
    return HEAD(CCmdSocialPlatform) && FIELDS(r.m_Error, r.m_Msg);
}

WIRE_ORDER_CMD(CmdSocialSubPack)
{
    return NOT_SENT(r.m_PackType);
}

WIRE_ORDER_CMD(CmdSocialOccupyAPIRequest)
{
    return HEAD(CmdSocialSubPack);
}

WIRE_ORDER_CMD(CmdSocialOccupyAPIReply)
{
    return HEAD(CmdSocialSubPack) && FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_ORDER_CMD(CmdSocialReleaseAPIRequest)
{
    return HEAD(CmdSocialSubPack) && FIELDS(r.m_Text1, r.m_Text2, r.m_Flag1);
}

WIRE_ORDER_CMD(CmdSocialReleaseAPIReply)
{
    return HEAD(CmdSocialSubPack);
}

WIRE_ORDER_CMD(CmdSocialCreateAccessTokenRequest)
{
    return HEAD(CmdSocialSubPack);
}

WIRE_ORDER_CMD(CmdSocialCreateAccessTokenReply)
{
    return HEAD(CmdSocialSubPack) && FIELDS(r.m_Text1, r.m_Text2, r.m_Value1);
}
