// expect: KeyedBy, KeyedByPosition and Pairs are words for a map
#include "packaging/wire/order.h"

struct Element
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    int m_Number = 0;
};

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    std::vector<Element> m_Values;
};

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return LIST(r.m_Values, wire::KeyedBy(&Element::m_Number)); // here
#else
    return LIST(r.m_Values);
#endif
}
