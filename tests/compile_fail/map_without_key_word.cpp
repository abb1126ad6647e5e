// expect: the list of a map needs KeyedBy, KeyedByPosition or Pairs
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    std::map<int, int> m_Values;
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return LIST(r.m_Values); // here
#else
    return LIST(r.m_Values, wire::Pairs);
#endif
}
