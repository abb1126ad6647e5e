// The device service of a television: phones drive the game of their seat, and the camera sends motion frames.
#pragma once

#include "commands/camera.h"
#include "commands/device.h"
#include "examples/arena/device/frame_clock.h"
#include "examples/arena/protocol/device_codes.h"
#include "host/tasks.h"
#include "transport/framework_server_socket.h"

#include <map>

namespace arena::device
{

class Server;

class Peer : public CFrameworkClientSocket
{
public:
    Peer(CCmdAnalyserSocket& analyser, Server& server) : CFrameworkClientSocket(&analyser), m_Server(server) {}
    void onEnd(const zet::EndCause& cause) override;

    Kind m_Kind = kNothing;
    unsigned char m_Seat = 0;
    // Of a game.
    bool m_HasCamera = false;
    bool m_WantsMasks = true;

private:
    Server& m_Server;
};

class Port : public CFrameworkServerSocket
{
public:
    Port(CCmdAnalyserSocket& analyser, Server& server)
        : CFrameworkServerSocket(L"", 0), m_Analyser(analyser), m_Server(server)
    {
    }
    void onAccept() override { accept(zet::Unknown::Handle_T<Peer>(new Peer(m_Analyser, m_Server))); }

private:
    CCmdAnalyserSocket& m_Analyser;
    Server& m_Server;
};

class Server
{
public:
    // The handlers and the tasks are not owned.
    Server(host::Handlers& handlers, host::Tasks& tasks);

    void setName(const zet::String_T<wchar_t>& name) { m_Name = name; }
    void lose(Peer& peer);

private:
    struct Seat
    {
        Peer* m_Phone = nullptr;
        Peer* m_Game = nullptr;
    };

    // Passes a command of one kind of peer to the other peer of its seat, unchanged.
    template <class Command>
    void pass(host::Handlers& handlers, Kind from);
    void connect(Peer& peer, CCmdConnectEvent& command);
    void openCamera(Peer& peer, CCmdOpenCamera& command);
    void installAnswers(host::Handlers& handlers);
    Peer* findOther(const Peer& peer);
    void sendPhone(Seat& seat, unsigned char number);
    // Sends the frame that is due to all games with a camera, and comes again while there are any.
    void sendFrame();

    host::Tasks& m_Tasks;
    zet::String_T<wchar_t> m_Name;
    std::map<unsigned char, Seat> m_Seats;
    FrameClock m_Clock;
    bool m_IsRunning = false;
    // Large, so they are kept.
    CCmdSkeletons m_Skeletons;
    CCmdMaskImage m_Mask;
};

} // namespace arena::device
