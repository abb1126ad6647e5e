// One TCP connection that carries commands.
#pragma once

#include "framework/packet.h"
#include "framework/peer_log.h"
#include "net/tcp/stream.h"

class CCmdAnalyserSocket;
class CCmdHead;
class CCmdPackager;
class CCommandBroadcast;
namespace zet::inner
{
struct SharedBlock;
}

// Each tick passes the whole packets that have arrived to the analyser, for 100 ms at most. A frame that cannot be
// parsed costs its log lines, within the peer's share of the log; a failure of the packet layer closes the socket at
// the end of the tick. All operations belong to the run thread; send() refuses any other one. There is no lock in this
// class. A handler may send, close this or any other socket, or release the last handle to this one.
class COMMONGROUND_API CCommandSocket : public zet::TcpStream
{
public:
    // Milliseconds that one tick dispatches, tested before each packet.
    static constexpr unsigned int kDispatchTime = 100;

    // The analyser is not owned and outlives the socket.
    static zet::Unknown::Handle_T<CCommandSocket> createInstance(CCmdAnalyserSocket* analyser);

    // The analyser passed at construction, which may be null.
    CCmdAnalyserSocket* GetCmdAnalyser() const { return m_pCmdAnalyser; }

    void onTick(unsigned int tick) override;
    bool attach(unsigned int handle) override;
    unsigned int detach() override;
    void close() override;

    // Queues the command as one packet. False and logged if the command does not write itself or the packet layer
    // failed; false if the socket is closed. After a failure of the packet layer further sends fail until the socket
    // has closed. While connecting, commands wait until the connection is established. A packager's frame is composed
    // in the packager itself: only one thread at a time may send it.
    bool send(const CCmdHead& command);
    bool send(const CCmdPackager& packager);
    using zet::TcpStream::send;

    // Hooks for statistics with the payload size of a command: called before it is framed, and before it is handled.
    virtual void OnCmdSend(int size);
    virtual void OnCmdRecv(int size);

    // Whether the class of this object overrides onTick(), or may do so. If it does not, its server ticks it only when
    // something has happened on it, since other ticks would do nothing.
    bool HasOwnTick() const;

    // The maximum bytes of a packet from the peer; a longer one closes the socket. On an accepted connection
    // NetLimits::m_FirstInput applies too, until the peer's first command was handled.
    void SetPacketLimit(int bytes);

    const wchar_t* getClassName() const override { return L"CCommandSocket"; }
    const wchar_t* getClassTimestamp() const override;

private:
    // The members are in an order without gaps: a server has thousands of sockets.
    int m_PacketLimit;

protected:
    // The analyser is not owned and outlives the socket. Without one, null, commands are dropped.
    explicit CCommandSocket(CCmdAnalyserSocket* analyser);

    CCmdAnalyserSocket* m_pCmdAnalyser;
    zet::PacketReader m_PacketReader;
    zet::PacketWriter m_PacketWriter;

private:
    zet::PeerLog m_PeerLog;

protected:
    bool m_bNetError = false;

private:
    friend class CCommandBroadcast;

    // No command of the peer was handled yet.
    bool m_IsUnproven = false;

    // The two halves of send(): whether the socket may send now, with the hook, and one frame as one packet. The frame
    // follows kHeadSize bytes of the packet writer, which are overwritten. CCommandBroadcast calls them; send() has
    // them inline.
    bool beginSend(const CCmdPackager& packager);
    bool sendFrame(unsigned char* frame, int size);
    // The same for a frame in a block with those bytes before it, which all sockets of a broadcast hold.
    bool sendShared(zet::inner::SharedBlock& packet);
    bool beginSendInline(const CCmdPackager& packager);
    bool sendFrameInline(unsigned char* frame, int size);
    bool sendPackage(const CCmdPackager& packager);
    void failSend();
    void limitPackets();
    void analyse(std::span<const unsigned char> frame);
};
