#include "framework/system.h"

#include "framework/inner/moment.h"
#include "framework/time.h"

namespace zet
{

System::Task::~Task()
{
    if (System* system = getSystem())
        system->remove(this);
}

bool System::Task::start(System* system)
{
    if (!system || getSystem() || !system->add(this))
        return false;
    m_System = system;
    m_IsAsleep = false;
    return true;
}

void System::Task::stop()
{
    System* system = getSystem();
    if (!system)
        return;
    const bool wasInitialised = std::exchange(m_IsInitialised, false);
    const Unknown::Handle_T<Task> keep = getRefCount() > 0 ? this : nullptr;
    if (wasInitialised)
        exit();
    system->remove(this);
}

void System::Task::sleep(unsigned int milliseconds)
{
    m_IsWakened.store(false, std::memory_order_relaxed);
    m_SleepUntil = getTimeTick() + milliseconds;
    m_IsAsleep = true;
}

void System::Task::waken()
{
    m_IsWakened.store(true, std::memory_order_relaxed);
    if (System* system = m_System.load())
        system->wake();
}

bool System::Task::init()
{
    return true;
}

void System::Task::exit() {}

void System::Task::onTick(unsigned int) {}

bool System::Task::isDue(unsigned int tick)
{
    if (!m_IsAsleep)
        return true;
    if (!m_IsWakened.exchange(false, std::memory_order_relaxed) && !inner::isReached(m_SleepUntil, tick))
        return false;
    m_IsAsleep = false;
    return true;
}

} // namespace zet
