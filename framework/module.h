// Loadable modules by their names.
#pragma once

#include "framework/unknown.h"

namespace zet
{

// One loaded module, which stays as long as the object does. A log module stays for the rest of the process, since the
// log calls into it.
class COMMONGROUND_API DllModule : public virtual Unknown
{
public:
    static Unknown::Handle_T<DllModule> createInstance();
    ~DllModule() override;
    DllModule(const DllModule&) = delete;
    DllModule& operator=(const DllModule&) = delete;

    // Loads "zet_Name.dll", under whatever file name it has on this platform, from beside this library or else from
    // beside the executable; a log module joins the log. False when it is not there, or is none of ours, or a module
    // is loaded already. A name is no path.
    virtual bool load(const wchar_t* name);
    bool isLoaded() const { return m_Module != nullptr; }
    // Null when nothing of that name is exported.
    void* findSymbol(const char* name) const;
    const wchar_t* getClassName() const override { return L"zet::DllModule"; }

private:
    DllModule() = default;

    void* m_Module = nullptr;
    bool m_IsLogModule = false;
};

} // namespace zet
