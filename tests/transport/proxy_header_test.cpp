// The header of the PROXY protocol, read from bytes.
#include "net/inner/proxy_header.h"

#include "tests/support/proxy_header.h"

#include <gtest/gtest.h>

namespace
{

using test::Bytes;
using test::headerOfPeer;
using test::proxyHeader;
using zet::inner::Door;
using zet::inner::ProxyHeader;

// Of the whole header.
ProxyHeader readWhole(const Bytes& bytes)
{
    ProxyHeader header;
    EXPECT_EQ(header.read(bytes.data(), bytes.size()), ProxyHeader::kWhole);
    EXPECT_EQ(header.getSize(), bytes.size());
    return header;
}

ProxyHeader::State stateOf(const Bytes& bytes)
{
    ProxyHeader header;
    return header.read(bytes.data(), bytes.size());
}

TEST(ProxyHeader, NamesPeersOfBothFamilies)
{
    const ProxyHeader v4 = readWhole(headerOfPeer("203.0.113.7", 0xABCD));
    ASSERT_TRUE(v4.hasPeer());
    EXPECT_EQ(Door::print(v4.getPeer()), "203.0.113.7");
    EXPECT_EQ(v4.getPeer().m_Port, 0xABCD);
    const ProxyHeader v6 = readWhole(headerOfPeer("2001:db8::7", 1));
    ASSERT_TRUE(v6.hasPeer());
    EXPECT_EQ(Door::print(v6.getPeer()), "2001:db8::7");
    EXPECT_EQ(v6.getPeer().m_Port, 1);
    // A mapped address is an IPv4 one.
    EXPECT_TRUE(readWhole(headerOfPeer("2001:db8::", 1)).hasPeer());
    Bytes mapped(36, 0);
    mapped[10] = mapped[11] = 0xFF;
    mapped[12] = 10;
    EXPECT_TRUE(readWhole(proxyHeader(0x21, 0x21, mapped)).getPeer().isV4());
}

TEST(ProxyHeader, NamesNoPeerWithoutAnAddressOfTheNetwork)
{
    EXPECT_FALSE(readWhole(test::localHeader()).hasPeer());
    // The rest of a local header does not count.
    EXPECT_FALSE(readWhole(proxyHeader(0x20, 0x11, Bytes(12, 9))).hasPeer());
    EXPECT_FALSE(readWhole(proxyHeader(0x20, 0xFF, Bytes(3, 9))).hasPeer());
    // Unspecified, and paths of this machine.
    EXPECT_FALSE(readWhole(proxyHeader(0x21, 0x00, {})).hasPeer());
    EXPECT_FALSE(readWhole(proxyHeader(0x21, 0x00, Bytes(20, 9))).hasPeer());
    EXPECT_FALSE(readWhole(proxyHeader(0x21, 0x31, Bytes(216, 9))).hasPeer());
}

TEST(ProxyHeader, SkipsExtensionsUpToItsBound)
{
    for (const size_t size : {1, 3, 100, 204})
        EXPECT_EQ(readWhole(headerOfPeer("203.0.113.7", 5, Bytes(size, 0x04))).getPeer().m_Port, 5);
    EXPECT_EQ(stateOf(headerOfPeer("203.0.113.7", 5, Bytes(205, 0x04))), ProxyHeader::kMalformed);
    EXPECT_EQ(stateOf(headerOfPeer("2001:db8::7", 5, Bytes(181, 0x04))), ProxyHeader::kMalformed);
}

TEST(ProxyHeader, IsCutAtEachByteBeforeItsEnd)
{
    for (const Bytes& whole : {headerOfPeer("203.0.113.7", 5), headerOfPeer("2001:db8::7", 5, Bytes(9, 1)),
                               test::localHeader(), proxyHeader(0x21, 0x31, Bytes(216, 9))})
    {
        ProxyHeader header;
        for (size_t size = 0; size < whole.size(); ++size)
        {
            // Bytes after the cut must not count.
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
            ASSERT_EQ(header.read(cut.data(), size), ProxyHeader::kCut) << size;
            ASSERT_EQ(header.getSize(), size < ProxyHeader::kHeadSize ? ProxyHeader::kHeadSize : whole.size()) << size;
        }
        EXPECT_EQ(header.read(whole.data(), whole.size()), ProxyHeader::kWhole);
    }
}

TEST(ProxyHeader, IsMalformedAtItsFirstWrongByte)
{
    const Bytes good = headerOfPeer("203.0.113.7", 5);
    for (size_t at = 0; at < 14; ++at)
    {
        Bytes bad(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(at) + 1);
        bad[at] = static_cast<unsigned char>(bad[at] ^ 0x80);
        EXPECT_EQ(stateOf(bad), ProxyHeader::kMalformed) << at;
        bad.pop_back();
        EXPECT_EQ(stateOf(bad), ProxyHeader::kCut) << at;
    }
}

TEST(ProxyHeader, KnowsNoOtherVersionsCommandsAndFamilies)
{
    int good = 0;
    for (int command = 0; command < 256; ++command)
        good += stateOf(proxyHeader(static_cast<unsigned char>(command), 0x11, Bytes(12, 1))) == ProxyHeader::kWhole;
    EXPECT_EQ(good, 2);
    good = 0;
    for (int family = 0; family < 256; ++family)
        good += stateOf(proxyHeader(0x21, static_cast<unsigned char>(family), Bytes(216, 1))) == ProxyHeader::kWhole;
    // Unspecified, and three families by two transports.
    EXPECT_EQ(good, 7);
}

TEST(ProxyHeader, BodyHoldsTheAddressesOfItsFamily)
{
    EXPECT_EQ(stateOf(proxyHeader(0x21, 0x11, Bytes(11, 1))), ProxyHeader::kMalformed);
    EXPECT_EQ(stateOf(proxyHeader(0x21, 0x21, Bytes(35, 1))), ProxyHeader::kMalformed);
    EXPECT_EQ(stateOf(proxyHeader(0x21, 0x31, Bytes(215, 1))), ProxyHeader::kMalformed);
    EXPECT_EQ(stateOf(proxyHeader(0x20, 0x00, Bytes(217, 1))), ProxyHeader::kMalformed);
    // The length alone decides, before the body arrives.
    Bytes endless = proxyHeader(0x21, 0x11, {});
    endless[14] = endless[15] = 0xFF;
    EXPECT_EQ(stateOf(endless), ProxyHeader::kMalformed);
}

} // namespace
