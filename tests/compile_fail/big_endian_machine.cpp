// expect: a little-endian machine: another one would send other bytes
// What the compiler says of its machine, turned over.
#ifdef COMPILE_FAIL
#pragma GCC diagnostic ignored "-Wbuiltin-macro-redefined"
#undef __BYTE_ORDER__
#define __BYTE_ORDER__ __ORDER_BIG_ENDIAN__
#endif
#include "packaging/wire/order.h"
