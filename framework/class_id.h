// Class numbers, and registration of a class in the registry of creators.
#pragma once

#include "framework/unknown.h"

namespace zet
{

// The number of a class: 32-bit FNV-1a of its name. Equal names give equal numbers, whatever the width of wchar_t.
constexpr unsigned long classIdOf(const wchar_t* className)
{
    unsigned int hash = 2166136261u;
    for (; *className; ++className)
        hash = (hash ^ static_cast<unsigned int>(*className)) * 16777619u;
    return hash;
}

// Registers a class in Unknown::RtFactory for its own lifetime. A global in the source file of the class registers it
// when the library is loaded.
class RtRegistration
{
public:
    // className is not copied and must outlive the object, as a literal does.
    RtRegistration(const wchar_t* className, Unknown::RtFactory::Creator creator) : m_ClassName(className)
    {
        Unknown::RtFactory::setupCreator(className, creator);
    }
    ~RtRegistration() { Unknown::RtFactory::unsetupCreator(m_ClassName); }
    RtRegistration(const RtRegistration&) = delete;
    RtRegistration& operator=(const RtRegistration&) = delete;

private:
    const wchar_t* m_ClassName;
};

} // namespace zet
