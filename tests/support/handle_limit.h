// As many handles as the system allows, while a test of many connections lasts.
#pragma once

#include <sys/resource.h>

namespace test
{

// Of this process; the limit of before comes back with the end of the object.
class RaisedHandleLimit
{
public:
    RaisedHandleLimit();
    ~RaisedHandleLimit();
    RaisedHandleLimit(const RaisedHandleLimit&) = delete;
    RaisedHandleLimit& operator=(const RaisedHandleLimit&) = delete;

    // The handles that there may be now.
    unsigned long long count() const { return m_Count; }

private:
    rlimit m_Old{};
    unsigned long long m_Count = 0;
};

} // namespace test
