// Raises the limit of open handles during a test of many connections.
#pragma once

#include <sys/resource.h>

namespace test
{

// The limit of this process; the destructor restores the previous one.
class RaisedHandleLimit
{
public:
    RaisedHandleLimit();
    ~RaisedHandleLimit();
    RaisedHandleLimit(const RaisedHandleLimit&) = delete;
    RaisedHandleLimit& operator=(const RaisedHandleLimit&) = delete;

    // The current limit.
    unsigned long long count() const { return m_Count; }

private:
    rlimit m_Old{};
    unsigned long long m_Count = 0;
};

} // namespace test
