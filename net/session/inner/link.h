// The TCP connection below a net session.
//
//   greeting   "zns" 1, the 16 bytes of an id          the first packet of each side
//   message    Varint count, class name, own form      every later packet
#pragma once

#include "framework/inner/guard.h"
#include "framework/packet.h"
#include "framework/peer_log.h"
#include "framework/uuid.h"
#include "net/tcp/stream.h"

namespace zet
{

class Message;
class NetSession;

namespace inner
{

// Its session holds it and, while it runs, the System. Belongs to the System's thread.
class NetLink final : public TcpStream
{
public:
    NetLink(NetSession& session, bool isAccepting, int messageLimit);

    void onTick(unsigned int tick) override;
    bool attach(unsigned int handle) override;

    // Queues the greeting.
    bool greet(const Uuid& id);
    // Both greetings have arrived, and the connection has not ended.
    bool isOpen() const { return m_Phase == kOpen; }
    bool hasEnded() const { return m_Phase == kEnded; }
    bool sendMessage(const Message& message);
    // The session releases the link: closes, and calls the session no more. The cause, if any, is the session's.
    void leave(EndCause cause);
    void onWritable() override;

    // Calls a host's code; its exceptions are logged and caught.
    template <class Call>
    static void guard(const NetSession& session, Call call);

private:
    enum Phase : unsigned char
    {
        kGreeting,
        kOpen,
        kEnded
    };

    void takePacket(std::span<const unsigned char> packet);
    bool takeGreeting(InputStream& stream);
    void takeMessage(InputStream& stream);
    void end();
    static void reportThrown(const NetSession& session, const char* what);

    NetSession* m_Session;
    PacketReader m_Reader;
    PacketWriter m_Writer;
    int m_MessageLimit;
    // The greeting must arrive before this time of getTimeTick().
    unsigned int m_GreetBy;
    Phase m_Phase = kGreeting;
    bool m_IsAccepting;
    bool m_IsUnusable = false;
    PeerLog m_PeerLog;
};

template <class Call>
void NetLink::guard(const NetSession& session, Call call)
{
    guardCall(call, [&](const char* what) { reportThrown(session, what ? what : "?"); });
}

} // namespace inner

} // namespace zet
