#include "transport/udp_client_socket.h"

#include "net/inner/recorder.h"
#include "packaging/cmd_packager.h"
#include "packaging/command_head.h"

#include <cstdlib>

zet::Unknown::Handle_T<UdpClientSocket> UdpClientSocket::createInstance()
{
    return new UdpClientSocket;
}

UdpClientSocket::~UdpClientSocket()
{
    std::free(m_pBody);
}

bool UdpClientSocket::connect(zet::UdpServer* server, const wchar_t* ip, short port, const zet::Uuid& id)
{
    return connect(server, ip, static_cast<unsigned short>(port), id);
}

void UdpClientSocket::onTick(unsigned int tick)
{
    // A handler may release the last handle.
    const zet::Unknown::Handle_T<UdpClientSocket> hold = getRefCount() > 0 ? this : nullptr;
    zet::UdpSecureConnection::onTick(tick);
    const zet::PeerLog::Scope scope(
        m_PeerLog, this, [](const void* self) { return static_cast<const UdpClientSocket*>(self)->getPeerName(); });
    while (readHead() && readBody())
    {
        if (zet::inner::Recorder::isOn())
            zet::inner::Recorder::reportPacket(*this, zet::inner::Recorder::kReceived,
                                               {m_pBody, static_cast<size_t>(m_iHead)});
        // On some platforms an unsigned long is too small for a pointer; handlers there identify the socket otherwise.
        m_CmdAnalyser.Analyse(m_pBody, m_iHead, static_cast<unsigned long>(reinterpret_cast<size_t>(this)), 0);
        beginCommand();
    }
}

void UdpClientSocket::beginCommand()
{
    m_iHeadRead = 0;
    m_iHead = 0;
    m_iBodyRead = 0;
}

bool UdpClientSocket::readHead()
{
    // A partial command of the previous connection is discarded.
    if (takeBeginning())
        beginCommand();
    if (m_iHeadRead < 2)
    {
        unsigned char bytes[2];
        const int got = receive(bytes, 2 - m_iHeadRead);
        if (got <= 0)
            return false;
        for (int i = 0; i < got; ++i)
            m_iHead = static_cast<short>(m_iHead | bytes[i] << (8 * m_iHeadRead++));
        m_iBodyRead = 0;
    }
    return m_iHeadRead == 2;
}

bool UdpClientSocket::readBody()
{
    if (m_iHead <= 0)
    {
        // Not close(): the server that holds this socket must get the end of the connection.
        breakOff();
        consume(available());
        return false;
    }
    if (m_iBodyCapacity < m_iHead)
    {
        void* const body = std::realloc(m_pBody, static_cast<size_t>(m_iHead));
        if (!body)
            return false;
        m_pBody = static_cast<unsigned char*>(body);
        m_iBodyCapacity = m_iHead;
    }
    const int got = receive(m_pBody + m_iBodyRead, m_iHead - m_iBodyRead);
    if (got <= 0)
        return false;
    m_iBodyRead += got;
    return m_iBodyRead == m_iHead;
}

void UdpClientSocket::onClose()
{
    m_PeerLog.finish();
    close();
}

bool UdpClientSocket::send(const CCmdHead& command)
{
    CCmdPackager packager;
    return command.Write(&packager) && send(packager);
}

bool UdpClientSocket::send(const CCmdPackager& packager)
{
    unsigned char place[kHeadSize + kFrameLimit];
    const int size = pack(packager, place);
    // A longer frame is lost without a report.
    if (size > 0)
        sendPacked(packager, place, size);
    return true;
}

int UdpClientSocket::pack(const CCmdPackager& packager, unsigned char* place)
{
    const int size = packager.Pack(nullptr, 0);
    // The length is a signed 16-bit value.
    if (size <= 0 || size > kFrameLimit)
        return 0;
    place[0] = static_cast<unsigned char>(size);
    place[1] = static_cast<unsigned char>(size >> 8);
    return packager.Pack(place + kHeadSize, size);
}

bool UdpClientSocket::sendPacked(const CCmdPackager& packager, const unsigned char* place, int size)
{
    if (CommandObserver* const observer = m_CmdAnalyser.GetObserver())
        observer->onSent(packager.GetCmdID(), packager.GetDataSize());
    zet::UdpSecureConnection::send(place, kHeadSize);
    if (zet::UdpSecureConnection::send(place + kHeadSize, size) == size)
    {
        if (zet::inner::Recorder::isOn())
            zet::inner::Recorder::reportPacket(*this, zet::inner::Recorder::kSent,
                                               {place + kHeadSize, static_cast<size_t>(size)});
        return true;
    }
    // Not close(): a connection that has ended meanwhile still has to report it, and may hold commands.
    breakOff({zet::EndCause::kOutputFull, 0});
    return false;
}

const wchar_t* UdpClientSocket::getClassTimestamp() const
{
    return L"Mon Dec  9 15:18:49 2019";
}
