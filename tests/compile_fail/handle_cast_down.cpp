// expect: non-scalar type|no viable conversion|cannot convert
#include "framework/unknown.h"

struct Base : zet::Unknown
{
};

struct Derived : Base
{
};

void keep(const zet::Unknown::Handle_T<Base>& base)
{
#ifdef COMPILE_FAIL
    const zet::Unknown::Handle_T<Derived> derived = base;
#else
    const zet::Unknown::Handle_T<Derived> derived = base.castTo<Derived>();
#endif
}
