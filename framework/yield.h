// The object through which a service process gives up the processor.
#pragma once

#include "framework/unknown.h"

namespace zet
{

class System;

// Belongs to one system from attach() on. The system must outlive it or be detached first.
class COMMONGROUND_API Yield : public virtual Unknown
{
public:
    static Unknown::Handle_T<Yield> createInstance();

    // Takes the system of the process, its service system; a null pointer detaches.
    virtual void attach(System* system);
    void detach() { attach(nullptr); }
    System* getSystem() const { return m_System; }
    // Lets the other threads of the machine run. Does not sleep: between ticks the system does that itself.
    virtual void yield();
    const wchar_t* getClassName() const override { return L"zet::Yield"; }

private:
    System* m_System = nullptr;
};

} // namespace zet
