// expect: a little-endian machine: another one would send other bytes
// The compiler's byte order macro, inverted.
#ifdef COMPILE_FAIL
#pragma GCC diagnostic ignored "-Wbuiltin-macro-redefined"
#undef __BYTE_ORDER__
#define __BYTE_ORDER__ __ORDER_BIG_ENDIAN__
#endif
#include "packaging/wire/order.h"
