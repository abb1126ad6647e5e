#include "commands/lesson.h"

#include "packaging/wire/order.h"

#include <algorithm>

namespace
{

// Untested, and what cannot be read is 0.
template <class V, class T>
bool orZero(V& v, T& values)
{
    if constexpr (!std::is_const_v<T>)
        std::ranges::fill(values, 0);
    return v.UntestedFields("m_Values", values);
}

} // namespace

WIRE_COMMAND(CCmdMazurixEnterLobbyRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixEnterLobbyReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1, r.m_Text2) && BY_HAND(FromZero, orZero(v, r.m_Values)) &&
           FIELDS(r.m_MazurixLobbyInfo);
}

WIRE_COMMAND(CCmdMazurixStartGameRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixStartGameReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixEndGameRequest)
{
    return HEAD(CCmdPlatform) &&
           FIELDS(r.m_Text1, r.m_Byte1, r.m_Value1, r.m_Value2, r.m_MazurixValues1, r.m_MazurixValues2);
}

WIRE_COMMAND(CCmdMazurixEndGameReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1, r.m_Text2) && BY_HAND(FromZero, orZero(v, r.m_Values));
}

WIRE_COMMAND(CCmdMazurixGetLessonsRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixGetLessonsReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1) && LIST(r.m_MazurixLessonInfos, wire::LastElementDecides);
}

WIRE_COMMAND(CCmdMazurixEnterLessonRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_COMMAND(CCmdMazurixEnterLessonReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1, r.m_Value1);
}

WIRE_COMMAND(CCmdMazurixLeaveLessonRequest)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdMazurixLeaveLessonReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixSubmitDataRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Word1, r.m_Byte1, r.m_Word2);
}

WIRE_COMMAND(CCmdMazurixSubmitDataReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixSendChatRequest)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixSendChatReply)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Byte1, r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixOnUsersEnterLessonNotify)
{
    return HEAD(CCmdPlatform) && LIST(r.m_MazurixUserInfos, wire::LastElementDecides);
}

WIRE_COMMAND(CCmdMazurixOnUsersLeaveLessonNotify)
{
    return HEAD(CCmdPlatform) && LIST(r.m_Texts, wire::LastElementDecides);
}

WIRE_COMMAND(CCmdMazurixOnLessonStartedNotify)
{
    return HEAD(CCmdPlatform) && LIST(r.m_MazurixUserInfos, wire::LastElementDecides);
}

WIRE_COMMAND(CCmdMazurixOnLessonEndedNotify)
{
    return HEAD(CCmdPlatform);
}

WIRE_COMMAND(CCmdMazurixOnDataExportedNotify)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_MazurixExportInfo);
}

WIRE_COMMAND(CCmdMazurixOnUserLeaveRoomNotify)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1);
}

WIRE_COMMAND(CCmdMazurixOnReceiveChatNotify)
{
    return HEAD(CCmdPlatform) && FIELDS(r.m_Text1, r.m_Text2);
}

WIRE_COMMAND(CCmdMazurixSyncLessonsRequest)
{
    return HEAD(CCmdPlatform) && LIST(r.m_MazurixLessonInfos, wire::LastElementDecides);
}
