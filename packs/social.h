// The social envelope and its messages: a caller occupies one of a pool of APIs, creates an access token and releases
// the API. Unlike the other envelopes it has a seed, 16-bit type and index, and fields of request and reply after the
// payload.
//
//   CCmdSocialPlatform   head, seed:text, type:16, index:16, size:32, the message's bytes
//   CCmdSocialRequest    the same, extra:text
//   CCmdSocialReply      the same, error:16, message:text
#pragma once

#include "dispatch/command_process.h"
#include "dispatch/ids/social.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "packaging/wire_interface.h"

enum SocialError : unsigned short
{
    kSocialErrorNone = 0,
    kSocialErrorNoToken = 1,
    kSocialErrorInvalidToken = 2,
    kSocialErrorNoFreeApi = 3
};

// The message for an error, in Chinese; empty for none, "Unknow Error" for an unknown one.
COMMONGROUND_API zet::String_T<wchar_t> getSocialErrMsg(int error);

// The base of request and reply, not a command itself. Read appends to m_PackData. The library does not check the seed.
class COMMONGROUND_API CCmdSocialPlatform : public CCmdPlatform
{
public:
    // The seed of this process, generated when the library is loaded, so that all social commands of a process have the
    // same one. Not const, since hosts know it as a variable; nothing in the library assigns to it.
    static zet::Uuid g_VerifySeed;

    // Sets m_VerifySeed to the twelve hexadecimal digits of g_VerifySeed's last six bytes.
    explicit CCmdSocialPlatform(unsigned short id);
    WIRE_INTERFACE_CMD_OVERRIDE

    // Return and set the fields of the same names below.
    const zet::String_T<wchar_t>& getVerifySeed() const { return m_VerifySeed; }
    void setVerifySeed(const zet::String_T<wchar_t>& seed) { m_VerifySeed = seed; }
    unsigned short getPackType() const { return m_PackType; }
    void setPackType(unsigned short type) { m_PackType = type; }
    unsigned short getPackIndex() const { return m_PackIndex; }
    void setPackIndex(unsigned short index) { m_PackIndex = index; }
    // For a message's Write and Read.
    CCmdPackager* getPackData() { return &m_PackData; }
    const CCmdPackager* getPackData() const { return &m_PackData; }

    // The verification seed: that of the process, unless setVerifySeed replaces it.
    zet::String_T<wchar_t> m_VerifySeed;
    // The type of the message in m_PackData, a SocialPackType.
    unsigned short m_PackType = 0;
    // The index of the message, which a reply returns.
    unsigned short m_PackIndex = 0;
    // The bytes of the message.
    CCmdPackager m_PackData;
};

// To the server: a request to its pool of APIs. Answered by CCmdSocialReply.
class COMMONGROUND_API CCmdSocialRequest : public CCmdSocialPlatform
{
public:
    CCmdSocialRequest() : CCmdSocialPlatform(command_id::CCmdSocialRequest) {}
    COMMAND_INTERFACE(CCmdSocialRequest)

    zet::String_T<wchar_t> m_Extra;
};

// Answers CCmdSocialRequest: a reply with a numeric error. Build it from its request, so that type and index come back.
class COMMONGROUND_API CCmdSocialReply : public CCmdSocialPlatform
{
public:
    CCmdSocialReply() : CCmdSocialPlatform(command_id::CCmdSocialReply) {}
    // A reply to a request, which must not be null: copies its type and index, and keeps the seed of this process.
    explicit CCmdSocialReply(const CCmdSocialRequest* request);
    COMMAND_INTERFACE(CCmdSocialReply)

    // A SocialError, or any value from a peer.
    unsigned short m_Error = kSocialErrorNone;
    zet::String_T<wchar_t> m_Msg;
};

// The types of the messages; a request and its reply share one.
enum SocialPackType : unsigned short
{
    kSocialOccupyAPI = 1,
    kSocialReleaseAPI = 2,
    kSocialCreateAccessToken = 3
};

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_BEGIN

// A message of the envelope. Its type is sent as the envelope's m_PackType, not among its own bytes.
class COMMONGROUND_API CmdSocialSubPack
{
public:
    explicit CmdSocialSubPack(unsigned short type) : m_PackType(type) {}
    WIRE_INTERFACE_CMD_VIRTUAL

    // The type of the message, a SocialPackType.
    unsigned short getPackType() const { return m_PackType; }
    void setPackType(unsigned short type) { m_PackType = type; }

    unsigned short m_PackType;
};

// Request in CCmdSocialRequest: occupies a free API of the pool. Answered by CmdSocialOccupyAPIReply.
class COMMONGROUND_API CmdSocialOccupyAPIRequest : public CmdSocialSubPack
{
public:
    CmdSocialOccupyAPIRequest() : CmdSocialSubPack(kSocialOccupyAPI) {}
    WIRE_INTERFACE_CMD_OVERRIDE
};

// Reply in CCmdSocialReply to CmdSocialOccupyAPIRequest: the API is occupied.
class COMMONGROUND_API CmdSocialOccupyAPIReply : public CmdSocialSubPack
{
public:
    CmdSocialOccupyAPIReply() : CmdSocialSubPack(kSocialOccupyAPI) {}
    WIRE_INTERFACE_CMD_OVERRIDE

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Request in CCmdSocialRequest: releases an API. Answered by CmdSocialReleaseAPIReply.
class COMMONGROUND_API CmdSocialReleaseAPIRequest : public CmdSocialSubPack
{
public:
    CmdSocialReleaseAPIRequest() : CmdSocialSubPack(kSocialReleaseAPI) {}
    WIRE_INTERFACE_CMD_OVERRIDE

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    bool m_Flag1 = false;
};

// Reply in CCmdSocialReply to CmdSocialReleaseAPIRequest: the API is released.
class COMMONGROUND_API CmdSocialReleaseAPIReply : public CmdSocialSubPack
{
public:
    CmdSocialReleaseAPIReply() : CmdSocialSubPack(kSocialReleaseAPI) {}
    WIRE_INTERFACE_CMD_OVERRIDE
};

// Request in CCmdSocialRequest: creates an access token. Answered by CmdSocialCreateAccessTokenReply.
class COMMONGROUND_API CmdSocialCreateAccessTokenRequest : public CmdSocialSubPack
{
public:
    CmdSocialCreateAccessTokenRequest() : CmdSocialSubPack(kSocialCreateAccessToken) {}
    WIRE_INTERFACE_CMD_OVERRIDE
};

// Reply in CCmdSocialReply to CmdSocialCreateAccessTokenRequest: the access token.
class COMMONGROUND_API CmdSocialCreateAccessTokenReply : public CmdSocialSubPack
{
public:
    CmdSocialCreateAccessTokenReply() : CmdSocialSubPack(kSocialCreateAccessToken) {}
    WIRE_INTERFACE_CMD_OVERRIDE

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Value1 = 0;
};

COMMONGROUND_NO_VIRTUAL_DESTRUCTOR_END
