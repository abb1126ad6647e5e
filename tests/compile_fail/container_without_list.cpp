// expect: a container needs LIST
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    int m_Value = 0;
    std::vector<int> m_Values;
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return FIELDS(r.m_Value, r.m_Values); // here
#else
    return FIELDS(r.m_Value) && LIST(r.m_Values);
#endif
}
