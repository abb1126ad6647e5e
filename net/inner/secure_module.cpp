#include "net/inner/secure_module.h"

#include "framework/log.h"
#include "framework/platform/platform.h"

namespace zet::inner
{

namespace
{

// The name has the version of the library: the module uses its classes as they are.
constexpr wchar_t kFile[] = L"zet_Secure-" COMMONGROUND_VERSION ".dll";

SecureModule* load()
{
    const String_T<wchar_t> path = platform::getLibraryDirectory() + platform::getModuleFileName(kFile);
    String_T<wchar_t> fault;
    void* const file = platform::openModule(path, &fault);
    void* const entry = file ? platform::findModuleSymbol(file, kSecureModuleEntryName) : nullptr;
    if (!entry)
    {
        Log::error(L"No TLS and no connections over UDP: %s", file ? path : fault);
        return nullptr;
    }
    return reinterpret_cast<SecureModuleEntry>(entry)();
}

} // namespace

SecureModule* SecureModule::get()
{
    // The file stays open: objects of the module may live until the process ends.
    static SecureModule* const s_Module = load();
    return s_Module;
}

} // namespace zet::inner
