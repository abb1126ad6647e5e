#include "net/connection_events.h"

#include "net/inner/end_counts.h"
#include "net/inner/end_watcher.h"
#include "net/inner/guard.h"
#include "net/inner/recorder.h"

namespace zet
{

void ConnectionEvents::onEstablished() {}

void ConnectionEvents::onEnd(const EndCause&) {}

void ConnectionEvents::onWritable() {}

EndCause ConnectionEvents::getEndCause() const
{
    return (m_Flags & kBegun) && !(m_Flags & kSettled) ? EndCause() : EndCause{m_Code, m_Detail};
}

void ConnectionEvents::noteCause(EndCause cause)
{
    if (m_Code != EndCause::kNone || !(m_Flags & kBegun) || (m_Flags & kSettled))
        return;
    m_Code = cause.m_Code;
    m_Detail = cause.m_Detail;
}

void ConnectionEvents::forgetCause()
{
    if (m_Flags & kSettled)
        return;
    m_Code = EndCause::kNone;
    m_Detail = 0;
}

void ConnectionEvents::beginEvents()
{
    m_Flags = static_cast<unsigned char>((m_Flags & kWatched) | kBegun);
    m_Code = EndCause::kNone;
    m_Detail = 0;
}

void ConnectionEvents::beginAttempt()
{
    beginEvents();
    m_Flags |= kAttempt;
}

bool ConnectionEvents::settleCause(EndCause otherwise)
{
    if (!(m_Flags & kBegun) || (m_Flags & kSettled))
        return false;
    noteCause(otherwise);
    m_Flags |= kSettled;
    inner::countEnd({m_Code, m_Detail});
    return true;
}

bool ConnectionEvents::endSilently()
{
    m_Flags |= kSettled;
    return takeEnd();
}

bool ConnectionEvents::takeEnd()
{
    if (!(m_Flags & kBegun))
        return false;
    m_Flags = static_cast<unsigned char>(m_Flags & ~kBegun);
    if (m_Flags & kWatched)
        inner::EndWatcher::report(*this);
    return true;
}

void ConnectionEvents::setFailure(EndCause cause)
{
    if (!(m_Flags & kBegun))
        beginEvents();
    settleCause(cause);
    m_Flags = static_cast<unsigned char>((m_Flags & kWatched) | kSettled);
}

void ConnectionEvents::callEstablished()
{
    m_Flags = static_cast<unsigned char>(m_Flags & ~kAttempt);
    if (inner::Recorder::isOn())
        inner::Recorder::reportEstablished(*this);
    inner::guard(L"onEstablished()", nullptr, [this] { onEstablished(); });
}

void ConnectionEvents::callEnd(EndCause cause)
{
    inner::guard(L"onEnd()", nullptr, [&] { onEnd(cause); });
}

void ConnectionEvents::callWritable()
{
    inner::guard(L"onWritable()", nullptr, [this] { onWritable(); });
}

} // namespace zet
