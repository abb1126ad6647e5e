#include "tests/support/handle_limit.h"

namespace test
{

RaisedHandleLimit::RaisedHandleLimit()
{
    if (getrlimit(RLIMIT_NOFILE, &m_Old) != 0)
        return;
    rlimit raised = m_Old;
    raised.rlim_cur = raised.rlim_max;
    m_Count = setrlimit(RLIMIT_NOFILE, &raised) == 0 ? raised.rlim_cur : m_Old.rlim_cur;
}

RaisedHandleLimit::~RaisedHandleLimit()
{
    if (m_Count > 0)
        setrlimit(RLIMIT_NOFILE, &m_Old);
}

} // namespace test
