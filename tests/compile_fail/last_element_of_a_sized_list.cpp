// expect: LastElementDecides is for a list that grows element by element
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
    return LIST(r.m_Values, wire::SizedFirst, wire::LastElementDecides); // here
#else
    return LIST(r.m_Values, wire::LastElementDecides);
#endif
}
