#include "host/recording.h"

#include "host/inner/socket_recorder.h"

#include <algorithm>

namespace host
{

Recording::Recording() = default;

Recording::~Recording() = default;

void Recording::setLimits(long long fileSize, int files)
{
    m_FileSize = std::max(fileSize, kLeastFileSize);
    m_Files = std::max(files, 1);
}

bool Recording::start(zet::System& system, const wchar_t* path)
{
    if (isOn())
        return true;
    m_Recorder = std::make_unique<inner::SocketRecorder>(system, path, static_cast<uint64_t>(m_FileSize), m_Files);
    return m_Recorder->start();
}

void Recording::stop()
{
    if (m_Recorder)
        m_Recorder->stop();
}

bool Recording::isOn() const
{
    return m_Recorder && m_Recorder->isOn();
}

unsigned long long Recording::getPackets() const
{
    return m_Recorder ? m_Recorder->getCounts().m_Received : 0;
}

unsigned long long Recording::getDropped() const
{
    return m_Recorder ? m_Recorder->getCounts().m_Dropped : 0;
}

} // namespace host
