#include "framework/thread.h"

#include <atomic>

namespace zet
{

unsigned long Thread::getCurrentThreadId()
{
    static std::atomic<unsigned long> last{0};
    thread_local const unsigned long id = ++last;
    return id;
}

} // namespace zet
