#include "framework/module.h"

#include "framework/app.h"
#include "framework/log_module.h"
#include "framework/platform/platform.h"

namespace zet
{

Unknown::Handle_T<DllModule> DllModule::createInstance()
{
    return new DllModule;
}

DllModule::~DllModule()
{
    if (m_Module && !m_IsLogModule)
        platform::closeModule(m_Module);
}

bool DllModule::load(const wchar_t* name)
{
    const String_T<wchar_t> whole(name);
    if (m_Module || whole.isEmpty() || whole.find(L'/', 0) >= 0 || whole.find(L'\\', 0) >= 0)
        return false;
    const String_T<wchar_t> file = platform::getModuleFileName(name);
    const String_T<wchar_t> library = platform::getLibraryDirectory();
    if (!library.isEmpty())
        m_Module = platform::openModule(library + file);
    if (!m_Module)
        m_Module = platform::openModule(getAppPath() + file);
    if (!m_Module)
        return false;

    void* const entry = platform::findModuleSymbol(m_Module, kLogModuleEntryName);
    if (!entry)
        return true;
    if (registerLogModule(reinterpret_cast<LogModuleEntry>(entry)()))
    {
        m_IsLogModule = true;
        return true;
    }
    platform::closeModule(m_Module);
    m_Module = nullptr;
    return false;
}

void* DllModule::findSymbol(const char* name) const
{
    return m_Module ? platform::findModuleSymbol(m_Module, name) : nullptr;
}

} // namespace zet
