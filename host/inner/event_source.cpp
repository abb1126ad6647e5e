#include "host/inner/event_source.h"

#include "framework/inner/moment.h"
#include "framework/log.h"
#include "framework/string_helper.h"
#include "net/inner/guard.h"

namespace host::inner
{

namespace
{

// A line of the text is a field of the event, so that no text can end its event or add another one.
std::string eventOf(const std::string& name, const std::string& text)
{
    std::string event = "event: " + name + "\ndata: ";
    for (size_t i = 0; i < text.size(); ++i)
    {
        const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        if (text[i] == '\r' || text[i] == '\n')
            event += "\ndata: ";
        else
            event += text[i];
        i += isPair;
    }
    return event + "\n\n";
}

} // namespace

void EventSource::add(const char* name, Text text)
{
    m_Entries.emplace_back();
    m_Entries.back().m_Name = name;
    m_Entries.back().m_Ask = std::move(text);
}

void EventSource::update(unsigned int tick)
{
    if (m_IsStarted && !zet::inner::isReached(m_Next, tick))
        return;
    m_IsStarted = true;
    m_Next = tick + kInterval;
    ++m_Round;
    for (Entry& entry : m_Entries)
        zet::inner::guard(L"addEvent()", nullptr,
                          [&]
                          {
                              const std::string text = entry.m_Ask();
                              if (text.size() > kMostText)
                              {
                                  if (!entry.m_IsReported)
                                      zet::Log::warning(L"The event %s has %d bytes and is not sent",
                                                        zet::StringHelper::utf8ToWide(entry.m_Name.c_str()),
                                                        static_cast<int>(text.size()));
                                  entry.m_IsReported = true;
                                  return;
                              }
                              std::string event = eventOf(entry.m_Name, text);
                              if (event == entry.m_Event)
                                  return;
                              entry.m_Event = std::move(event);
                              entry.m_Round = m_Round;
                          });
}

std::string EventSource::takeChanges(unsigned int& round) const
{
    std::string changes;
    for (const Entry& entry : m_Entries)
        if (entry.m_Round > round)
            changes += entry.m_Event;
    round = m_Round;
    return changes;
}

} // namespace host::inner
