#include "commands/lesson_records.h"

#include "packaging/wire/order.h"

WIRE_ORDER_CMD(MazurixValues)
{
    return FIELDS(r.m_Word1, r.m_Word2, r.m_Word3, r.m_Word4);
}

WIRE_ORDER_CMD(MazurixLobbyInfo)
{
    return FIELDS(r.m_Word1, r.m_Text1, r.m_MazurixValues1, r.m_MazurixValues2);
}

WIRE_ORDER_CMD(MazurixLessonInfo)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3, r.m_Text4, r.m_Text5, r.m_Word1);
}

WIRE_ORDER_CMD(MazurixUserInfo)
{
    return FIELDS(r.m_Text1, r.m_Text2, r.m_Text3);
}

WIRE_ORDER_CMD(MazurixExportInfo)
{
    return FIELDS(r.m_Text1, r.m_Word1, r.m_Byte1, r.m_Word2);
}
