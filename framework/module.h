// Loadable modules by name.
#pragma once

#include "framework/unknown.h"

namespace zet
{

// One loaded module, unloaded with the object. A log module stays loaded until the process ends, since the log calls
// into it.
class COMMONGROUND_API DllModule : public virtual Unknown
{
public:
    // An object without a module. The caller holds it.
    static Unknown::Handle_T<DllModule> createInstance();
    ~DllModule() override;
    DllModule(const DllModule&) = delete;
    DllModule& operator=(const DllModule&) = delete;

    // Loads "zet_Name.dll", or the file of that module on this platform, from the folder of this library or else of the
    // executable; a log module is added to the log. False if the file does not exist or is not a valid module, or if a
    // module is already loaded. A name cannot contain a path.
    virtual bool load(const wchar_t* name);
    // Whether load() has succeeded.
    bool isLoaded() const { return m_Module != nullptr; }
    // Null if the module exports nothing of that name.
    void* findSymbol(const char* name) const;
    const wchar_t* getClassName() const override { return L"zet::DllModule"; }

private:
    DllModule() = default;

    void* m_Module = nullptr;
    bool m_IsLogModule = false;
};

} // namespace zet
