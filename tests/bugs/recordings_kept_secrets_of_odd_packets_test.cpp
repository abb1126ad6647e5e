// A recording masked a packet only if it was exactly one frame, but a packager also receives a frame that bytes follow:
// one byte after a login kept its password in clear. So did a tunnel that was not read exactly, that held more or less
// than one frame, that was too deep, or whose content occurred in its head too. Reading was repeated for each field, so
// a large payload cost as much as a peer liked.
#include "commands/account_access.h"
#include "commands/payment.h"
#include "commands/zone_tunnel.h"
#include "host/inner/secrets.h"
#include "packaging/cmd_packager.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace
{

using Bytes = std::vector<unsigned char>;
using host::inner::Carried;

CCmdUpdatePassword secret()
{
    CCmdUpdatePassword update;
    update.m_Text1 = L"old secret";
    update.m_Text2 = L"new secret";
    return update;
}

bool hasSecret(const Bytes& bytes)
{
    const std::string part("s\0e\0c\0r\0e\0t\0", 12);
    return std::search(bytes.begin(), bytes.end(), part.begin(), part.end()) != bytes.end();
}

Bytes frameOf(const CCmdHead& command, const Bytes& more = {})
{
    CCmdPackager packager;
    EXPECT_TRUE(command.Write(&packager));
    if (!more.empty())
        packager.Write(more.data(), static_cast<int>(more.size()));
    int size = 0;
    const unsigned char* const frame = packager.FrameInPlace(size);
    return Bytes(frame, frame + size);
}

CCmdGZ_clientToServer tunnelOf(const Bytes& content)
{
    CCmdGZ_clientToServer tunnel;
    tunnel.m_Data1.setBufferSize(static_cast<int>(content.size()));
    std::copy(content.begin(), content.end(), static_cast<unsigned char*>(tunnel.m_Data1.getBuffer()));
    return tunnel;
}

void expectMasked(Bytes packet, Carried carried = Carried::kStreamFrame)
{
    const size_t size = packet.size();
    ASSERT_TRUE(hasSecret(packet));
    EXPECT_TRUE(maskSecrets(carried, packet));
    EXPECT_FALSE(hasSecret(packet));
    EXPECT_EQ(packet.size(), size);
}

Bytes joined(Bytes front, const Bytes& back)
{
    front.insert(front.end(), back.begin(), back.end());
    return front;
}

TEST(Bugs, ASecretIsMaskedInAFrameThatBytesFollowOrThatIsCut)
{
    const Bytes frame = frameOf(secret());
    expectMasked(joined(frame, {7}));
    expectMasked(joined(frame, frame));
    expectMasked(Bytes(frame.begin(), frame.end() - 1));
    expectMasked(frameOf(secret(), {7}));
    Bytes packet = joined(frame, {7});
    ASSERT_TRUE(maskSecrets(Carried::kStreamFrame, packet));
    CCmdPackager packager;
    ASSERT_TRUE(packager.Receive(packet.data(), static_cast<int>(packet.size())));
    CCmdUpdatePassword read;
    ASSERT_TRUE(read.Read(&packager));
    EXPECT_STREQ(read.m_Text2.getBuffer(), L"**********");
    EXPECT_EQ(packet.back(), 0);
}

TEST(Bugs, ASecretIsMaskedInADatagramThatBytesFollowOrThatIsCut)
{
    CCmdPackager packager;
    ASSERT_TRUE(secret().Write(&packager));
    Bytes datagram(1000);
    datagram.resize(static_cast<size_t>(packager.Pack(datagram.data(), 1000)));
    expectMasked(joined(datagram, {7}), Carried::kDatagramFrame);
    expectMasked(joined(datagram, datagram), Carried::kDatagramFrame);
    expectMasked(Bytes(datagram.begin(), datagram.end() - 1), Carried::kDatagramFrame);
}

TEST(Bugs, ASecretIsMaskedInATunnelOfAnyContent)
{
    const Bytes frame = frameOf(secret());
    expectMasked(frameOf(tunnelOf(joined(frame, {7}))));
    expectMasked(frameOf(tunnelOf(Bytes(frame.begin(), frame.end() - 1))));
    expectMasked(frameOf(tunnelOf(frame), {7}));
    Bytes deep = frame;
    for (int i = 0; i < 6; ++i)
        deep = frameOf(tunnelOf(deep));
    expectMasked(deep);
    Bytes empty = frameOf(tunnelOf({}));
    const Bytes before = empty;
    maskSecrets(Carried::kStreamFrame, empty);
    EXPECT_EQ(empty, before);
}

TEST(Bugs, ALargePayloadIsMaskedWithoutReadingIt)
{
    CCmdOrderRequest order;
    for (auto* const text : {&order.m_Text1, &order.m_Text2, &order.m_Text3, &order.m_Text4, &order.m_Text5,
                             &order.m_Text6, &order.m_Text7, &order.m_Text8})
        *text = (L"secret" + std::wstring(600, L'x')).c_str();
    Bytes frame = frameOf(order);
    ASSERT_GT(frame.size(), 8200u);
    expectMasked(frame);
    maskSecrets(Carried::kStreamFrame, frame);
    EXPECT_TRUE(std::all_of(frame.begin() + CCmdPackager::kMinHeaderSize, frame.end(),
                            [](unsigned char byte) { return byte == 0; }));
}

} // namespace
