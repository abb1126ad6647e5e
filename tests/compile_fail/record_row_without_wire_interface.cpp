// expect: the row of Plain names a class without a wire interface
#include "packaging/wire_interface.h"
#include "tools/class_row.h"

struct Record
{
    WIRE_INTERFACE_DATA
};

struct Plain
{
    int m_Value = 0;
};

RECORD_ROW_HOLDS(Record)
#ifdef COMPILE_FAIL
RECORD_ROW_HOLDS(Plain)
#endif
