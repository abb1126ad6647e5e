// expect: ClearedFirst does nothing here
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
    return LIST(r.m_Values, wire::ClearedFirst, wire::Untested); // here
#else
    return LIST(r.m_Values, wire::Untested);
#endif
}
