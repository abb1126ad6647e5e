// expect: LIST, COUNT_OF and ELEMENTS_OF take a std::vector or a std::map
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
    return LIST(r.m_Value); // here
#else
    return FIELDS(r.m_Value);
#endif
}
