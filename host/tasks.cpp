#include "host/tasks.h"

#include "framework/inner/report.h"
#include "framework/log.h"
#include "framework/string_helper.h"

#include <exception>

namespace host
{

namespace inner
{

Job::~Job()
{
    leave();
}

void Job::leave()
{
    Tasks* const owner = std::exchange(m_Owner, nullptr);
    if (!owner)
        return;
    (m_Before ? m_Before->m_After : owner->m_First) = m_After;
    if (m_After)
        m_After->m_Before = m_Before;
    m_Before = nullptr;
    m_After = nullptr;
}

void reportTaskException() noexcept
{
    zet::inner::report(
        []
        {
            try
            {
                throw;
            }
            catch (const std::exception& fault)
            {
                zet::Log::error(L"Exception in a task: %s", zet::StringHelper::utf8ToWide(fault.what()));
            }
            catch (...)
            {
                zet::Log::error(L"Unknown exception in a task");
            }
        });
}

} // namespace inner

Tasks::Tasks(Questions& questions) : m_Table(questions.m_Table) {}

Tasks::~Tasks()
{
    cancel();
}

void Tasks::cancel()
{
    // Detach all jobs first. A job may hold the last reference to the owner of this object; then this object is
    // destroyed with the job.
    inner::Job* next = std::exchange(m_First, nullptr);
    for (inner::Job* job = next; job; job = job->m_After)
    {
        job->m_Owner = nullptr;
        job->m_IsCancelled = true;
    }
    while (next)
    {
        inner::Job* const job = std::exchange(next, next->m_After);
        job->m_Before = nullptr;
        job->m_After = nullptr;
        if (!job->m_IsRunning)
            job->destroy();
    }
}

int Tasks::getCount() const
{
    int count = 0;
    for (const inner::Job* job = m_First; job; job = job->m_After)
        ++count;
    return count;
}

void Tasks::adopt(inner::Job& job)
{
    job.m_Table = m_Table;
    job.m_Owner = this;
    job.m_After = m_First;
    if (m_First)
        m_First->m_Before = &job;
    m_First = &job;
}

} // namespace host
