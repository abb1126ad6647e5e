// One TCP connection that carries commands.
#pragma once

#include "framework/packet.h"
#include "framework/peer_log.h"
#include "net/tcp/stream.h"

class CCmdAnalyserSocket;
class CCmdHead;
class CCmdPackager;

// Each tick takes the whole packets that have come, for 100 ms at most, and hands each to the analyser. A frame that
// cannot be parsed costs its log lines, within the peer's share of the log; a failure of the packet layer closes the
// socket at the end of the tick. All operations belong to the run thread; send() refuses any other one. There is no
// lock in this class. A handler may send, close this or any other socket, or let go of the last handle to this one.
class COMMONGROUND_API CCommandSocket : public zet::TcpStream
{
public:
    // Milliseconds that one tick dispatches, looked at before each packet.
    static constexpr unsigned int kDispatchTime = 100;

    // The analyser is not owned and outlives the socket.
    static zet::Unknown::Handle_T<CCommandSocket> createInstance(CCmdAnalyserSocket* analyser);

    CCmdAnalyserSocket* GetCmdAnalyser() const { return m_pCmdAnalyser; }

    void onTick(unsigned int tick) override;
    bool attach(unsigned int handle) override;
    void close() override;

    // Queues the command as one packet. False, with the log told, where the command does not write itself or the
    // packet layer failed; false where the socket is closed. After a failure of the packet layer further sends fail
    // until the socket has closed. On a connection still on its way up commands wait until it stands. A packager's
    // frame is put together in the packager itself: one thread at a time sends it.
    bool send(const CCmdHead& command);
    bool send(const CCmdPackager& packager);
    using zet::TcpStream::send;

    // Hooks for statistics, with the size of a command's payload: before it is framed, and before it is handled.
    virtual void OnCmdSend(int size);
    virtual void OnCmdRecv(int size);

    // The number of calls of close() so far, which distinguishes the connections that one object has in turn.
    unsigned int GetCloseCount() const { return m_CloseCount; }

    // Whether the class of this object has an onTick() of its own, or may have. Where it has not, a tick on which
    // nothing has happened does nothing.
    bool HasOwnTick() const;

    // Bytes that a packet of the peer may have; a longer one closes the socket. On a connection that a port has
    // accepted NetLimits::m_FirstInput counts, too, until a handler has taken the peer's first command.
    void SetPacketLimit(int bytes);

    const wchar_t* getClassName() const override { return L"CCommandSocket"; }
    const wchar_t* getClassTimestamp() const override;

protected:
    explicit CCommandSocket(CCmdAnalyserSocket* analyser);

    CCmdAnalyserSocket* m_pCmdAnalyser;
    zet::PacketReader m_PacketReader;
    zet::PacketWriter m_PacketWriter;
    bool m_bNetError = false;

private:
    // Where onTick() of this class leads.
    const void* m_PlainTick;
    zet::PeerLog m_PeerLog;
    int m_PacketLimit = zet::PacketReader::kDefaultLimit;
    unsigned int m_CloseCount = 0;
    // No command of the peer was taken yet.
    bool m_IsStranger = false;

    void dispatch();
    void limitPackets();
    void analyse(std::span<const unsigned char> frame);
};
