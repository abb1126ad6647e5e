#include "framework/thread.h"

#include <atomic>

namespace zet
{

namespace
{

std::atomic<unsigned long> s_Last{0};

// Each send reads it, so it has a constant start, which needs no guard, and a fixed place relative to the thread where
// the object format has such places.
#if defined(__ELF__) && defined(__GNUC__)
[[gnu::tls_model("initial-exec")]]
#endif
constinit thread_local unsigned long t_Id = 0;

} // namespace

unsigned long Thread::getCurrentThreadId()
{
    if (t_Id == 0)
        t_Id = ++s_Last;
    return t_Id;
}

} // namespace zet
