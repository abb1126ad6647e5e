// The dance-lesson service: its lobby, its lessons, a player's actions in one, and its notices. Every reply starts with
// a one-byte result and a text. In every list an entry that cannot be read is kept as far as it was read, and the last
// entry decides the result.
#pragma once

#include "commands/lesson_records.h"
#include "dispatch/command_process.h"
#include "dispatch/ids/lesson.h"
#include "packaging/command_head.h"

#include <vector>

class COMMONGROUND_API CCmdMazurixEnterLobbyRequest : public CCmdPlatform
{
public:
    CCmdMazurixEnterLobbyRequest() : CCmdPlatform(command_id::CCmdMazurixEnterLobbyRequest) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLobbyRequest)

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixEnterLobbyReply : public CCmdPlatform
{
public:
    CCmdMazurixEnterLobbyReply() : CCmdPlatform(command_id::CCmdMazurixEnterLobbyReply) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLobbyReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Values[7] = {};
    MazurixLobbyInfo m_MazurixLobbyInfo;
};

class COMMONGROUND_API CCmdMazurixStartGameRequest : public CCmdPlatform
{
public:
    CCmdMazurixStartGameRequest() : CCmdPlatform(command_id::CCmdMazurixStartGameRequest) {}
    COMMAND_INTERFACE(CCmdMazurixStartGameRequest)

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixStartGameReply : public CCmdPlatform
{
public:
    CCmdMazurixStartGameReply() : CCmdPlatform(command_id::CCmdMazurixStartGameReply) {}
    COMMAND_INTERFACE(CCmdMazurixStartGameReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixEndGameRequest : public CCmdPlatform
{
public:
    CCmdMazurixEndGameRequest() : CCmdPlatform(command_id::CCmdMazurixEndGameRequest) {}
    COMMAND_INTERFACE(CCmdMazurixEndGameRequest)

    zet::String_T<wchar_t> m_Text1;
    unsigned char m_Byte1 = 0;
    int m_Value1 = 0;
    int m_Value2 = 0;
    MazurixValues m_MazurixValues1;
    MazurixValues m_MazurixValues2;
};

// A reply that ends after its texts is valid, with seven zeros.
class COMMONGROUND_API CCmdMazurixEndGameReply : public CCmdPlatform
{
public:
    CCmdMazurixEndGameReply() : CCmdPlatform(command_id::CCmdMazurixEndGameReply) {}
    COMMAND_INTERFACE(CCmdMazurixEndGameReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Values[7] = {};
};

class COMMONGROUND_API CCmdMazurixGetLessonsRequest : public CCmdPlatform
{
public:
    CCmdMazurixGetLessonsRequest() : CCmdPlatform(command_id::CCmdMazurixGetLessonsRequest) {}
    COMMAND_INTERFACE(CCmdMazurixGetLessonsRequest)

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixGetLessonsReply : public CCmdPlatform
{
public:
    CCmdMazurixGetLessonsReply() : CCmdPlatform(command_id::CCmdMazurixGetLessonsReply) {}
    COMMAND_INTERFACE(CCmdMazurixGetLessonsReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    std::vector<MazurixLessonInfo> m_MazurixLessonInfos;
};

class COMMONGROUND_API CCmdMazurixEnterLessonRequest : public CCmdPlatform
{
public:
    CCmdMazurixEnterLessonRequest() : CCmdPlatform(command_id::CCmdMazurixEnterLessonRequest) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLessonRequest)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

class COMMONGROUND_API CCmdMazurixEnterLessonReply : public CCmdPlatform
{
public:
    CCmdMazurixEnterLessonReply() : CCmdPlatform(command_id::CCmdMazurixEnterLessonReply) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLessonReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

class COMMONGROUND_API CCmdMazurixLeaveLessonRequest : public CCmdPlatform
{
public:
    CCmdMazurixLeaveLessonRequest() : CCmdPlatform(command_id::CCmdMazurixLeaveLessonRequest) {}
    COMMAND_INTERFACE(CCmdMazurixLeaveLessonRequest)
};

class COMMONGROUND_API CCmdMazurixLeaveLessonReply : public CCmdPlatform
{
public:
    CCmdMazurixLeaveLessonReply() : CCmdPlatform(command_id::CCmdMazurixLeaveLessonReply) {}
    COMMAND_INTERFACE(CCmdMazurixLeaveLessonReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixSubmitDataRequest : public CCmdPlatform
{
public:
    CCmdMazurixSubmitDataRequest() : CCmdPlatform(command_id::CCmdMazurixSubmitDataRequest) {}
    COMMAND_INTERFACE(CCmdMazurixSubmitDataRequest)

    unsigned short m_Word1 = 0;
    unsigned char m_Byte1 = 0;
    unsigned short m_Word2 = 0;
};

class COMMONGROUND_API CCmdMazurixSubmitDataReply : public CCmdPlatform
{
public:
    CCmdMazurixSubmitDataReply() : CCmdPlatform(command_id::CCmdMazurixSubmitDataReply) {}
    COMMAND_INTERFACE(CCmdMazurixSubmitDataReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixSendChatRequest : public CCmdPlatform
{
public:
    CCmdMazurixSendChatRequest() : CCmdPlatform(command_id::CCmdMazurixSendChatRequest) {}
    COMMAND_INTERFACE(CCmdMazurixSendChatRequest)

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixSendChatReply : public CCmdPlatform
{
public:
    CCmdMazurixSendChatReply() : CCmdPlatform(command_id::CCmdMazurixSendChatReply) {}
    COMMAND_INTERFACE(CCmdMazurixSendChatReply)

    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixOnUsersEnterLessonNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnUsersEnterLessonNotify() : CCmdPlatform(command_id::CCmdMazurixOnUsersEnterLessonNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnUsersEnterLessonNotify)

    std::vector<MazurixUserInfo> m_MazurixUserInfos;
};

class COMMONGROUND_API CCmdMazurixOnUsersLeaveLessonNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnUsersLeaveLessonNotify() : CCmdPlatform(command_id::CCmdMazurixOnUsersLeaveLessonNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnUsersLeaveLessonNotify)

    std::vector<zet::String_T<wchar_t>> m_Texts;
};

class COMMONGROUND_API CCmdMazurixOnLessonStartedNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnLessonStartedNotify() : CCmdPlatform(command_id::CCmdMazurixOnLessonStartedNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnLessonStartedNotify)

    std::vector<MazurixUserInfo> m_MazurixUserInfos;
};

class COMMONGROUND_API CCmdMazurixOnLessonEndedNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnLessonEndedNotify() : CCmdPlatform(command_id::CCmdMazurixOnLessonEndedNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnLessonEndedNotify)
};

class COMMONGROUND_API CCmdMazurixOnDataExportedNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnDataExportedNotify() : CCmdPlatform(command_id::CCmdMazurixOnDataExportedNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnDataExportedNotify)

    MazurixExportInfo m_MazurixExportInfo;
};

class COMMONGROUND_API CCmdMazurixOnUserLeaveRoomNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnUserLeaveRoomNotify() : CCmdPlatform(command_id::CCmdMazurixOnUserLeaveRoomNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnUserLeaveRoomNotify)

    zet::String_T<wchar_t> m_Text1;
};

class COMMONGROUND_API CCmdMazurixOnReceiveChatNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnReceiveChatNotify() : CCmdPlatform(command_id::CCmdMazurixOnReceiveChatNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnReceiveChatNotify)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

class COMMONGROUND_API CCmdMazurixSyncLessonsRequest : public CCmdPlatform
{
public:
    CCmdMazurixSyncLessonsRequest() : CCmdPlatform(command_id::CCmdMazurixSyncLessonsRequest) {}
    COMMAND_INTERFACE(CCmdMazurixSyncLessonsRequest)

    std::vector<MazurixLessonInfo> m_MazurixLessonInfos;
};
