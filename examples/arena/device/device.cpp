#include "examples/arena/device/device.h"

#include "examples/arena/roles.h"
#include "examples/arena/server_role.h"
#include "framework/log.h"
#include "framework/time.h"
#include "host/metrics.h"

#include <algorithm>

namespace arena::device
{

void Peer::onEnd(const zet::EndCause& cause)
{
    CFrameworkClientSocket::onEnd(cause);
    m_Server.lose(*this);
}

Server::Server(host::Handlers& handlers, host::Tasks& tasks) : m_Tasks(tasks)
{
    handlers.on<CCmdConnectEvent>([this](CCommandSocket& socket, CCmdConnectEvent& command)
                                  { connect(static_cast<Peer&>(socket), command); });
    handlers.on<CCmdOpenCamera>([this](CCommandSocket& socket, CCmdOpenCamera& command)
                                { openCamera(static_cast<Peer&>(socket), command); });
    handlers.on<CCmdRemoteCamera>([](CCommandSocket& socket, CCmdRemoteCamera& command)
                                  { static_cast<Peer&>(socket).m_WantsMasks = command.m_Flag1; });
    // The phone drives the game.
    pass<CCmdConnectMobileInfo>(handlers, kPhone);
    pass<CCmdKeyEvent>(handlers, kPhone);
    pass<CCmdRhythmKeyEvent>(handlers, kPhone);
    pass<CCmdMouseEvent>(handlers, kPhone);
    pass<CCmdTouchEvent>(handlers, kPhone);
    pass<CCmdSensorEvent>(handlers, kPhone);
    pass<CCmdScreenSynRequest>(handlers, kPhone);
    pass<CCmdScreenSynResponse>(handlers, kGame);
    pass<CCmdControlMode>(handlers, kGame);
    installAnswers(handlers);
}

template <class Command>
void Server::pass(host::Handlers& handlers, Kind from)
{
    handlers.on<Command>(
        [this, from](CCommandSocket& socket, Command& command)
        {
            const Peer& peer = static_cast<Peer&>(socket);
            if (Peer* const other = peer.m_Kind == from ? findOther(peer) : nullptr)
                other->send(command);
            else
                zet::Log::warning(L"A command of seat %d reaches nothing", static_cast<int>(peer.m_Seat));
        });
}

void Server::installAnswers(host::Handlers& handlers)
{
    handlers.on<CCmdHeartEvent>([](CCommandSocket& socket, CCmdHeartEvent&) { socket.send(CCmdHeartReply()); });
    handlers.on<CCmdStartKinect>(
        [](CCommandSocket& socket, CCmdStartKinect& command)
        {
            // The number of sensors, and whether they run.
            CCmdStartKinectResponse response;
            response.m_Value1 = 1;
            response.m_Value2 = command.m_Flag1;
            response.m_Text1 = L"camera";
            socket.send(response);
        });
    handlers.on<CCmdTelvaInfoRequest>(
        [this](CCommandSocket& socket, CCmdTelvaInfoRequest& command)
        {
            // The seats in use, the rate of frames, and the size of masks.
            CCmdTelvaInfoResponse response;
            response.m_Value1 = static_cast<int>(m_Seats.size());
            response.m_Value2 = static_cast<int>(FrameClock::kRate);
            response.m_Value3 = kMaskWidth;
            response.m_Value4 = kMaskHeight;
            response.m_Text1 = m_Name;
            response.m_Text2 = command.m_Text1;
            socket.send(response);
        });
}

Peer* Server::findOther(const Peer& peer)
{
    const auto found = m_Seats.find(peer.m_Seat);
    if (found == m_Seats.end())
        return nullptr;
    return peer.m_Kind == kPhone ? found->second.m_Game : found->second.m_Phone;
}

void Server::connect(Peer& peer, CCmdConnectEvent& command)
{
    const bool isPhone = command.m_Byte1 == kPhone;
    const bool isKnown = isPhone || command.m_Byte1 == kGame;
    Seat* const seat = peer.m_Kind == kNothing && isKnown ? &m_Seats[command.m_Byte2] : nullptr;
    if (!seat || (isPhone ? seat->m_Phone : seat->m_Game))
    {
        command.m_Byte1 = kNothing;
        peer.send(command);
        return;
    }
    peer.m_Kind = isPhone ? kPhone : kGame;
    peer.m_Seat = command.m_Byte2;
    (isPhone ? seat->m_Phone : seat->m_Game) = &peer;
    peer.send(command);
    if (seat->m_Phone)
        sendPhone(*seat, peer.m_Seat);
}

void Server::sendPhone(Seat& seat, unsigned char number)
{
    CCmdConnectPhone phone;
    phone.m_Byte1 = number;
    phone.m_Byte2 = seat.m_Phone != nullptr;
    if (seat.m_Game)
        seat.m_Game->send(phone);
}

void Server::openCamera(Peer& peer, CCmdOpenCamera& command)
{
    const bool opens = command.m_Byte1 != 0;
    CCmdOpenCameraReply reply;
    reply.m_Byte1 = peer.m_Kind != kGame || peer.m_HasCamera == opens;
    peer.send(reply);
    if (reply.m_Byte1 != 0)
        return;
    peer.m_HasCamera = opens;
    CCmdCameraEvent event;
    event.m_Byte1 = opens;
    peer.send(event);
    if (!opens || m_IsRunning)
        return;
    m_IsRunning = true;
    m_Clock.start(zet::getTimeTick());
    sendFrame();
}

void Server::sendFrame()
{
    const unsigned int tick = zet::getTimeTick();
    unsigned int number = 0;
    const bool isDue = m_Clock.take(tick, number);
    if (isDue)
    {
        m_Mask.m_Width = kMaskWidth;
        m_Mask.m_Height = kMaskHeight;
        m_Mask.m_Size = kMaskWidth * kMaskHeight;
        for (int i = 0; i < m_Mask.m_Size; ++i)
            m_Mask.m_Data[i] = maskByteOf(number, i);
        m_Mask.m_Time = FrameClock::timeOf(number);
        m_Skeletons.m_SkeletonCount = 1;
        m_Skeletons.m_Time = m_Mask.m_Time;
        m_Skeletons.m_Values[0] = static_cast<int>(number);
        for (int i = 0; i < Skeletons::kJoints; ++i)
        {
            Skeletons::Joint& joint = m_Skeletons.m_Skeletons[0].m_Joints[i];
            joint.m_X = static_cast<float>(number % 100);
            joint.m_Y = static_cast<float>(i);
            joint.m_State = true;
        }
        m_Skeletons.m_Mask1Size = m_Mask.m_Size;
        std::copy_n(m_Mask.m_Data, m_Mask.m_Size, m_Skeletons.m_Mask1);
    }
    m_IsRunning = false;
    for (auto& [seat, peers] : m_Seats)
    {
        Peer* const game = peers.m_Game;
        if (!game || !game->m_HasCamera)
            continue;
        m_IsRunning = true;
        // A game that does not read misses frames, and gets the newest ones later.
        if (!isDue || game->isOutputHigh())
            continue;
        game->send(m_Skeletons);
        if (game->m_WantsMasks)
            game->send(m_Mask);
    }
    if (m_IsRunning)
        m_Tasks.after(std::chrono::milliseconds(m_Clock.timeToNext(tick)), [this] { sendFrame(); });
}

void Server::lose(Peer& peer)
{
    const auto found = m_Seats.find(peer.m_Seat);
    if (peer.m_Kind == kNothing || found == m_Seats.end())
        return;
    Seat& seat = found->second;
    (peer.m_Kind == kPhone ? seat.m_Phone : seat.m_Game) = nullptr;
    if (peer.m_Kind == kPhone)
        sendPhone(seat, peer.m_Seat);
    if (!seat.m_Phone && !seat.m_Game)
        m_Seats.erase(found);
}

} // namespace arena::device

namespace arena
{

int runDevice(int count, char** words)
{
    host::Service service(L"arena_device", "Serves the devices of a television.",
                          static_cast<unsigned char>(ServerType::Device));
    ServerRole role(service, ServerType::Device, L"device");
    static CCmdAnalyserSocket analyser;
    host::Handlers handlers(analyser);
    host::Questions questions(handlers, service.getSystem());
    host::Tasks tasks(questions);
    // Its frames are large.
    const auto server = std::make_unique<device::Server>(handlers, tasks);
    role.acceptGreetings(handlers);
    const zet::Unknown::Handle_T<device::Port> port(new device::Port(analyser, *server));
    service.serve(*port);
    service.onStart(
        [&]
        {
            service.getMetrics().watch(analyser);
            service.getMetrics().watch("device", *port);
            server->setName(role.getName());
            return role.serve(*port);
        });
    return service.run(count, words);
}

} // namespace arena
