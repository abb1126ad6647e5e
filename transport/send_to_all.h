// One command to many sockets: it is encoded and framed once, and sockets with nothing else queued share its memory.
#pragma once

#include "framework/dictionary.h"
#include "framework/unknown.h"
#include "packaging/cmd_packager.h"

class CCmdHead;
class CCommandSocket;
class UdpClientSocket;
namespace zet::inner
{
struct SharedBlock;
}

// The command of SendToAll(), for a caller that visits the sockets itself. The object is large: keep it on the stack.
// Not locked: it belongs to the thread of its sockets, whose Systems stay on that thread meanwhile.
class COMMONGROUND_API CCommandBroadcast
{
public:
    // Encodes the command. If it does not write itself, that is logged, and no socket takes it.
    explicit CCommandBroadcast(const CCmdHead& command);
    // Sends the packager itself, which outlives this object and is not changed meanwhile.
    explicit CCommandBroadcast(const CCmdPackager& packager);
    ~CCommandBroadcast();
    CCommandBroadcast(const CCommandBroadcast&) = delete;
    CCommandBroadcast& operator=(const CCommandBroadcast&) = delete;

    // As socket->send(packager), with its hook, its rule of the thread and its reports. False for null too.
    bool SendTo(CCommandSocket* socket);
    // The same over UDP, but false if the socket does not queue the command: it is closed or full, or the frame is
    // above UdpClientSocket::kFrameLimit. A full socket breaks off, as with send().
    bool SendTo(UdpClientSocket* socket);

private:
    static constexpr int kNotPacked = -1;

    // Frames once; false if that fails.
    bool frame();
    bool pack();

    CCmdPackager m_Encoded;
    // Null if the command did not write itself.
    const CCmdPackager* m_Packager;
    // The stream frame, in the packager's memory or in the block; null before the first socket.
    unsigned char* m_Frame = nullptr;
    int m_FrameSize = 0;
    // The packet that sockets hold from the second one on. Null before, and if each copies the frame.
    zet::inner::SharedBlock* m_Shared = nullptr;
    // The length and the datagram frame; the size is that of the frame, 0 if it cannot be sent.
    int m_PackedSize = kNotPacked;
    unsigned char m_Packed[2 + 0x7FFF];
};

namespace send_to_all
{

// The number of sockets of a range that take the command.
template <class Sockets>
int count(Sockets&& sockets, CCommandBroadcast& broadcast)
{
    int taken = 0;
    for (auto&& socket : sockets)
    {
        if constexpr (requires { socket.get(); })
            taken += broadcast.SendTo(socket.get());
        else
            taken += broadcast.SendTo(socket);
    }
    return taken;
}

// The same for a dictionary of handles, whose entries a hook may erase.
template <class Key, class Socket>
int count(zet::Dictionary<Key, zet::Unknown::Handle_T<Socket>>& sockets, CCommandBroadcast& broadcast)
{
    using Sockets = zet::Dictionary<Key, zet::Unknown::Handle_T<Socket>>;
    struct Sender : Sockets::Walker
    {
        explicit Sender(CCommandBroadcast& broadcast) : m_Broadcast(broadcast) {}
        bool onEntry(const Key&, zet::Unknown::Handle_T<Socket>& socket) override
        {
            m_Taken += m_Broadcast.SendTo(socket.get());
            return true;
        }
        CCommandBroadcast& m_Broadcast;
        int m_Taken = 0;
    } sender(broadcast);
    sockets.foreach(sender);
    return sender.m_Taken;
}

} // namespace send_to_all

// Sends a command, or a packager, on each socket of a range: pointers or handles to classes derived from CCommandSocket
// or from UdpClientSocket, or a dictionary of such handles, such as *server->GetAllClientSocket(). Returns the number
// of sockets that took it; a socket that does not take it affects no other. The hooks of the sockets must not change a
// range; they may erase entries of a dictionary. The output of each socket leaves when it would after its own send().
template <class Sockets>
int SendToAll(Sockets&& sockets, const CCmdHead& command)
{
    CCommandBroadcast broadcast(command);
    return send_to_all::count(sockets, broadcast);
}

// The same for a command that is in a packager already, which is not changed meanwhile.
template <class Sockets>
int SendToAll(Sockets&& sockets, const CCmdPackager& packager)
{
    CCommandBroadcast broadcast(packager);
    return send_to_all::count(sockets, broadcast);
}
