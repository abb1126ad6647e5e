#include "transport/command_socket.h"

#include "dispatch/analyser_socket.h"
#include "dispatch/inner/socket_seam.h"
#include "framework/inner/virtual_target.h"
#include "framework/log.h"
#include "framework/thread.h"
#include "net/inner/blocks.h"
#include "net/inner/recorder.h"
#include "net/limits.h"
#include "net/tcp/inner/packet_tick.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"
#include "packaging/inner/socket_seam.h"
#include "packaging/wire/access.h"

#include <algorithm>
#include <atomic>

// A packet is one stream frame; a packet reader without another limit accepts the largest one.
static constexpr int kLargestFrame = CCmdPackager::kMaxHeaderSize + CCmdPackager::kMaxDataSize;
static_assert(zet::PacketReader::kDefaultLimit == kLargestFrame);
static_assert(zet::PacketWriter::kHeadSize <= CCmdPackager::kSpareSize);

// The targets of a call of onTick() in an object of CCommandSocket itself: on Windows each module that derives from it
// has one of its own, which jumps to the function. The sockets of a fifth module are ticked always.
static std::atomic<const void*> s_PlainTicks[4];

static bool isPlainTick(const void* target)
{
    for (const auto& each : s_PlainTicks)
        if (target && each.load(std::memory_order_relaxed) == target)
            return true;
    return false;
}

static void notePlainTick(const void* target)
{
    for (auto& each : s_PlainTicks)
    {
        const void* known = nullptr;
        if (isPlainTick(target) || each.compare_exchange_strong(known, target, std::memory_order_relaxed))
            return;
    }
}

zet::Unknown::Handle_T<CCommandSocket> CCommandSocket::createInstance(CCmdAnalyserSocket* analyser)
{
    return new CCommandSocket(analyser);
}

CCommandSocket::CCommandSocket(CCmdAnalyserSocket* analyser) : m_PacketLimit(kLargestFrame), m_pCmdAnalyser(analyser)
{
    // During this constructor virtual calls reach this class, also in an object of a derived class.
    notePlainTick(zet::inner::getVirtualTarget(*this, &CCommandSocket::onTick));
}

bool CCommandSocket::HasOwnTick() const
{
    return !isPlainTick(zet::inner::getVirtualTarget(*this, &CCommandSocket::onTick));
}

void CCommandSocket::onTick(unsigned int tick)
{
    // A server visits thousands of sockets on which nothing has happened.
    if (isInvalid() || (!zet::inner::PacketTick::isDue(*this) && !m_bNetError))
        return;
    // A handler may release the last handle.
    const zet::Unknown::Handle_T<CCommandSocket> keep = getRefCount() > 0 ? this : nullptr;
    zet::inner::PacketTick packets(*this, m_PacketReader, m_PeerLog, m_bNetError);
    if (!packets.run(tick, kDispatchTime, [this](std::span<const unsigned char> frame) { analyse(frame); }) &&
        !isInvalid())
        close();
}

void CCommandSocket::analyse(std::span<const unsigned char> frame)
{
    if (zet::inner::Recorder::isOn())
        zet::inner::Recorder::reportPacket(*this, zet::inner::Recorder::kReceived, frame);
    // The analyser catches exceptions of handlers: they cost that command only.
    if (m_pCmdAnalyser && m_pCmdAnalyser->Analyse(this, frame.data(), static_cast<int>(frame.size())) && m_IsUnproven)
    {
        m_IsUnproven = false;
        limitPackets();
    }
}

// The halves of send() are inline in it: a call costs as much as what they do.
[[gnu::always_inline]] inline bool CCommandSocket::beginSendInline(const CCmdPackager& packager)
{
    if (isInvalid() || m_bNetError)
        return false;
    if (zet::Thread::getCurrentThreadId() != getRunThreadId())
    {
        zet::Log::error(L"Command Send Error:0x%x, Invoke on Wrong Thread", packager.GetCmdID());
        return false;
    }
    OnCmdSend(packager.GetDataSize());
    if (CommandObserver* const observer = m_pCmdAnalyser ? m_pCmdAnalyser->GetObserver() : nullptr)
        observer->onSent(packager.GetCmdID(), packager.GetDataSize());
    return true;
}

[[gnu::always_inline]] inline bool CCommandSocket::sendFrameInline(unsigned char* frame, int size)
{
    // attach() is called once the connection is established; until then output is queued.
    if (!m_PacketWriter.isAttached() && getConnectionState() == kConnecting)
        m_PacketWriter.attachOwner(this);
    if (m_PacketWriter.writePlaced(frame - zet::PacketWriter::kHeadSize, size))
    {
        if (zet::inner::Recorder::isOn())
            zet::inner::Recorder::reportPacket(*this, zet::inner::Recorder::kSent, {frame, static_cast<size_t>(size)});
        return true;
    }
    failSend();
    return false;
}

[[gnu::always_inline]] inline bool CCommandSocket::sendPackage(const CCmdPackager& packager)
{
    if (!beginSendInline(packager))
        return false;
    const std::span<unsigned char> frame = wire::Access::makeFrame(packager);
    return !frame.empty() && sendFrameInline(frame.data(), static_cast<int>(frame.size()));
}

bool CCommandSocket::send(const CCmdHead& command)
{
    CCmdPackager packager;
    if (m_bNetError || !command.Write(&packager))
    {
        zet::Log::error(L"Command Package Error:%d", command.GetID());
        return false;
    }
    return sendPackage(packager);
}

bool CCommandSocket::send(const CCmdPackager& packager)
{
    return sendPackage(packager);
}

bool CCommandSocket::beginSend(const CCmdPackager& packager)
{
    return beginSendInline(packager);
}

bool CCommandSocket::sendFrame(unsigned char* frame, int size)
{
    return sendFrameInline(frame, size);
}

bool CCommandSocket::sendShared(zet::inner::SharedBlock& packet)
{
    unsigned char* const frame = packet.data() + zet::PacketWriter::kHeadSize;
    const int size = packet.size() - zet::PacketWriter::kHeadSize;
    // An overridden write() may move this socket to another System.
    const std::shared_ptr<zet::inner::BlockPool> pool = getOutputPool();
    if (!pool)
        return sendFrameInline(frame, size);
    const zet::inner::BlockPool::Offer offer(*pool, packet);
    return sendFrameInline(frame, size);
}

// Not inline: its objects would make each send() longer.
[[gnu::noinline, gnu::cold]] void CCommandSocket::failSend()
{
    m_bNetError = true;
    noteCause({zet::EndCause::kOutputFull, 0});
    hurry();
    zet::Log::error(L"Error while writing data to network:%s", getPeerName());
}

bool CCommandSocket::attach(unsigned int handle)
{
    if (!TcpStream::attach(handle))
        return false;
    m_PacketReader.attachOwner(this);
    m_PacketWriter.attachOwner(this);
    m_bNetError = false;
    const zet::NetLimits* const limits = getPortLimits();
    m_IsUnproven = limits && limits->m_FirstInput > 0;
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
    const zet::NetLimits* const limits = m_IsUnproven ? getPortLimits() : nullptr;
    m_PacketReader.setLimit(limits ? std::min(m_PacketLimit, limits->m_FirstInput) : m_PacketLimit);
}

unsigned int CCommandSocket::detach()
{
    return TcpStream::detach();
}

void CCommandSocket::close()
{
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
