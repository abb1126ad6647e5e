#include "framework/yield.h"

#include <thread>

namespace zet
{

Unknown::Handle_T<Yield> Yield::createInstance()
{
    return new Yield;
}

void Yield::attach(System* system)
{
    m_System = system;
}

void Yield::yield()
{
    std::this_thread::yield();
}

} // namespace zet
