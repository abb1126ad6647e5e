#include "framework/unknown.h"

#include "framework/class_id.h"

#include <map>
#include <mutex>

namespace zet
{

namespace
{

struct Creators
{
    std::mutex m_Mutex;
    std::map<String_T<wchar_t>, Unknown::RtFactory::Creator> m_Map;
};

// Constructors and destructors of globals in any file add and remove classes, so the table is created by its first
// user and never destroyed.
Creators& getCreators()
{
    static Creators* const creators = new Creators;
    return *creators;
}

} // namespace

Unknown::~Unknown() = default;

unsigned long Unknown::getClassId() const
{
    return classIdOf(getClassName());
}

bool Unknown::importFrom(InputStream&)
{
    return false;
}

bool Unknown::exportTo(OutputStream&) const
{
    return false;
}

void Unknown::RtFactory::setupCreator(const wchar_t* className, Creator creator)
{
    Creators& creators = getCreators();
    const std::lock_guard lock(creators.m_Mutex);
    creators.m_Map.insert_or_assign(String_T<wchar_t>(className), creator);
}

void Unknown::RtFactory::unsetupCreator(const wchar_t* className)
{
    Creators& creators = getCreators();
    const std::lock_guard lock(creators.m_Mutex);
    creators.m_Map.erase(String_T<wchar_t>(className));
}

Unknown* Unknown::RtFactory::create(const wchar_t* className)
{
    Creators& creators = getCreators();
    Creator creator = nullptr;
    {
        const std::lock_guard lock(creators.m_Mutex);
        const auto place = creators.m_Map.find(String_T<wchar_t>(className));
        if (place != creators.m_Map.end())
            creator = place->second;
    }
    return creator ? creator() : nullptr;
}

} // namespace zet
