#include "framework/system.h"

#include "framework/platform/platform.h"

namespace zet
{

namespace
{

String_T<wchar_t> findProcessName()
{
    const String_T<wchar_t> path = platform::getExecutablePath();
    int first = path.getLength();
    while (first > 0 && path[first - 1] != L'/')
        --first;
    const int dot = path.find(L'.', first);
    return path.getSubString(first, (dot < 0 ? path.getLength() : dot) - first);
}

} // namespace

ServiceSystem::ServiceSystem() : m_SystemName(findProcessName()) {}

bool ServiceSystem::run()
{
    if (!init())
        return false;
    const bool isOn = ServiceOn();
    if (isOn)
        loop();
    exit();
    return isOn;
}

bool ServiceSystem::ServiceOn()
{
    return true;
}

void ServiceSystem::ServiceOff() {}

void ServiceSystem::exit()
{
    ServiceOff();
    System::exit();
}

} // namespace zet
