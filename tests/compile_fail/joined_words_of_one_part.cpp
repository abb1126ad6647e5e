// expect: the words of a list contradict each other
#include "packaging/wire/order.h"

struct Record
{
    bool Write(CCmdPackager* pk) const;
    bool Read(CCmdPackager* pk);
    static const wire::Schema& Wire();
    std::vector<int> m_Values;
};

constexpr auto kQuirks = wire::Appends + wire::SizedFirst;

WIRE_ORDER_CMD(Record)
{
#ifdef COMPILE_FAIL
    return LIST(r.m_Values, wire::Untested, kQuirks); // here
#else
    return LIST(r.m_Values, wire::Untested, wire::Appends);
#endif
}
