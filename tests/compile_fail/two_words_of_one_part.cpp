// expect: the words of a list contradict each other
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
    return LIST(r.m_Values, wire::Pairs, wire::KeyedByPosition); // here
#else
    return LIST(r.m_Values, wire::Pairs);
#endif
}
