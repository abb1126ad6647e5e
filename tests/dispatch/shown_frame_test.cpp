// A frame in memory reaches its process function without a copy, unless the build has no fast paths. Whatever that does
// with the packager, the bytes of the frame and those around it do not change, and the packager behaves as one that has
// copied them.
#include "dispatch/analyser_socket.h"
#include "framework/inner/fast_paths.h"
#include "net/limits.h"
#include "packaging/cmd_packager.h"
#include "tests/support/allocations.h"
#include "tests/support/log_lines.h"
#include "tests/support/raw_peer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace
{

using Bytes = std::vector<unsigned char>;

constexpr unsigned short kId = 0x0321;
std::function<bool(CCommandSocket*, CCmdPackager&)> g_Process;

bool process(CCommandSocket* socket, CCmdPackager* pk, SocketCmdHandler, unsigned long, unsigned long)
{
    return g_Process(socket, *pk);
}

void handle(CCommandSocket*, CCmdHead*, unsigned long, unsigned long) {}

zet::Uuid idOf(unsigned int number)
{
    zet::Uuid id;
    id.m_Data1 = number;
    return id;
}

Bytes payloadOf(const CCmdPackager& pk)
{
    return Bytes(pk.GetBuffer(), pk.GetBuffer() + pk.GetDataSize());
}

Bytes bytesOf(size_t size)
{
    Bytes bytes(size);
    for (size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<unsigned char>(i * 13 + 1);
    return bytes;
}

Bytes frameOf(const CCmdPackager& pk)
{
    int size = 0;
    const unsigned char* const frame = pk.FrameInPlace(size);
    return frame ? Bytes(frame, frame + size) : Bytes();
}

enum Addresses
{
    kNone,
    kFrom,
    kTarget,
    kBoth
};

// The stack of the next calls then has these bytes.
constexpr unsigned char kOld = 0xEE;
[[gnu::noinline]] void leaveOldBytes()
{
    volatile unsigned char bytes[80 * 1024];
    for (volatile unsigned char& each : bytes)
        each = kOld;
}

Bytes bytesOf(const zet::Uuid& id)
{
    Bytes bytes(sizeof id);
    std::memcpy(bytes.data(), &id, sizeof id);
    return bytes;
}

struct ShownFrame : testing::Test
{
    ShownFrame() { m_Analyser->Install(kId, process, handle, 0, 0); }
    ~ShownFrame() override { g_Process = nullptr; }

    // Passes a frame with this payload to the function; another packager with the same frame, copied, is for
    // comparison. Bytes that must not change are before and after the frame.
    void pass(const Bytes& payload, Addresses addresses,
              std::function<void(CCmdPackager& shown, CCmdPackager& copied)> use)
    {
        const auto source = std::make_unique<CCmdPackager>();
        source->SetCmdID(kId);
        if (addresses == kFrom || addresses == kBoth)
            source->SetFromAddress(idOf(5));
        if (addresses == kTarget || addresses == kBoth)
            source->SetTargetAddress(idOf(6));
        ASSERT_TRUE(source->Write(payload.data(), static_cast<int>(payload.size())));
        const Bytes frame = frameOf(*source);
        Bytes memory(64, 0xEE);
        memory.insert(memory.end(), frame.begin(), frame.end());
        memory.insert(memory.end(), 64, 0xEE);
        const Bytes before = memory;
        bool isCalled = false;
        g_Process = [&](CCommandSocket*, CCmdPackager& shown)
        {
            isCalled = true;
            const auto copied = std::make_unique<CCmdPackager>();
            EXPECT_TRUE(copied->Receive(frame.data(), static_cast<int>(frame.size())));
            EXPECT_EQ(shown.GetBufferSize(), copied->GetBufferSize());
            EXPECT_EQ(payloadOf(shown), payload);
            EXPECT_EQ(shown.GetFromAddress(), copied->GetFromAddress());
            EXPECT_EQ(shown.GetTargetAddress(), copied->GetTargetAddress());
            use(shown, *copied);
            EXPECT_EQ(shown.GetBufferSize(), copied->GetBufferSize());
            EXPECT_EQ(shown.GetDataSize(), copied->GetDataSize());
            EXPECT_EQ(shown.GetReadPointer(), copied->GetReadPointer());
            EXPECT_EQ(payloadOf(shown), payloadOf(*copied));
            EXPECT_EQ(frameOf(shown), frameOf(*copied));
            return true;
        };
        EXPECT_TRUE(m_Analyser->Analyse(m_Socket, memory.data() + 64, static_cast<int>(frame.size())));
        EXPECT_TRUE(isCalled);
        EXPECT_EQ(memory, before);
    }
    // The same change of both packagers, for payloads of several sizes.
    void expectSame(const std::function<void(CCmdPackager&)>& change)
    {
        for (const size_t size : {size_t(0), size_t(1), size_t(24), size_t(0x10000), size_t(0x10001), size_t(200000)})
            for (const Addresses addresses : {kNone, kFrom, kTarget, kBoth})
            {
                SCOPED_TRACE(std::to_string(size) + " bytes, addresses " + std::to_string(addresses));
                pass(bytesOf(size), addresses,
                     [&](CCmdPackager& shown, CCmdPackager& copied)
                     {
                         change(shown);
                         change(copied);
                     });
            }
    }

    std::unique_ptr<CCmdAnalyserSocket> m_Analyser = std::make_unique<CCmdAnalyserSocket>();
    zet::Unknown::Handle_T<CCommandSocket> m_Socket = CCommandSocket::createInstance(m_Analyser.get());
};

TEST_F(ShownFrame, IsReadWhereItIs)
{
    const Bytes payload = bytesOf(1000);
    CCmdPackager source;
    source.SetCmdID(kId);
    source.Write(payload.data(), 1000);
    const Bytes frame = frameOf(source);
    bool isInPlace = false;
    g_Process = [&](CCommandSocket*, CCmdPackager& pk)
    {
        const CCmdPackager& constant = pk;
        isInPlace = constant.GetBuffer() == frame.data() + CCmdPackager::kMinHeaderSize;
        Bytes read(1000);
        EXPECT_TRUE(pk.Read(read.data(), 1000));
        EXPECT_EQ(read, payload);
        EXPECT_FALSE(pk.Read(read.data(), 1));
        pk.Reset();
        EXPECT_TRUE(pk.Read(read.data(), 1000));
        return true;
    };
    EXPECT_TRUE(m_Analyser->Analyse(m_Socket, frame.data(), static_cast<int>(frame.size())));
    EXPECT_EQ(isInPlace, zet::inner::kHasFastPaths);
}

TEST_F(ShownFrame, IsCopiedBeforeAWrite)
{
    expectSame([](CCmdPackager& pk) { EXPECT_TRUE(pk.Write(7)); });
    expectSame([](CCmdPackager& pk) { EXPECT_TRUE(pk.Write(1.5f) && pk.Write(zet::String_T<wchar_t>(L"text"))); });
    expectSame([](CCmdPackager& pk) { EXPECT_TRUE(pk.Write(pk.GetBuffer(), pk.GetDataSize())); });
    expectSame(
        [](CCmdPackager& pk)
        {
            const CCmdPackager& constant = pk;
            EXPECT_TRUE(pk.Write(constant.GetBuffer(), pk.GetDataSize()));
        });
}

TEST_F(ShownFrame, IsCopiedBeforeItIsFramed)
{
    expectSame([](CCmdPackager& pk) { EXPECT_FALSE(frameOf(pk).empty()); });
    expectSame([](CCmdPackager& pk) { pk.SetAddress(idOf(1), idOf(2)); });
    expectSame(
        [](CCmdPackager& pk)
        {
            int size = 0;
            unsigned char* const frame = pk.FrameInPlace(size);
            std::fill(frame - CCmdPackager::kSpareSize, frame, static_cast<unsigned char>(0xAB));
        });
}

TEST_F(ShownFrame, IsCopiedForACallerThatMayChangeIt)
{
    expectSame(
        [](CCmdPackager& pk)
        {
            if (pk.GetDataSize() > 0)
                pk.GetBuffer()[0] ^= 0xFF;
        });
}

TEST_F(ShownFrame, IsForgottenWithItsPayload)
{
    const auto clearAndWrite = [](CCmdPackager& pk)
    {
        pk.Clear();
        EXPECT_EQ(pk.GetDataSize(), 0);
        EXPECT_TRUE(pk.Write(3));
    };
    for (const size_t size : {size_t(0), size_t(24), size_t(0x10000)})
        pass(bytesOf(size), kFrom,
             [&](CCmdPackager& shown, CCmdPackager& copied)
             {
                 clearAndWrite(shown);
                 clearAndWrite(copied);
             });
    pass(bytesOf(24), kNone,
         [](CCmdPackager& shown, CCmdPackager& copied)
         {
             CCmdPackager other;
             other.SetCmdID(9);
             other.Write(11);
             shown = other;
             copied = other;
         });
    // A datagram's addresses come from the storage inside the packager, where a frame that was copied has left its
    // bytes.
    const unsigned char datagram[] = {1, 2, 0x01, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    g_Process = [&](CCommandSocket*, CCmdPackager& pk)
    {
        EXPECT_GT(pk.Unpack(datagram, sizeof datagram), 0);
        EXPECT_EQ(pk.GetFromAddress().isNull(), zet::inner::kHasFastPaths);
        return true;
    };
    const Bytes frame{kId & 0xFF, kId >> 8, 32 << 2, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1,
                      1,          1,        1,       1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
    EXPECT_TRUE(m_Analyser->Analyse(m_Socket, frame.data(), static_cast<int>(frame.size())));
}

// Nor do bytes of the stack leave by those addresses.
TEST_F(ShownFrame, ItsPackagerShowsNoOldBytes)
{
    const unsigned char datagram[20] = {1, 2, 0x03};
    const Bytes frame{kId & 0xFF, kId >> 8, 0, 0, 0, 0};
    bool isWritten = false;
    bool isCalled = false;
    g_Process = [&](CCommandSocket*, CCmdPackager& pk)
    {
        isCalled = true;
        EXPECT_TRUE(!isWritten || pk.Write(7));
        EXPECT_GT(pk.Unpack(datagram, sizeof datagram), 0);
        Bytes wanted(sizeof(zet::Uuid));
        wanted[3] = isWritten ? 7 : 0;
        EXPECT_EQ(bytesOf(pk.GetFromAddress()), wanted);
        EXPECT_TRUE(pk.GetTargetAddress().isNull());
        return true;
    };
    for (const bool each : {false, true})
    {
        isWritten = each;
        leaveOldBytes();
        EXPECT_TRUE(m_Analyser->Analyse(m_Socket, frame.data(), static_cast<int>(frame.size())));
        EXPECT_TRUE(std::exchange(isCalled, false));
    }
}

TEST_F(ShownFrame, ACopyOfItsPackagerHoldsItsOwnBytes)
{
    for (const size_t size : {size_t(24), size_t(100000)})
    {
        const auto copy = std::make_unique<CCmdPackager>();
        const Bytes payload = bytesOf(size);
        {
            CCmdPackager source;
            source.SetCmdID(kId);
            source.Write(payload.data(), static_cast<int>(size));
            Bytes frame = frameOf(source);
            g_Process = [&](CCommandSocket*, CCmdPackager& pk)
            {
                *copy = pk;
                return true;
            };
            EXPECT_TRUE(m_Analyser->Analyse(m_Socket, frame.data(), static_cast<int>(frame.size())));
            std::fill(frame.begin(), frame.end(), static_cast<unsigned char>(0));
        }
        EXPECT_EQ(payloadOf(*copy), payload);
    }
}

TEST_F(ShownFrame, WithoutMemoryItIsNotFramedAndNotWritten)
{
    const test::LogLines log;
    const Bytes payload = bytesOf(100000);
    CCmdPackager source;
    source.SetCmdID(kId);
    source.Write(payload.data(), 100000);
    const Bytes frame = frameOf(source);
    bool canFail = false;
    g_Process = [&](CCommandSocket*, CCmdPackager& pk)
    {
        int size = -5;
        const CCmdPackager& constant = pk;
        {
            const test::FailingAllocations failures(0, 1);
            const bool isFramed = pk.FrameInPlace(size) != nullptr;
            // Where the library's own allocations do not fail, nothing else can be shown.
            canFail = failures.isOver();
            EXPECT_EQ(isFramed, !canFail);
        }
        if (!canFail)
            return true;
        EXPECT_EQ(size, -5);
        {
            const test::FailingAllocations failures(0, 1);
            EXPECT_FALSE(pk.Write(true));
        }
        EXPECT_EQ(constant.GetBuffer(), frame.data() + CCmdPackager::kMinHeaderSize);
        EXPECT_EQ(payloadOf(constant), payload);
        {
            const test::FailingAllocations failures(0, 1);
            EXPECT_NE(pk.GetBuffer(), nullptr);
        }
        EXPECT_EQ(pk.GetDataSize(), 0);
        return true;
    };
    EXPECT_TRUE(m_Analyser->Analyse(m_Socket, frame.data(), static_cast<int>(frame.size())));
    if (!canFail)
        GTEST_SKIP() << "allocations of the library do not fail here";
}

// Over a connection the frame is in the input buffer of the socket.
struct ReceivedFrame : testing::Test
{
    ReceivedFrame() { m_Analyser.get()->Install(kId, process, handle, 0, 0); }
    ~ReceivedFrame() override { g_Process = nullptr; }

    static Bytes packetWith(const Bytes& payload)
    {
        CCmdPackager packager;
        packager.SetCmdID(kId);
        packager.Write(payload.data(), static_cast<int>(payload.size()));
        const Bytes frame = frameOf(packager);
        Bytes packet;
        for (int i = 0; i < 4; ++i)
            packet.push_back(static_cast<unsigned char>(frame.size() >> 8 * i));
        packet.insert(packet.end(), frame.begin(), frame.end());
        return packet;
    }

    test::NoteAnalyser m_Analyser;
    test::Loopback m_Net{m_Analyser};
};

TEST_F(ReceivedFrame, StaysWhileItsSocketIsClosedAndItsMemoryWouldBeUsedAgain)
{
    for (const size_t size : {size_t(1), size_t(5000), size_t(60000), size_t(150000)})
    {
        SCOPED_TRACE(size);
        test::RawPeer other(m_Net);
        test::RawPeer peer(m_Net);
        ASSERT_TRUE(other.m_IsUp && peer.m_IsUp);
        const Bytes payload = bytesOf(size);
        bool isCalled = false;
        g_Process = [&](CCommandSocket* socket, CCmdPackager& pk)
        {
            isCalled = true;
            socket->close();
            // Queued output takes blocks from the same pool.
            EXPECT_TRUE(other.send(Bytes(10, 0x77)) && other.send(Bytes(60000, 0x77)));
            Bytes read(size);
            EXPECT_TRUE(pk.Read(read.data(), static_cast<int>(size)));
            EXPECT_EQ(read, payload);
            return true;
        };
        ASSERT_TRUE(peer.send(packetWith(payload)));
        EXPECT_TRUE(test::tickUntil(m_Net.m_System, [&] { return isCalled; }));
    }
}

TEST_F(ReceivedFrame, StaysWhileItsHandlerReadsFromTheSocket)
{
    zet::NetLimits limits;
    limits.m_TurnInput = 0;
    m_Net.m_Server->setLimits(limits);
    test::RawPeer peer(m_Net);
    ASSERT_TRUE(peer.m_IsUp);
    const Bytes payload = bytesOf(1000);
    Bytes bytes = packetWith(payload);
    // More than one receive takes.
    bytes.resize(bytes.size() + 200000, 0x55);
    size_t got = 0;
    g_Process = [&](CCommandSocket* socket, CCmdPackager& pk)
    {
        Bytes part(30000);
        for (int count = 1; count > 0; got += static_cast<size_t>(count))
        {
            count = socket->read(part.data(), static_cast<int>(part.size()));
            EXPECT_TRUE(
                std::all_of(part.begin(), part.begin() + count, [](unsigned char each) { return each == 0x55; }));
        }
        Bytes own(payload.size());
        EXPECT_TRUE(pk.Read(own.data(), static_cast<int>(own.size())));
        EXPECT_EQ(own, payload);
        socket->close();
        return true;
    };
    ASSERT_TRUE(peer.send(bytes));
    EXPECT_TRUE(test::tickUntil(m_Net.m_System, [&] { return got > 0; }));
    EXPECT_GT(got, 0x10000U);
}

} // namespace
