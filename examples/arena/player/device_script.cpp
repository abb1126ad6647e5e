#include "examples/arena/player/device_script.h"

#include "examples/arena/device/device.h"
#include "examples/arena/player/listener.h"

#include <cmath>
#include <cstring>

namespace arena::player
{

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kStep = 5ms;
constexpr std::chrono::milliseconds kPatience = Listener::kPatience;
constexpr float kTilt = 1.25f;
constexpr char kPicture[] = "a picture of the screen";
constexpr int kMostSeats = 255;

struct DeviceOptions
{
    HostPort m_Server;
    // From 1 to 255; every player has a seat of its own.
    unsigned char m_Seat = 1;
    // The frames to wait for.
    int m_Frames = 15;
};

// What the players of a process share.
class DeviceClient
{
public:
    explicit DeviceClient(zet::System& system);

    CCmdAnalyserSocket m_Analyser;

private:
    host::Handlers m_Handlers;

public:
    host::Questions m_Questions;
};

// Both connections of a seat.
class DeviceUser : public Listener
{
public:
    DeviceUser(Player& player, const DeviceOptions& options)
        : Listener(player), m_Options(options), m_Client(Shared<DeviceClient>::of(player)),
          m_Tasks(m_Client.m_Questions)
    {
    }
    ~DeviceUser()
    {
        ListenerSocket::end(m_Phone);
        ListenerSocket::end(m_Game);
    }

    zet::Unknown::Handle_T<ListenerSocket> open()
    {
        return ListenerSocket::open(m_Client.m_Analyser, *this, m_Options.m_Server);
    }
    void checkFrame(const CCmdSkeletons& frame);
    void checkMask(const CCmdMaskImage& mask);

    const DeviceOptions m_Options;
    DeviceClient& m_Client;
    zet::Unknown::Handle_T<ListenerSocket> m_Phone;
    zet::Unknown::Handle_T<ListenerSocket> m_Game;
    int m_LastFrame = -1;
    bool m_HasPhone = false;
    bool m_HasPicture = false;
    bool m_HasTilt = false;
    // Last, so that it is destroyed first.
    host::Tasks m_Tasks;
};

void DeviceUser::checkFrame(const CCmdSkeletons& frame)
{
    const int number = frame.m_Values[0];
    expect(number > m_LastFrame, "frames in ascending order");
    m_LastFrame = number;
    expect(frame.m_Time == device::FrameClock::timeOf(static_cast<unsigned int>(number)), "the time of a frame");
    const Skeletons::Joint& joint = frame.m_Skeletons[0].m_Joints[Skeletons::kJoints - 1];
    expect(frame.m_SkeletonCount == 1 && joint.m_X == static_cast<float>(number % 100) &&
               joint.m_Y == static_cast<float>(Skeletons::kJoints - 1) && joint.m_State,
           "the last joint");
    const int last = device::kMaskWidth * device::kMaskHeight - 1;
    expect(frame.m_Mask1Size == last + 1 && frame.m_Mask2Size == 0 &&
               frame.m_Mask1[last] == device::maskByteOf(static_cast<unsigned int>(number), last),
           "the image of a frame");
}

void DeviceUser::checkMask(const CCmdMaskImage& mask)
{
    const int last = device::kMaskWidth * device::kMaskHeight - 1;
    expect(mask.m_Width == device::kMaskWidth && mask.m_Height == device::kMaskHeight && mask.m_Size == last + 1,
           "the size of a mask");
    // It follows the frame of the same number.
    expect(mask.m_Data[last] == device::maskByteOf(static_cast<unsigned int>(m_LastFrame), last),
           "the bytes of a mask");
}

DeviceClient::DeviceClient(zet::System& system) : m_Handlers(m_Analyser), m_Questions(m_Handlers, system)
{
    m_Questions.expect<CCmdConnectEvent, CCmdHeartReply, CCmdStartKinectResponse, CCmdTelvaInfoResponse,
                       CCmdOpenCameraReply>();
    count<CCmdConnectPhone, DeviceUser>(m_Handlers, "CCmdConnectPhone",
                                        [](DeviceUser& user, CCmdConnectPhone& phone)
                                        { user.m_HasPhone = phone.m_Byte2 != 0; });
    count<CCmdConnectMobileInfo>(m_Handlers, "CCmdConnectMobileInfo");
    count<CCmdKeyEvent>(m_Handlers, "CCmdKeyEvent");
    count<CCmdRhythmKeyEvent>(m_Handlers, "CCmdRhythmKeyEvent");
    count<CCmdMouseEvent>(m_Handlers, "CCmdMouseEvent");
    count<CCmdTouchEvent>(m_Handlers, "CCmdTouchEvent");
    count<CCmdSensorEvent, DeviceUser>(m_Handlers, "CCmdSensorEvent",
                                       [](DeviceUser& user, CCmdSensorEvent& sensor)
                                       { user.m_HasTilt = std::fabs(sensor.getGSensorX() - kTilt) < 1.0f / 32; });
    count<CCmdControlMode>(m_Handlers, "CCmdControlMode");
    count<CCmdCameraEvent>(m_Handlers, "CCmdCameraEvent");
    count<CCmdScreenSynResponse, DeviceUser>(
        m_Handlers, "CCmdScreenSynResponse",
        [](DeviceUser& user, CCmdScreenSynResponse& screen)
        {
            user.m_HasPicture = screen.m_Data1.getBufferSize() == static_cast<int>(sizeof kPicture) &&
                                std::memcmp(screen.m_Data1.getBuffer(), kPicture, sizeof kPicture) == 0;
        });
    count<CCmdSkeletons, DeviceUser>(m_Handlers, "CCmdSkeletons",
                                     [](DeviceUser& user, CCmdSkeletons& frame) { user.checkFrame(frame); });
    count<CCmdMaskImage, DeviceUser>(m_Handlers, "CCmdMaskImage",
                                     [](DeviceUser& user, CCmdMaskImage& mask) { user.checkMask(mask); });
    // The game answers with its picture.
    count<CCmdScreenSynRequest, DeviceUser>(m_Handlers, "CCmdScreenSynRequest",
                                            [](DeviceUser& user, CCmdScreenSynRequest&)
                                            {
                                                CCmdScreenSynResponse screen;
                                                screen.m_Data1.setBufferSize(sizeof kPicture);
                                                std::memcpy(screen.m_Data1.getBuffer(), kPicture, sizeof kPicture);
                                                user.m_Game->send(screen);
                                            });
}

// Game and phone take the seat; what both may ask.
host::Task connect(DeviceUser& user)
{
    CCmdConnectEvent connect;
    connect.m_Byte2 = user.m_Options.m_Seat;
    for (const device::Kind kind : {device::kGame, device::kPhone})
    {
        CCommandSocket& socket = kind == device::kGame ? *user.m_Game : *user.m_Phone;
        connect.m_Byte1 = kind;
        // The second time is refused.
        for (const unsigned char answer :
             {static_cast<unsigned char>(kind), static_cast<unsigned char>(device::kNothing)})
        {
            const auto taken = co_await host::ask<CCmdConnectEvent>(socket, connect, kPatience);
            if (user.isFirst("CCmdConnectEvent", taken, {"CCmdConnectEvent"}))
                user.expect(std::get<0>(taken).m_Byte1 == answer, "the seat");
        }
    }
    const CCmdHeartEvent heart;
    const auto beat = co_await host::ask<CCmdHeartReply>(*user.m_Phone, heart, kPatience);
    user.isFirst("CCmdHeartEvent", beat, {"CCmdHeartReply"});
    CCmdTelvaInfoRequest askInfo;
    askInfo.m_Text1 = L"phone";
    const auto info = co_await host::ask<CCmdTelvaInfoResponse>(*user.m_Phone, askInfo, kPatience);
    if (user.isFirst("CCmdTelvaInfoRequest", info, {"CCmdTelvaInfoResponse"}))
        user.expect(std::get<0>(info).m_Value2 == static_cast<int>(device::FrameClock::kRate), "the rate of frames");
    CCmdStartKinect kinect;
    kinect.m_Flag1 = true;
    const auto started = co_await host::ask<CCmdStartKinectResponse>(*user.m_Game, kinect, kPatience);
    if (user.isFirst("CCmdStartKinect", started, {"CCmdStartKinectResponse"}))
        user.expect(std::get<0>(started).m_Value2 == 1, "the sensor runs");
}

// The phone drives the game, and sees its screen.
host::Task drive(DeviceUser& user)
{
    CCommandSocket& phone = *user.m_Phone;
    CCmdConnectMobileInfo mobile;
    mobile.m_Text1 = user.m_Player.getName();
    phone.send(mobile);
    phone.send(CCmdKeyEvent());
    phone.send(CCmdRhythmKeyEvent());
    phone.send(CCmdMouseEvent());
    phone.send(CCmdTouchEvent());
    CCmdSensorEvent sensor;
    sensor.initGSensorData(kTilt, 0.0f, -1.0f);
    phone.send(sensor);
    phone.send(CCmdScreenSynRequest());
    user.m_Game->send(CCmdControlMode());
    user.beginWait();
    for (const char* kind :
         {"CCmdConnectPhone", "CCmdConnectMobileInfo", "CCmdKeyEvent", "CCmdRhythmKeyEvent", "CCmdMouseEvent",
          "CCmdTouchEvent", "CCmdSensorEvent", "CCmdScreenSynRequest", "CCmdScreenSynResponse", "CCmdControlMode"})
        while (user.isWaiting(kind))
            co_await host::sleep(kStep);
    user.expect(user.m_HasPhone, "the phone");
    user.expect(user.m_HasTilt, "the sensor's value");
    user.expect(user.m_HasPicture, "the picture");
}

// Frames with masks, then without; then none.
host::Task watch(DeviceUser& user)
{
    CCommandSocket& game = *user.m_Game;
    const int frames = user.m_Options.m_Frames;
    CCmdOpenCamera camera;
    for (const bool opens : {true, false})
    {
        camera.m_Byte1 = opens;
        // The second time nothing changes.
        for (const unsigned char result : {0, 1})
        {
            const auto reply = co_await host::ask<CCmdOpenCameraReply>(game, camera, kPatience);
            if (user.isFirst("CCmdOpenCamera", reply, {"CCmdOpenCameraReply"}))
                user.expect(std::get<0>(reply).m_Byte1 == result, "the camera");
        }
        if (!opens)
            break;
        user.beginWait();
        while (user.isWaiting("CCmdSkeletons", frames) || user.isWaiting("CCmdMaskImage", frames))
            co_await host::sleep(kStep);
        CCmdRemoteCamera withoutMasks;
        withoutMasks.m_Flag1 = false;
        game.send(withoutMasks);
        // What was sent before it arrives before the answer.
        const CCmdHeartEvent heart;
        const auto beat = co_await host::ask<CCmdHeartReply>(game, heart, kPatience);
        user.isFirst("CCmdHeartEvent", beat, {"CCmdHeartReply"});
        const int masks = user.getCount("CCmdMaskImage");
        const int more = user.getCount("CCmdSkeletons") + 3;
        user.beginWait();
        while (user.isWaiting("CCmdSkeletons", more))
            co_await host::sleep(kStep);
        user.expect(user.getCount("CCmdMaskImage") == masks, "no mask after CCmdRemoteCamera");
    }
    user.expect(user.getCount("CCmdCameraEvent") == 2, "CCmdCameraEvent twice");
    const int last = user.getCount("CCmdSkeletons");
    co_await host::sleep(100ms);
    user.expect(user.getCount("CCmdSkeletons") == last, "no frame of a closed camera");
    // The phone goes: the game is informed.
    const int phones = user.getCount("CCmdConnectPhone");
    ListenerSocket::end(user.m_Phone);
    user.beginWait();
    while (user.isWaiting("CCmdConnectPhone", phones + 1))
        co_await host::sleep(kStep);
    user.expect(!user.m_HasPhone, "no phone any more");
}

host::Task use(DeviceUser& user)
{
    user.m_Game = user.open();
    user.m_Phone = user.open();
    if (!user.m_Game || !user.m_Phone)
        co_return;
    const auto isBusy = [&user] { return user.m_Tasks.getCount() > 1; };
    user.m_Tasks.start(connect(user));
    while (isBusy())
        co_await host::sleep(kStep);
    user.m_Tasks.start(drive(user));
    while (isBusy())
        co_await host::sleep(kStep);
    user.m_Tasks.start(watch(user));
    while (isBusy())
        co_await host::sleep(kStep);
}

} // namespace

bool installDevice(Players& players)
{
    players.share<Shared<DeviceClient>>().install(players);
    return true;
}

host::Task playDevice(Player& player)
{
    if (player.getNumber() >= kMostSeats)
    {
        player.note("no seat for this player");
        co_return;
    }
    DeviceOptions options;
    options.m_Server = player.getPlayers().getOptions().m_Servers.at("device");
    options.m_Seat = static_cast<unsigned char>(player.getNumber() + 1);
    DeviceUser user(player, options);
    user.m_Tasks.start(use(user));
    while (user.m_Tasks.getCount() > 0)
        co_await host::sleep(kStep);
}

} // namespace arena::player
