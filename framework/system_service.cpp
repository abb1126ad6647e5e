#include "framework/system.h"

#include "framework/platform/platform.h"

#include <string_view>

namespace zet
{

ServiceSystem::ServiceSystem() : m_SystemName(getDefaultSystemName(platform::getExecutablePath())) {}

String_T<wchar_t> ServiceSystem::getDefaultSystemName(const String_T<wchar_t>& executable)
{
    const std::wstring_view path = executable.view();
    const std::wstring_view name = path.substr(path.rfind(L'/') + 1);
    const size_t dot = name.rfind(L'.');
    if (dot == std::wstring_view::npos || dot == 0)
        return executable.getSubString(static_cast<int>(path.size() - name.size()), static_cast<int>(name.size()));
    const std::wstring_view extension = name.substr(dot + 1);
    // Such numbers distinguish processes of the same program.
    const bool isNumber = !extension.empty() && extension.find_first_not_of(L"0123456789") == std::wstring_view::npos;
    return executable.getSubString(static_cast<int>(path.size() - name.size()),
                                   static_cast<int>(isNumber ? name.size() : dot));
}

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
