// One connection over UDP that carries commands.
#pragma once

#include "dispatch/analyser.h"
#include "framework/peer_log.h"
#include "net/quic/stream.h"

class CCmdHead;
class CCmdPackager;
class CCommandBroadcast;

// Each command follows its length: two bytes, signed and little-endian, then the datagram frame, which has 32,767 bytes
// at most. Each tick passes all whole commands to the analyser; a partial one waits for the next tick. A handler gets
// the socket as its first argument, if an unsigned long can hold a pointer, and 0 as its second. It may send, close
// this or any other socket, or release the last handle to this one.
class COMMONGROUND_API UdpClientSocket : public zet::UdpStream
{
public:
    // The longest frame that is sent.
    static constexpr int kFrameLimit = 32767;
    // Bytes of the length before each frame.
    static constexpr int kHeadSize = 2;

    // A socket without a connection.
    static zet::Unknown::Handle_T<UdpClientSocket> createInstance();
    ~UdpClientSocket() override;

    // A length below 1 from the peer breaks the connection; later bytes are lost. A frame that cannot be parsed costs
    // its log lines, within the peer's share of the log.
    void onTick(unsigned int tick) override;
    // Closes.
    void onClose() override;
    using zet::UdpStream::connect;
    // As zet::UdpServer::UdpConnection::connect(); a port above 32,767 is the negative number with the same bits.
    virtual bool connect(zet::UdpServer* server, const wchar_t* ip, short port, const zet::Uuid& id);
    // For a port as a plain number.
    bool connect(zet::UdpServer* server, const wchar_t* ip, int port, const zet::Uuid& id)
    {
        return connect(server, ip, static_cast<unsigned short>(port), id);
    }

    // False if the command does not write itself. A frame above the limit is silently not sent, and the result is true.
    // If the queue is full, the peer has not read for long: the connection breaks, since the commands after the gap
    // would be misread; the next tick calls onClose().
    bool send(const CCmdHead& command);
    bool send(const CCmdPackager& packager);
    using zet::UdpStream::send;

    // This socket's own; the host fills it before commands arrive.
    CCmdAnalyser& getCmdAnalyser() { return m_CmdAnalyser; }

    const wchar_t* getClassName() const override { return L"UdpClientSocket"; }
    const wchar_t* getClassTimestamp() const override;

protected:
    UdpClientSocket() = default;

    CCmdAnalyser m_CmdAnalyser;
    // The state of reading; close() keeps it, and the next connection resets it. Bytes of the length received, and the
    // length.
    int m_iHeadRead = 0;
    short m_iHead = 0;
    // Memory for a frame, which only grows, and the bytes of the frame received.
    int m_iBodyCapacity = 0;
    unsigned char* m_pBody = nullptr;
    int m_iBodyRead = 0;

private:
    friend class CCommandBroadcast;

    zet::PeerLog m_PeerLog;

    // Writes the length and the frame; returns the bytes of the frame, 0 if it is above the limit. The place has
    // kHeadSize + kFrameLimit bytes.
    static int pack(const CCmdPackager& packager, unsigned char* place);
    // Sends that frame of this command. False, and the connection breaks, if the queue does not take it.
    bool sendPacked(const CCmdPackager& packager, const unsigned char* place, int size);
    // One step of reading; false if there are no more bytes for now.
    bool readHead();
    bool readBody();
    void beginCommand();
};
