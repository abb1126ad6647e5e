#include "host/inbox.h"

#include "framework/inner/guard.h"
#include "framework/log.h"
#include "framework/string_helper.h"

#include <utility>

namespace host
{

bool Inbox::post(Work work)
{
    {
        const std::lock_guard lock(m_Mutex);
        if (m_Posted.size() >= m_Limit)
        {
            m_Refused.fetch_add(1, std::memory_order_relaxed);
            return false;
        }
        m_Posted.push_back(std::move(work));
        m_Size.store(m_Posted.size(), std::memory_order_relaxed);
    }
    waken();
    return true;
}

void Inbox::onTick(unsigned int)
{
    if (getSize() == 0)
        return;
    std::vector<Work> posted;
    {
        const std::lock_guard lock(m_Mutex);
        posted.swap(m_Posted);
        m_Size.store(0, std::memory_order_relaxed);
    }
    for (Work& each : posted)
        zet::inner::guardCall(
            std::exchange(each, nullptr), [](const char* what)
            { zet::Log::error(L"Exception in posted work: %s", zet::StringHelper::utf8ToWide(what ? what : "?")); });
}

} // namespace host
