#include "transport/command_socket.h"

#include "dispatch/analyser_socket.h"
#include "dispatch/inner/socket_seam.h"
#include "framework/log.h"
#include "framework/platform/virtual_target.h"
#include "framework/stopwatch.h"
#include "framework/thread.h"
#include "net/limits.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "packaging/inner/socket_seam.h"

#include <algorithm>

static_assert(zet::PacketReader::kDefaultLimit == CCmdPackager::kMaxHeaderSize + CCmdPackager::kMaxDataSize);
static_assert(zet::PacketWriter::kHeadSize <= CCmdPackager::kSpareSize);

zet::Unknown::Handle_T<CCommandSocket> CCommandSocket::createInstance(CCmdAnalyserSocket* analyser)
{
    return new CCommandSocket(analyser);
}

// While this runs, the object is one of this class, whatever it becomes.
CCommandSocket::CCommandSocket(CCmdAnalyserSocket* analyser)
    : m_pCmdAnalyser(analyser), m_PlainTick(zet::platform::getVirtualTarget(*this, &CCommandSocket::onTick))
{
}

bool CCommandSocket::HasOwnTick() const
{
    return !m_PlainTick || zet::platform::getVirtualTarget(*this, &CCommandSocket::onTick) != m_PlainTick;
}

void CCommandSocket::onTick(unsigned int tick)
{
    if (isInvalid())
        return;
    look();
    // Where nothing has happened, what follows would find nothing; a server walks over thousands of such sockets.
    if (isQuiet() && !m_bNetError)
        return;
    // A handler may let go of the last handle.
    const zet::Unknown::Handle_T<CCommandSocket> keep = getRefCount() > 0 ? this : nullptr;
    m_Pending &= static_cast<unsigned char>(~kUnread);
    dispatch();
    TcpStream::onTick(tick);
    const ConnectionState state = getConnectionState();
    if ((state == kConnecting || state == kEstablished) && !m_bNetError)
    {
        if (m_Pending & (kReadable | kUnread))
            hurry();
        return;
    }
    if (!isInvalid())
        close();
}

void CCommandSocket::dispatch()
{
    const zet::PeerLog::Scope scope(
        m_PeerLog, this, [](const void* self) { return static_cast<const CCommandSocket*>(self)->getPeerName(); });
    zet::Stopwatch watch;
    while (getConnectionState() == kEstablished && watch.getElapsed() < kDispatchTime && !m_bNetError)
    {
        std::span<const unsigned char> frame;
        if (!m_PacketReader.read(frame))
        {
            m_bNetError = true;
            continue;
        }
        if (!frame.empty())
            analyse(frame);
        else if (!m_PacketReader.hasPaused())
            return;
    }
    if (getConnectionState() == kEstablished)
        m_Pending |= kUnread;
}

void CCommandSocket::analyse(std::span<const unsigned char> frame)
{
    // What a handler throws ends at the analyser: it is that command's loss alone.
    if (m_pCmdAnalyser && m_pCmdAnalyser->Analyse(this, frame.data(), static_cast<int>(frame.size())) && m_IsStranger)
    {
        m_IsStranger = false;
        limitPackets();
    }
}

bool CCommandSocket::send(const CCmdHead& command)
{
    CCmdPackager packager;
    if (m_bNetError || !command.Write(&packager))
    {
        zet::Log::error(L"Command Package Error:%d", command.GetID());
        return false;
    }
    return send(packager);
}

bool CCommandSocket::send(const CCmdPackager& packager)
{
    if (isInvalid() || m_bNetError)
        return false;
    if (zet::Thread::getCurrentThreadId() != getRunThreadId())
    {
        zet::Log::error(L"Command Send Error:0x%x, Invoke on Wrong Thread", packager.GetCmdID());
        return false;
    }
    OnCmdSend(packager.GetDataSize());
    int size = 0;
    unsigned char* const frame = packager.FrameInPlace(size);
    if (!frame)
        return false;
    // attach() comes when the connection stands; until then the queue takes what is sent.
    if (!m_PacketWriter.isAttached() && getConnectionState() == kConnecting)
        m_PacketWriter.attachOwner(this);
    if (m_PacketWriter.writePlaced(frame - zet::PacketWriter::kHeadSize, size))
        return true;
    m_bNetError = true;
    ring();
    zet::Log::error(L"Error while writing data to network:%s", getPeerName());
    return false;
}

bool CCommandSocket::attach(unsigned int handle)
{
    if (!TcpStream::attach(handle))
        return false;
    m_PacketReader.attachOwner(this);
    m_PacketWriter.attachOwner(this);
    m_bNetError = false;
    const zet::NetLimits* const limits = getPortLimits();
    m_IsStranger = limits && limits->m_FirstInput > 0;
    limitPackets();
    return true;
}

void CCommandSocket::SetPacketLimit(int bytes)
{
    m_PacketLimit = bytes;
    limitPackets();
}

void CCommandSocket::limitPackets()
{
    const zet::NetLimits* const limits = m_IsStranger ? getPortLimits() : nullptr;
    m_PacketReader.setLimit(limits ? std::min(m_PacketLimit, limits->m_FirstInput) : m_PacketLimit);
}

void CCommandSocket::close()
{
    ++m_CloseCount;
    m_PacketReader.detach();
    m_PacketWriter.detach();
    m_bNetError = false;
    m_PeerLog.finish();
    TcpStream::close();
}

void CCommandSocket::OnCmdSend(int) {}

void CCommandSocket::OnCmdRecv(int) {}

const wchar_t* CCommandSocket::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:50 2019";
}

bool SendCommand(CCommandSocket* socket, const CCmdHead& command)
{
    return socket->send(command);
}

zet::String_T<wchar_t> PeerNameOf(CCommandSocket* socket)
{
    return socket->getPeerName();
}

void CountReceivedCommand(CCommandSocket* socket, int size)
{
    socket->OnCmdRecv(size);
}
