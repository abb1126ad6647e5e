// One connection over UDP that carries commands.
#pragma once

#include "dispatch/analyser.h"
#include "framework/peer_log.h"
#include "net/quic/stream.h"

class CCmdHead;
class CCmdPackager;

// Each command travels behind its length: two bytes, signed and little-endian, and then the datagram frame, which thus
// has 32,767 bytes at most. Each tick hands all whole commands that have come to the analyser; what is cut waits for
// the next one. A handler gets the socket as its first argument, where an unsigned long holds a pointer, and 0 as its
// second, and may send, close this or any other socket, or let go of the last handle to this one.
class COMMONGROUND_API UdpClientSocket : public zet::UdpStream
{
public:
    // The longest frame that is sent.
    static constexpr int kFrameLimit = 32767;

    static zet::Unknown::Handle_T<UdpClientSocket> createInstance();
    ~UdpClientSocket() override;

    // A length below 1 from the peer breaks the connection, and what came behind it is lost. A frame that cannot be
    // parsed costs its log lines, within the peer's share of the log.
    void onTick(unsigned int tick) override;
    // Closes.
    void onClose() override;
    using zet::UdpStream::connect;
    // As zet::UdpServer::UdpConnection::connect(); a port above 32,767 is given as the negative number of its bits.
    virtual bool connect(zet::UdpServer* server, const wchar_t* ip, short port, const zet::Uuid& id);
    // For a port written as a plain number.
    bool connect(zet::UdpServer* server, const wchar_t* ip, int port, const zet::Uuid& id)
    {
        return connect(server, ip, static_cast<unsigned short>(port), id);
    }

    // False where the command does not write itself. A frame above the limit is not sent, and nobody is told; also
    // then the result is true. Where the queue is full, the peer has not read for long: the connection breaks, since
    // the commands behind the gap would mean something else; the next tick calls onClose().
    bool send(const CCmdHead& command);
    bool send(const CCmdPackager& packager);
    using zet::UdpStream::send;

    // Of this socket alone, for the host to fill before commands come.
    CCmdAnalyser& getCmdAnalyser() { return m_CmdAnalyser; }

    const wchar_t* getClassName() const override { return L"UdpClientSocket"; }
    const wchar_t* getClassTimestamp() const override;

protected:
    UdpClientSocket() = default;

    CCmdAnalyser m_CmdAnalyser;
    // Where reading stands; a close leaves it as it is, and the next connection begins anew. Bytes of the length that
    // have come, and the length.
    int m_iHeadRead = 0;
    short m_iHead = 0;
    // Memory for a frame, which only grows, and the bytes of the frame that have come.
    int m_iBodyCapacity = 0;
    unsigned char* m_pBody = nullptr;
    int m_iBodyRead = 0;

private:
    zet::PeerLog m_PeerLog;

    // One step of reading; false where there is no more for now.
    bool readHead();
    bool readBody();
    void beginCommand();
};
