// expect: an order holds packager values, records with Wire
#include "packaging/wire/order.h"

struct Plain
{
    int m_Value = 0;
};

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    Plain m_Plain;
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return FIELDS(r.m_Plain); // here
#else
    return FIELDS(r.m_Plain.m_Value);
#endif
}
