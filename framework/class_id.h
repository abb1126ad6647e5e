// The numbers of classes, and how a class enters the registry of creators.
#pragma once

#include "framework/unknown.h"

namespace zet
{

// The number of a class, made from its name: the same wherever the name is the same, whatever the width of a unit.
// FNV-1a over 32 bits.
constexpr unsigned long classIdOf(const wchar_t* className)
{
    unsigned int hash = 2166136261u;
    for (; *className; ++className)
        hash = (hash ^ static_cast<unsigned int>(*className)) * 16777619u;
    return hash;
}

// Holds a class in Unknown::RtFactory as long as it lives. One in the source file of the class registers it when the
// library is loaded.
class RtRegistration
{
public:
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
