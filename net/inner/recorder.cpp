#include "net/inner/recorder.h"

namespace zet::inner
{

namespace
{

thread_local Recorder* t_Recorder = nullptr;

} // namespace

std::atomic<int> Recorder::s_Count{0};

bool Recorder::isHere() noexcept
{
    return isOn() && t_Recorder;
}

bool Recorder::startReports()
{
    if (t_Recorder)
        return false;
    t_Recorder = this;
    s_Count.fetch_add(1);
    return true;
}

void Recorder::stopReports()
{
    if (t_Recorder != this)
        return;
    t_Recorder = nullptr;
    s_Count.fetch_sub(1);
}

void Recorder::reportEstablished(ConnectionEvents& connection) noexcept
{
    if (t_Recorder)
        t_Recorder->onEstablished(connection);
}

void Recorder::reportPacket(ConnectionEvents& connection, Direction direction,
                            std::span<const unsigned char> packet) noexcept
{
    if (t_Recorder)
        t_Recorder->onPacket(connection, direction, packet);
}

} // namespace zet::inner
