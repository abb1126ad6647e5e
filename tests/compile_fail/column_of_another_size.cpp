// expect: the columns of a table are vectors under CountedRows
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    int m_Values[3] = {};
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return TABLE(wire::SaidRows(2), r.m_Values); // here
#else
    return TABLE(wire::SaidRows(3), r.m_Values);
#endif
}
