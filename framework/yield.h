// Lets a service process give up the processor.
#pragma once

#include "framework/unknown.h"

namespace zet
{

class System;

// Belongs to one system after attach(). The system must outlive it or be detached first.
class COMMONGROUND_API Yield : public virtual Unknown
{
public:
    // An object without a system. The caller holds it.
    static Unknown::Handle_T<Yield> createInstance();

    // Attaches the service system of the process; null detaches.
    virtual void attach(System* system);
    // The same as attach(nullptr).
    void detach() { attach(nullptr); }
    // The attached system; null before attach.
    System* getSystem() const { return m_System; }
    // Lets other threads run. Does not sleep: the system sleeps between ticks.
    virtual void yield();
    const wchar_t* getClassName() const override { return L"zet::Yield"; }

private:
    System* m_System = nullptr;
};

} // namespace zet
