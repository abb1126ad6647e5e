// expect: no return statement|does not return a value
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    int m_Value = 0;
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    FIELDS(r.m_Value);
#else
    return FIELDS(r.m_Value);
#endif
}
