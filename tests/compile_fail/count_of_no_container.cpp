// expect: LIST, COUNT_OF and ELEMENTS_OF take a std::vector or a std::map
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    std::vector<int> m_Values;
    int m_Value = 0;
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return COUNT_OF(r.m_Value) && LIST(r.m_Values); // here
#else
    return LIST(r.m_Values) && FIELDS(r.m_Value);
#endif
}
