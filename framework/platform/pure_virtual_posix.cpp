#include "framework/platform/platform.h"

#include <cstdio>
#include <exception>

// What the tables of abstract classes refer to where an operation has no body. The compiler's runtime library has one,
// but the loader would look it up for each of those entries.
extern "C" [[noreturn]] __attribute__((visibility("hidden"))) void __cxa_pure_virtual();

extern "C" void __cxa_pure_virtual()
{
    std::fputs("A pure virtual function was called\n", stderr);
    std::terminate();
}
