// expect: a pattern takes numbers, text of its own width and pointers
#include "framework/log.h"

struct Record
{
    int m_Value = 0;
};

void report(const Record& record)
{
#ifdef COMPILE_FAIL
    zet::Log::error(L"%d", record);
#else
    zet::Log::error(L"%d", record.m_Value);
#endif
}
