#include "net/tcp/inner/bounds.h"

#include "framework/time.h"

#include <algorithm>

namespace zet::inner
{

void InputRate::start(const NetLimits* limits)
{
    const unsigned int now = getTimeTick();
    m_Packets.start(limits ? limits->m_PacketsPerSecond : 0, limits ? limits->m_PacketBurst : 0, now);
    m_Bytes.start(limits ? limits->m_BytesPerSecond : 0, limits ? limits->m_ByteBurst : 0, now);
    m_OverRate = limits ? limits->m_OverRate : NetLimits::kDelay;
}

void InputRate::refill()
{
    const unsigned int now = getTimeTick();
    m_Packets.refill(now);
    m_Bytes.refill(now);
}

bool InputRate::isOpenNow()
{
    refill();
    return hasTokens();
}

unsigned int InputRate::getWait() const
{
    return std::max(m_Packets.getWait(), m_Bytes.getWait());
}

} // namespace zet::inner
