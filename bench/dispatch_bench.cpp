// Dispatching a command from memory compared with reading it by hand: the most frequent commands of races and devices,
// and an envelope whose handler reads the message inside. Then the typed handlers of a socket's analyser compared with
// plain ones, and counted commands with others. Both sides add up what they have read, and the sums must agree.
#include "bench/support/floor_codec.h"
#include "bench/support/records.h"
#include "bench/support/rounds.h"
#include "dispatch/analyser.h"
#include "host/handlers.h"
#include "host/metrics.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <random>

namespace
{

using bench::kRecords;

// The sum of the values read: compares both sides and prevents their removal by the optimizer.
double g_Sum = 0;

// The parts of a head, with the checks that the format requires.
struct FloorHead
{
    std::wstring m_Name;
    unsigned m_Index = 0;
    unsigned char m_Address[16] = {};
};

bool readShortHead(bench::FloorReader& in, FloorHead& head)
{
    const bool version = in.u16() == 2;
    head.m_Index = in.u16();
    return version && in.good();
}

bool readHead(bench::FloorReader& in, FloorHead& head)
{
    const bool good = readShortHead(in, head);
    in.bytes(head.m_Address, sizeof head.m_Address);
    in.text(head.m_Name);
    return good && in.good();
}

double sumOf(const FloorHead& head)
{
    return head.m_Index + head.m_Address[3] + static_cast<double>(head.m_Name.size());
}

double sumOf(const CCmdPlatform& head)
{
    return head.m_ClientIndex + reinterpret_cast<const unsigned char*>(&head.m_ClientAddress)[3] +
           head.m_AccountName.getLength();
}

// Passes the same 64 commands to an analyser and to a function that reads them by hand.
template <class Command, class Sum, class Floor>
void benchCommand(const char* name, CmdProcess process, Sum, Floor floor)
{
    std::mt19937 random(7);
    std::vector<std::unique_ptr<CCmdPackager>> commands;
    for (int i = 0; i < kRecords; ++i)
    {
        Command command;
        bench::fill(command, random);
        commands.push_back(std::make_unique<CCmdPackager>());
        commands.back()->SetCmdID(command.GetID());
        if (!command.Write(commands.back().get()))
        {
            std::fprintf(stderr, "cannot write %s\n", name);
            std::exit(1);
        }
    }
    const auto analyser = std::make_unique<CCmdAnalyser>();
    const unsigned short id = commands.front()->GetCmdID();
    analyser->Install(id, process,
                      [](CCmdHead* command, unsigned long, unsigned long)
                      { g_Sum += Sum()(*static_cast<Command*>(command)); });

    const auto own = [&]
    {
        for (const auto& command : commands)
        {
            command->Reset();
            analyser->Analyse(*command, 0, 0);
        }
    };
    const auto byHand = [&]
    {
        for (const auto& command : commands)
        {
            bench::FloorReader in(command->GetBuffer(), static_cast<size_t>(command->GetDataSize()));
            g_Sum += floor(in);
        }
    };
    g_Sum = 0;
    own();
    const double ownSum = std::exchange(g_Sum, 0.0);
    byHand();
    if (ownSum != std::exchange(g_Sum, 0.0) || ownSum == 0)
    {
        std::fprintf(stderr, "the hand-written reader and the library disagree on %s\n", name);
        std::exit(1);
    }
    bench::compare(name, kRecords, own, byHand);
}

void benchRace()
{
    using Running = CCmdGS_PawnRunning;
    struct SumOfRunning
    {
        double operator()(const Running& command) const
        {
            double sum = sumOf(command) + static_cast<double>(command.m_Float1);
            for (const short value : command.m_Values)
                sum += value;
            return sum;
        }
    };
    benchCommand<Running>("CCmdGS_PawnRunning", Running::CCmdGS_PawnRunning_Process, SumOfRunning(),
                          [](bench::FloorReader& in)
                          {
                              std::vector<short> values;
                              const int count = in.i32();
                              values.reserve(static_cast<size_t>(count));
                              for (int i = 0; i < count && in.good(); ++i)
                                  values.push_back(static_cast<short>(in.u16()));
                              FloorHead head;
                              if (!readHead(in, head))
                                  return 0.0;
                              const float position = in.number();
                              double sum = sumOf(head) + static_cast<double>(position);
                              for (const short value : values)
                                  sum += value;
                              return sum;
                          });

    using Input = CCmdGS_PawnInput;
    struct SumOfInput
    {
        double operator()(const Input& command) const { return sumOf(command) + command.m_Byte1; }
    };
    benchCommand<Input>("CCmdGS_PawnInput", Input::CCmdGS_PawnInput_Process, SumOfInput(),
                        [](bench::FloorReader& in)
                        {
                            FloorHead head;
                            const bool good = readHead(in, head);
                            const unsigned byte = in.u8();
                            return good && in.good() ? sumOf(head) + byte : 0.0;
                        });
}

void benchDevice()
{
    using Key = CCmdKeyEvent;
    struct SumOfKey
    {
        double operator()(const Key& command) const
        {
            return sumOf(command) + command.m_Byte1 + command.m_Byte2 + command.m_Byte3;
        }
    };
    benchCommand<Key>("CCmdKeyEvent", Key::CCmdKeyEvent_Process, SumOfKey(),
                      [](bench::FloorReader& in)
                      {
                          FloorHead head;
                          const bool good = readHead(in, head);
                          const unsigned first = in.u8();
                          const unsigned second = in.u8();
                          const unsigned third = in.u8();
                          return good && in.good() ? sumOf(head) + first + second + third : 0.0;
                      });

    using Touch = CCmdTouchEvent;
    struct SumOfTouch
    {
        double operator()(const Touch& command) const
        {
            return sumOf(command) + command.m_Byte1 + command.m_Byte2 + command.m_Byte3 + command.m_Word1 +
                   command.m_Word2;
        }
    };
    benchCommand<Touch>("CCmdTouchEvent", Touch::CCmdTouchEvent_Process, SumOfTouch(),
                        [](bench::FloorReader& in)
                        {
                            FloorHead head;
                            const bool good = readHead(in, head);
                            const unsigned first = in.u8();
                            const unsigned second = in.u8();
                            const unsigned third = in.u8();
                            const unsigned x = in.u16();
                            const unsigned y = in.u16();
                            return good && in.good() ? sumOf(head) + first + second + third + x + y : 0.0;
                        });
}

// A key event from the object to a whole frame, and from the frame to its handler.
void benchKeyFrame()
{
    constexpr unsigned short kId = command_id::CCmdKeyEvent;
    constexpr unsigned char kKeySize = 24;
    std::mt19937 random(9);
    std::vector<CCmdKeyEvent> keys(kRecords);
    std::vector<std::vector<unsigned char>> frames;
    CCmdPackager packager;
    for (CCmdKeyEvent& key : keys)
    {
        key.m_Byte1 = static_cast<unsigned char>(random());
        key.m_Byte3 = static_cast<unsigned char>(random());
        packager.Clear();
        key.Write(&packager);
        int size = 0;
        const unsigned char* const frame = packager.FrameInPlace(size);
        frames.emplace_back(frame, frame + size);
    }
    std::vector<unsigned char> space(256);
    bench::compare(
        "CCmdKeyEvent, object to frame", kRecords,
        [&]
        {
            for (const CCmdKeyEvent& key : keys)
            {
                packager.Clear();
                key.Write(&packager);
                int size = 0;
                bench::keep(packager.FrameInPlace(size));
            }
        },
        [&]
        {
            for (const CCmdKeyEvent& key : keys)
            {
                bench::FloorWriter out(space);
                const unsigned char head[] = {kId & 0xFF, kId >> 8, kKeySize << 2, 0, 0, 0};
                out.bytes(head, sizeof head);
                out.u16(key.m_HeadVersion);
                out.u16(key.m_ClientIndex);
                out.bytes(&key.m_ClientAddress, 16);
                out.u8(0);
                out.u8(key.m_Byte1);
                out.u8(key.m_Byte2);
                out.u8(key.m_Byte3);
                bench::keep(out);
            }
        });
    const auto analyser = std::make_unique<CCmdAnalyser>();
    analyser->Install(command_id::CCmdKeyEvent, CCmdKeyEvent::CCmdKeyEvent_Process,
                      [](CCmdHead* command, unsigned long, unsigned long)
                      { g_Sum += static_cast<CCmdKeyEvent*>(command)->m_Byte3; });
    bench::compare(
        "CCmdKeyEvent, frame to handler", kRecords,
        [&]
        {
            for (const auto& frame : frames)
            {
                packager.Receive(frame.data(), static_cast<int>(frame.size()));
                analyser->Analyse(packager, 0, 0);
            }
        },
        [&]
        {
            for (const auto& frame : frames)
            {
                bench::FloorReader in(frame.data(), frame.size());
                unsigned char idAndSize[6];
                in.bytes(idAndSize, sizeof idAndSize);
                bench::keep(idAndSize);
                FloorHead head;
                const bool isGood = readHead(in, head);
                in.u16();
                const unsigned third = in.u8();
                if (isGood && in.good())
                    g_Sum += third;
                bench::keep(head);
            }
        });
}

void benchSkeletons()
{
    using Found = CCmdSkeletons;
    struct SumOfSkeletons
    {
        double operator()(const Found& command) const
        {
            double sum = command.m_ClientIndex + static_cast<double>(command.m_Time) + command.m_Values[4] +
                         command.m_Shorts[11];
            for (const Skeletons& skeleton : command.m_Skeletons)
                for (const Skeletons::Joint& joint : skeleton.m_Joints)
                    sum += static_cast<double>(joint.m_X) + static_cast<double>(joint.m_Y) + joint.m_State;
            return sum + command.m_Value1 + command.m_Value2;
        }
    };
    benchCommand<Found>("CCmdSkeletons, two skeletons", Found::CCmdSkeletons_Process, SumOfSkeletons(),
                        [](bench::FloorReader& in)
                        {
                            FloorHead head;
                            if (!readShortHead(in, head))
                                return 0.0;
                            const int count = in.i32();
                            const uint32_t time = in.u32();
                            int values[5];
                            for (int& value : values)
                                value = in.i32();
                            short shorts[12];
                            for (short& value : shorts)
                                value = static_cast<short>(in.u16());
                            Skeletons skeletons[Found::kSkeletons];
                            for (int i = 0; i < count && i < Found::kSkeletons; ++i)
                                for (Skeletons::Joint& joint : skeletons[i].m_Joints)
                                {
                                    joint.m_X = in.number();
                                    joint.m_Y = in.number();
                                    joint.m_State = in.u8();
                                }
                            const int firstSize = in.i32();
                            const int first = in.i32();
                            const int second = in.i32();
                            const int secondSize = in.i32();
                            if (!in.good() || firstSize != 0 || secondSize != 0)
                                return 0.0;
                            double sum = head.m_Index + static_cast<double>(time) + values[4] + shorts[11];
                            for (const Skeletons& skeleton : skeletons)
                                for (const Skeletons::Joint& joint : skeleton.m_Joints)
                                    sum +=
                                        static_cast<double>(joint.m_X) + static_cast<double>(joint.m_Y) + joint.m_State;
                            return sum + first + second;
                        });
}

void benchEnvelope()
{
    using Envelope = CCmdHomePackRequest;
    using Start = HomePack_StartGame_Request;
    struct SumOfStart
    {
        double operator()(Envelope& command) const
        {
            Start start;
            if (!start.Read(&command.m_PackData))
                return 0;
            return sumOf(command) + command.m_PackType + start.m_Value1 + start.m_Value5 + start.m_Text1.getLength() +
                   start.m_Text2.getLength();
        }
    };
    benchCommand<Envelope>(
        "CCmdHomePackRequest with a game's start", Envelope::CCmdHomePackRequest_Process, SumOfStart(),
        [](bench::FloorReader& in)
        {
            FloorHead head;
            if (!readHead(in, head))
                return 0.0;
            const int type = in.i32();
            const int index = in.i32();
            const size_t size = in.u32();
            bench::keep(index);
            if (!in.good() || size > 4096)
                return 0.0;
            // A handler may keep the message longer than the frame.
            std::vector<unsigned char> pack(size);
            in.bytes(pack.data(), size);
            bench::FloorReader message(pack.data(), size);
            int values[5];
            for (int& value : values)
                value = message.i32();
            std::wstring first;
            std::wstring second;
            message.text(first);
            message.text(second);
            if (!in.good() || !message.good())
                return 0.0;
            return sumOf(head) + type + values[0] + values[4] + static_cast<double>(first.size() + second.size());
        });
}

// A command with values, and its dispatches.
template <class Command>
struct Dispatched
{
    explicit Dispatched(const char* name)
    {
        Command command;
        std::mt19937 random(7);
        bench::fill(command, random);
        m_Id = command.GetID();
        if (command.Write(&m_Packager))
            return;
        std::fprintf(stderr, "cannot write %s\n", name);
        std::exit(1);
    }
    void by(const CCmdAnalyserSocket& analyser)
    {
        for (int i = 0; i < kRecords; ++i)
        {
            m_Packager.Reset();
            analyser.Analyse(m_Socket, m_Packager);
        }
    }

    CCmdPackager m_Packager;
    unsigned short m_Id = 0;
    const zet::Unknown::Handle_T<CCommandSocket> m_Socket = CCommandSocket::createInstance(nullptr);
};

// A typed handler with a capture compared with a plain one, which casts and has none.
template <class Command>
void benchTyped(const char* name, SocketCmdProcess process)
{
    Dispatched<Command> command(name);
    const auto typedAnalyser = std::make_unique<CCmdAnalyserSocket>();
    const auto plainAnalyser = std::make_unique<CCmdAnalyserSocket>();
    double sum = 0;
    host::Handlers handlers(*typedAnalyser);
    handlers.on<Command>([&sum](CCommandSocket&, const Command& each) { sum += sumOf(each); });
    plainAnalyser->Install(
        command.m_Id, process,
        [](CCommandSocket*, CCmdHead* each, unsigned long, unsigned long)
        { g_Sum += sumOf(*static_cast<Command*>(each)); },
        0, 0);
    g_Sum = 0;
    command.by(*typedAnalyser);
    command.by(*plainAnalyser);
    if (sum != g_Sum || sum == 0)
    {
        std::fprintf(stderr, "the typed and the plain handler disagree on %s\n", name);
        std::exit(1);
    }
    bench::compare(
        name, kRecords, [&] { command.by(*typedAnalyser); }, [&] { command.by(*plainAnalyser); });
}

// A command whose figures are counted compared with one whose figures are not.
template <class Command>
void benchCounted(const char* name)
{
    Dispatched<Command> command(name);
    const auto counted = std::make_unique<CCmdAnalyserSocket>();
    const auto plain = std::make_unique<CCmdAnalyserSocket>();
    double sum = 0;
    host::Handlers countedHandlers(*counted);
    host::Handlers plainHandlers(*plain);
    for (host::Handlers* const handlers : {&countedHandlers, &plainHandlers})
        handlers->on<Command>([&sum](CCommandSocket&, const Command& each) { sum += sumOf(each); });
    host::Metrics metrics;
    metrics.watch(*counted);
    bench::compare(
        name, kRecords, [&] { command.by(*counted); }, [&] { command.by(*plain); });
    bench::keep(sum);
}

} // namespace

int main(int argc, char** argv)
{
    bench::start(argc, argv);
    benchRace();
    benchDevice();
    benchKeyFrame();
    benchSkeletons();
    benchEnvelope();
    benchTyped<CCmdGS_PawnInput>("CCmdGS_PawnInput, typed against plain",
                                 CCmdGS_PawnInput::CCmdGS_PawnInput_ProcessSocket);
    benchTyped<CCmdGS_PawnRunning>("CCmdGS_PawnRunning, typed against plain",
                                   CCmdGS_PawnRunning::CCmdGS_PawnRunning_ProcessSocket);
    benchCounted<CCmdGS_PawnInput>("CCmdGS_PawnInput, figures counted against not");
    return 0;
}
