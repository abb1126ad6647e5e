// The dance-lesson service: its lobby, its lessons, a player's actions in one, and its notices. Every reply starts with
// a one-byte result and a text. In every list an entry that cannot be read is kept as far as it was read, and the last
// entry decides the result.
#pragma once

#include "commands/lesson_records.h"
#include "dispatch/command_process.h"
#include "dispatch/ids/lesson.h"
#include "packaging/command_head.h"

#include <vector>

// Client to lesson service: a player enters the lobby. Answered by CCmdMazurixEnterLobbyReply.
class COMMONGROUND_API CCmdMazurixEnterLobbyRequest : public CCmdPlatform
{
public:
    CCmdMazurixEnterLobbyRequest() : CCmdPlatform(command_id::CCmdMazurixEnterLobbyRequest) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLobbyRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdMazurixEnterLobbyRequest: the lobby. The seven values do not affect the result: those that cannot be read
// are 0.
class COMMONGROUND_API CCmdMazurixEnterLobbyReply : public CCmdPlatform
{
public:
    static constexpr int kValues = 7;

    CCmdMazurixEnterLobbyReply() : CCmdPlatform(command_id::CCmdMazurixEnterLobbyReply) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLobbyReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Values[kValues] = {};
    MazurixLobbyInfo m_MazurixLobbyInfo;
};

// Client to lesson service: starts a game. Answered by CCmdMazurixStartGameReply.
class COMMONGROUND_API CCmdMazurixStartGameRequest : public CCmdPlatform
{
public:
    CCmdMazurixStartGameRequest() : CCmdPlatform(command_id::CCmdMazurixStartGameRequest) {}
    COMMAND_INTERFACE(CCmdMazurixStartGameRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdMazurixStartGameRequest.
class COMMONGROUND_API CCmdMazurixStartGameReply : public CCmdPlatform
{
public:
    CCmdMazurixStartGameReply() : CCmdPlatform(command_id::CCmdMazurixStartGameReply) {}
    COMMAND_INTERFACE(CCmdMazurixStartGameReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Client to lesson service: ends a game. Answered by CCmdMazurixEndGameReply.
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

// Answers CCmdMazurixEndGameRequest. The seven values do not affect the result: a reply that ends after its texts is
// valid, with seven zeros.
class COMMONGROUND_API CCmdMazurixEndGameReply : public CCmdPlatform
{
public:
    static constexpr int kValues = 7;

    CCmdMazurixEndGameReply() : CCmdPlatform(command_id::CCmdMazurixEndGameReply) {}
    COMMAND_INTERFACE(CCmdMazurixEndGameReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    int m_Values[kValues] = {};
};

// Client to lesson service: asks for the list of the lessons. Answered by CCmdMazurixGetLessonsReply.
class COMMONGROUND_API CCmdMazurixGetLessonsRequest : public CCmdPlatform
{
public:
    CCmdMazurixGetLessonsRequest() : CCmdPlatform(command_id::CCmdMazurixGetLessonsRequest) {}
    COMMAND_INTERFACE(CCmdMazurixGetLessonsRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdMazurixGetLessonsRequest: the lessons. An empty list is valid.
class COMMONGROUND_API CCmdMazurixGetLessonsReply : public CCmdPlatform
{
public:
    CCmdMazurixGetLessonsReply() : CCmdPlatform(command_id::CCmdMazurixGetLessonsReply) {}
    COMMAND_INTERFACE(CCmdMazurixGetLessonsReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    std::vector<MazurixLessonInfo> m_MazurixLessonInfos;
};

// Client to lesson service: a player enters a lesson. Answered by CCmdMazurixEnterLessonReply.
class COMMONGROUND_API CCmdMazurixEnterLessonRequest : public CCmdPlatform
{
public:
    CCmdMazurixEnterLessonRequest() : CCmdPlatform(command_id::CCmdMazurixEnterLessonRequest) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLessonRequest)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
    zet::String_T<wchar_t> m_Text3;
};

// Answers CCmdMazurixEnterLessonRequest.
class COMMONGROUND_API CCmdMazurixEnterLessonReply : public CCmdPlatform
{
public:
    CCmdMazurixEnterLessonReply() : CCmdPlatform(command_id::CCmdMazurixEnterLessonReply) {}
    COMMAND_INTERFACE(CCmdMazurixEnterLessonReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
    int m_Value1 = 0;
};

// Client to lesson service: a player leaves a lesson. Answered by CCmdMazurixLeaveLessonReply.
class COMMONGROUND_API CCmdMazurixLeaveLessonRequest : public CCmdPlatform
{
public:
    CCmdMazurixLeaveLessonRequest() : CCmdPlatform(command_id::CCmdMazurixLeaveLessonRequest) {}
    COMMAND_INTERFACE(CCmdMazurixLeaveLessonRequest)
};

// Answers CCmdMazurixLeaveLessonRequest.
class COMMONGROUND_API CCmdMazurixLeaveLessonReply : public CCmdPlatform
{
public:
    CCmdMazurixLeaveLessonReply() : CCmdPlatform(command_id::CCmdMazurixLeaveLessonReply) {}
    COMMAND_INTERFACE(CCmdMazurixLeaveLessonReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Client to lesson service: data of a player who is dancing. Answered by CCmdMazurixSubmitDataReply.
class COMMONGROUND_API CCmdMazurixSubmitDataRequest : public CCmdPlatform
{
public:
    CCmdMazurixSubmitDataRequest() : CCmdPlatform(command_id::CCmdMazurixSubmitDataRequest) {}
    COMMAND_INTERFACE(CCmdMazurixSubmitDataRequest)

    unsigned short m_Word1 = 0;
    unsigned char m_Byte1 = 0;
    unsigned short m_Word2 = 0;
};

// Answers CCmdMazurixSubmitDataRequest.
class COMMONGROUND_API CCmdMazurixSubmitDataReply : public CCmdPlatform
{
public:
    CCmdMazurixSubmitDataReply() : CCmdPlatform(command_id::CCmdMazurixSubmitDataReply) {}
    COMMAND_INTERFACE(CCmdMazurixSubmitDataReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Client to lesson service: a player chats. Answered by CCmdMazurixSendChatReply.
class COMMONGROUND_API CCmdMazurixSendChatRequest : public CCmdPlatform
{
public:
    CCmdMazurixSendChatRequest() : CCmdPlatform(command_id::CCmdMazurixSendChatRequest) {}
    COMMAND_INTERFACE(CCmdMazurixSendChatRequest)

    zet::String_T<wchar_t> m_Text1;
};

// Answers CCmdMazurixSendChatRequest.
class COMMONGROUND_API CCmdMazurixSendChatReply : public CCmdPlatform
{
public:
    CCmdMazurixSendChatReply() : CCmdPlatform(command_id::CCmdMazurixSendChatReply) {}
    COMMAND_INTERFACE(CCmdMazurixSendChatReply)

    // The result.
    unsigned char m_Byte1 = 0;
    zet::String_T<wchar_t> m_Text1;
};

// Between client and lesson service: notifies that users have entered a lesson.
class COMMONGROUND_API CCmdMazurixOnUsersEnterLessonNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnUsersEnterLessonNotify() : CCmdPlatform(command_id::CCmdMazurixOnUsersEnterLessonNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnUsersEnterLessonNotify)

    std::vector<MazurixUserInfo> m_MazurixUserInfos;
};

// Between client and lesson service: notifies that users have left a lesson.
class COMMONGROUND_API CCmdMazurixOnUsersLeaveLessonNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnUsersLeaveLessonNotify() : CCmdPlatform(command_id::CCmdMazurixOnUsersLeaveLessonNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnUsersLeaveLessonNotify)

    std::vector<zet::String_T<wchar_t>> m_Texts;
};

// Between client and lesson service: notifies that a lesson has started, with its users.
class COMMONGROUND_API CCmdMazurixOnLessonStartedNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnLessonStartedNotify() : CCmdPlatform(command_id::CCmdMazurixOnLessonStartedNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnLessonStartedNotify)

    std::vector<MazurixUserInfo> m_MazurixUserInfos;
};

// Between client and lesson service: notifies that a lesson has ended.
class COMMONGROUND_API CCmdMazurixOnLessonEndedNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnLessonEndedNotify() : CCmdPlatform(command_id::CCmdMazurixOnLessonEndedNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnLessonEndedNotify)
};

// Between client and lesson service: notifies that data was exported.
class COMMONGROUND_API CCmdMazurixOnDataExportedNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnDataExportedNotify() : CCmdPlatform(command_id::CCmdMazurixOnDataExportedNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnDataExportedNotify)

    MazurixExportInfo m_MazurixExportInfo;
};

// Between client and lesson service: notifies that a user has left a room.
class COMMONGROUND_API CCmdMazurixOnUserLeaveRoomNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnUserLeaveRoomNotify() : CCmdPlatform(command_id::CCmdMazurixOnUserLeaveRoomNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnUserLeaveRoomNotify)

    zet::String_T<wchar_t> m_Text1;
};

// Between client and lesson service: notifies that chat was received.
class COMMONGROUND_API CCmdMazurixOnReceiveChatNotify : public CCmdPlatform
{
public:
    CCmdMazurixOnReceiveChatNotify() : CCmdPlatform(command_id::CCmdMazurixOnReceiveChatNotify) {}
    COMMAND_INTERFACE(CCmdMazurixOnReceiveChatNotify)

    zet::String_T<wchar_t> m_Text1;
    zet::String_T<wchar_t> m_Text2;
};

// Between client and lesson service: a list of lessons. No command answers it.
class COMMONGROUND_API CCmdMazurixSyncLessonsRequest : public CCmdPlatform
{
public:
    CCmdMazurixSyncLessonsRequest() : CCmdPlatform(command_id::CCmdMazurixSyncLessonsRequest) {}
    COMMAND_INTERFACE(CCmdMazurixSyncLessonsRequest)

    std::vector<MazurixLessonInfo> m_MazurixLessonInfos;
};
