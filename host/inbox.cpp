#include "host/inbox.h"

#include "framework/inner/guard.h"
#include "framework/log.h"
#include "framework/string_helper.h"

#include <utility>

namespace host
{

void Inbox::post(Work work)
{
    {
        const std::lock_guard lock(m_Mutex);
        m_Posted.push_back(std::move(work));
        m_HasPosted.store(true, std::memory_order_relaxed);
    }
    waken();
}

void Inbox::onTick(unsigned int)
{
    if (!m_HasPosted.load(std::memory_order_relaxed))
        return;
    std::vector<Work> posted;
    {
        const std::lock_guard lock(m_Mutex);
        posted.swap(m_Posted);
        m_HasPosted.store(false, std::memory_order_relaxed);
    }
    for (Work& each : posted)
        zet::inner::guardCall(
            std::exchange(each, nullptr), [](const char* what)
            { zet::Log::error(L"Exception in posted work: %s", zet::StringHelper::utf8ToWide(what ? what : "?")); });
}

} // namespace host
