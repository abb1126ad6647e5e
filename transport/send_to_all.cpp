#include "transport/send_to_all.h"

#include "framework/inner/fast_paths.h"
#include "framework/log.h"
#include "packaging/command_head.h"
#include "transport/command_socket.h"
#include "transport/udp_client_socket.h"

CCommandBroadcast::CCommandBroadcast(const CCmdHead& command) : m_Packager(&m_Encoded)
{
    static_assert(sizeof m_Packed == UdpClientSocket::kHeadSize + UdpClientSocket::kFrameLimit);
    if (command.Write(&m_Encoded))
        return;
    zet::Log::error(L"Command Package Error:%d", command.GetID());
    m_Packager = nullptr;
}

CCommandBroadcast::CCommandBroadcast(const CCmdPackager& packager) : m_Packager(&packager) {}

bool CCommandBroadcast::frame()
{
    if (!m_Frame || !zet::inner::kHasFastPaths)
        m_Frame = m_Packager->FrameInPlace(m_FrameSize);
    return m_Frame != nullptr;
}

bool CCommandBroadcast::SendTo(CCommandSocket* socket)
{
    if (!socket || !m_Packager || !socket->beginSend(*m_Packager))
        return false;
    return frame() && socket->sendFrame(m_Frame, m_FrameSize);
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
