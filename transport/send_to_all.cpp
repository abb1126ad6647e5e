#include "transport/send_to_all.h"

#include "framework/inner/fast_paths.h"
#include "framework/log.h"
#include "framework/packet.h"
#include "net/inner/blocks.h"
#include "packaging/command_head.h"
#include "transport/command_socket.h"
#include "transport/udp_client_socket.h"

#include <cstring>

CCommandBroadcast::CCommandBroadcast(const CCmdHead& command) : m_Packager(&m_Encoded)
{
    static_assert(sizeof m_Packed == UdpClientSocket::kHeadSize + UdpClientSocket::kFrameLimit);
    if (command.Write(&m_Encoded))
        return;
    zet::Log::error(L"Command Package Error:%d", command.GetID());
    m_Packager = nullptr;
}

CCommandBroadcast::CCommandBroadcast(const CCmdPackager& packager) : m_Packager(&packager) {}

CCommandBroadcast::~CCommandBroadcast()
{
    if (m_Shared)
        m_Shared->leave();
}

bool CCommandBroadcast::frame()
{
    using zet::inner::kHasFastPaths;
    if (m_Shared)
        return true;
    if (!m_Frame || !kHasFastPaths)
    {
        m_Frame = m_Packager->FrameInPlace(m_FrameSize);
        return m_Frame != nullptr;
    }
    m_Shared = zet::inner::SharedBlock::make(zet::PacketWriter::kHeadSize + m_FrameSize);
    if (!m_Shared)
        return true;
    unsigned char* const place = m_Shared->data() + zet::PacketWriter::kHeadSize;
    std::memcpy(place, m_Frame, static_cast<size_t>(m_FrameSize));
    m_Frame = place;
    return true;
}

bool CCommandBroadcast::SendTo(CCommandSocket* socket)
{
    if (!socket || !m_Packager || !socket->beginSend(*m_Packager))
        return false;
    if (!frame())
        return false;
    return m_Shared ? socket->sendShared(*m_Shared) : socket->sendFrame(m_Frame, m_FrameSize);
}

bool CCommandBroadcast::pack()
{
    if (m_PackedSize == kNotPacked || !zet::inner::kHasFastPaths)
        m_PackedSize = UdpClientSocket::pack(*m_Packager, m_Packed);
    return m_PackedSize > 0;
}

bool CCommandBroadcast::SendTo(UdpClientSocket* socket)
{
    return socket && m_Packager && pack() && socket->sendPacked(*m_Packager, m_Packed, m_PackedSize);
}
