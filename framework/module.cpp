#include "framework/module.h"

#include "framework/app.h"
#include "framework/log_module.h"
#include "framework/platform/platform.h"

namespace zet
{

namespace
{

// A module's file may also have the prefix "lib".
void* openModuleFile(const String_T<wchar_t>& file)
{
    for (const String_T<wchar_t>& directory : {platform::getLibraryDirectory(), getAppPath()})
        for (const wchar_t* prefix : {L"", L"lib"})
            if (!directory.isEmpty())
                if (void* module = platform::openModule(directory + prefix + file))
                    return module;
    return nullptr;
}

} // namespace

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
    m_Module = openModuleFile(platform::getModuleFileName(name));
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
