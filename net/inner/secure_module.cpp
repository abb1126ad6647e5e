#include "net/inner/secure_module.h"

#include "framework/module.h"

#include <mutex>

namespace zet::inner
{

SecureModule* SecureModule::get()
{
    static std::mutex s_Mutex;
    // Neither is released: objects of the module may live until the process ends.
    static SecureModule* s_Module = nullptr;
    static DllModule* s_File = nullptr;
    const std::lock_guard lock(s_Mutex);
    if (s_Module)
        return s_Module;
    const auto file = DllModule::createInstance();
    if (!file->load(L"zet_Secure.dll"))
        return nullptr;
    const auto entry = reinterpret_cast<SecureModuleEntry>(file->findSymbol(kSecureModuleEntryName));
    s_Module = entry ? entry(COMMONGROUND_VERSION) : nullptr;
    if (s_Module)
    {
        s_File = file.get();
        s_File->addRef();
    }
    return s_Module;
}

} // namespace zet::inner
