// expect: a word about the count does nothing at ELEMENTS_OF
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    std::vector<int> m_Values;
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return COUNT_OF(r.m_Values) && ELEMENTS_OF(r.m_Values, wire::Untested); // here
#else
    return COUNT_OF(r.m_Values) && ELEMENTS_OF(r.m_Values, wire::ElementsUntested);
#endif
}
