// expect: a table under OwnRows has one column
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    int m_Values[3] = {};
    int m_More[3] = {};
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return TABLE(wire::OwnRows, r.m_Values, r.m_More); // here
#else
    return TABLE(wire::SaidRows(3), r.m_Values, r.m_More);
#endif
}
