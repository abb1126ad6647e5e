// From 65,536 bytes on, an envelope that was read from its own payload copied bytes from freed storage: making space
// for the copy moved the payload while the source still pointed to the old place. Host code does this with envelopes of
// one class inside each other: e.Read(&e.m_PackData). Writing a packager's own bytes to itself, and writing an envelope
// into its own payload, had the same fault; there, the size was also taken after the head was written.
#include "packs/envelope.h"
#include "packs/social.h"
#include "tests/support/payload_helpers.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

using tests::Bytes;
using tests::bytesOf;

namespace
{

constexpr int kSizes[] = {0, 10, 65536, 100000, 140000, 1000000};

Bytes pattern(int size)
{
    Bytes bytes(static_cast<size_t>(size));
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<unsigned char>(i * 7 + (i >> 8));
    return bytes;
}

Bytes joined(const Bytes& front, const Bytes& back)
{
    Bytes both = front;
    both.insert(both.end(), back.begin(), back.end());
    return both;
}

// An envelope whose payload is another of its class, with this message inside.
template <class Envelope>
std::unique_ptr<Envelope> nested(const Bytes& message)
{
    const auto inside = std::make_unique<Envelope>();
    inside->m_PackType = 5;
    inside->m_PackData.Write(message.data(), static_cast<int>(message.size()));
    auto outside = std::make_unique<Envelope>();
    EXPECT_TRUE(inside->Write(&outside->m_PackData));
    return outside;
}

template <class Envelope>
void expectReadOutOfItself()
{
    for (const int size : kSizes)
    {
        const Bytes message = pattern(size);
        const auto envelope = nested<Envelope>(message);
        const Bytes before = bytesOf(envelope->m_PackData);
        ASSERT_TRUE(envelope->Read(&envelope->m_PackData)) << size;
        EXPECT_EQ(envelope->m_PackType, 5) << size;
        EXPECT_EQ(envelope->m_PackData.GetReadPointer(), static_cast<int>(before.size())) << size;
        EXPECT_TRUE(bytesOf(envelope->m_PackData) == joined(before, message)) << size;
    }
}

TEST(Bugs, AnEnvelopeIsReadOutOfItsOwnPayload)
{
    expectReadOutOfItself<CCmdHomePackRequest>();
}

TEST(Bugs, ASocialEnvelopeIsReadOutOfItsOwnPayload)
{
    for (const int size : kSizes)
    {
        const Bytes message = pattern(size);
        const auto envelope = nested<CCmdSocialReply>(message);
        const Bytes before = bytesOf(envelope->m_PackData);
        ASSERT_TRUE(envelope->Read(&envelope->m_PackData)) << size;
        EXPECT_TRUE(bytesOf(envelope->m_PackData) == joined(before, message)) << size;
    }
}

// Writing the envelope to another packager and to its own payload, after the bytes in it, gives the same bytes.
template <class Envelope>
void expectWrittenIntoItself()
{
    for (const int size : kSizes)
    {
        const Bytes message = pattern(size);
        const auto envelope = std::make_unique<Envelope>();
        envelope->m_PackData.Write(message.data(), size);
        const auto other = std::make_unique<CCmdPackager>();
        ASSERT_TRUE(envelope->Write(other.get()));
        ASSERT_TRUE(envelope->Write(&envelope->m_PackData)) << size;
        EXPECT_TRUE(bytesOf(envelope->m_PackData) == joined(message, bytesOf(*other))) << size;
    }
}

TEST(Bugs, AnEnvelopeIsWrittenIntoItsOwnPayload)
{
    expectWrittenIntoItself<CCmdHomePackRequest>();
    expectWrittenIntoItself<CCmdSocialReply>();
}

TEST(Bugs, APackagerTakesItsOwnBytes)
{
    for (const int size : kSizes)
    {
        const Bytes bytes = pattern(size);
        const auto packager = std::make_unique<CCmdPackager>();
        ASSERT_TRUE(packager->Write(bytes.data(), size));
        // Twice, since the first heap block is larger than requested.
        ASSERT_TRUE(packager->Write(packager->GetBuffer(), packager->GetDataSize()));
        ASSERT_TRUE(packager->Write(packager->GetBuffer(), packager->GetDataSize()));
        EXPECT_TRUE(bytesOf(*packager) == joined(joined(bytes, bytes), joined(bytes, bytes))) << size;
    }
}

// A packager receives a frame from its own payload, as a stream frame or a datagram.
TEST(Bugs, APackagerReceivesAFrameOutOfItsOwnPayload)
{
    for (const int payload : {0, 1, 15, 16, 17, 24, 31, 32, 33, 50000})
    {
        SCOPED_TRACE(payload);
        const Bytes bytes = pattern(payload);
        CCmdPackager inside;
        inside.SetCmdID(0x1234);
        inside.Write(bytes.data(), payload);
        int size = 0;
        const unsigned char* const frame = inside.FrameInPlace(size);
        CCmdPackager outside;
        outside.Write(frame, size);
        ASSERT_TRUE(outside.Receive(outside.GetBuffer(), size));
        EXPECT_EQ(outside.GetCmdID(), 0x1234);
        EXPECT_TRUE(bytesOf(outside) == bytes);

        Bytes datagram(60000);
        const int length = inside.Pack(datagram.data(), static_cast<int>(datagram.size()));
        outside.Clear();
        outside.Write(datagram.data(), length);
        ASSERT_GT(outside.Unpack(outside.GetBuffer(), length), 0);
        EXPECT_TRUE(bytesOf(outside) == bytes);
    }
}

// The same with a truncated frame: refused, and nothing is copied.
TEST(Bugs, APackagerRefusesACutFrameOutOfItsOwnPayload)
{
    CCmdPackager inside;
    const Bytes bytes = pattern(50000);
    inside.Write(bytes.data(), static_cast<int>(bytes.size()));
    int size = 0;
    const unsigned char* const frame = inside.FrameInPlace(size);
    CCmdPackager outside;
    outside.Write(frame, size);
    EXPECT_FALSE(outside.Receive(outside.GetBuffer(), size - 100));
    EXPECT_EQ(outside.GetDataSize(), 0);
}

} // namespace
