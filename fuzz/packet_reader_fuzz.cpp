// Packets from a byte stream that arrives in arbitrary pieces: the same packets and the same end, whatever the pieces,
// whether the source shows its bytes or not, and however much of a packet is left unread. The first four bytes choose
// the limit, the pieces, the source and how much is read.
#include "framework/packet.h"
#include "fuzz/support/budget.h"
#include "fuzz/support/require.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace
{

using fuzz::require;

struct Outcome
{
    std::vector<std::string> m_Packets;
    bool m_IsBroken = false;

    friend bool operator==(const Outcome&, const Outcome&) = default;
};

// The packets of the stream, by a short independent parser.
Outcome split(const std::string& bytes, size_t limit)
{
    Outcome outcome;
    for (size_t at = 0; bytes.size() - at >= 4;)
    {
        size_t size = 0;
        for (size_t i = 0; i < 4; ++i)
            size |= static_cast<size_t>(static_cast<unsigned char>(bytes[at + i])) << 8 * i;
        outcome.m_IsBroken = size > limit;
        if (outcome.m_IsBroken || size > bytes.size() - at - 4)
            break;
        if (size > 0)
            outcome.m_Packets.push_back(bytes.substr(at + 4, size));
        at += 4 + size;
    }
    return outcome;
}

// A source that provides its bytes in parts.
class Pieces final : public zet::Input
{
public:
    Pieces(const std::string& bytes, bool shows) : m_Bytes(bytes), m_Shows(shows) {}

    bool grow(size_t count)
    {
        const bool grows = m_End < m_Bytes.size();
        m_End = std::min(m_Bytes.size(), m_End + count);
        return grows;
    }
    int available() const override { return static_cast<int>(m_End - m_At); }
    int peek(void* data, int size) override
    {
        const int count = std::min(size, available());
        if (count > 0)
            std::memcpy(data, m_Bytes.data() + m_At, static_cast<size_t>(count));
        return std::max(count, 0);
    }
    int read(void* data, int size) override
    {
        const int count = peek(data, size);
        m_At += static_cast<size_t>(count);
        return count;
    }
    const unsigned char* view(int size) override
    {
        if (!m_Shows || size > available())
            return nullptr;
        return reinterpret_cast<const unsigned char*>(m_Bytes.data() + m_At);
    }

private:
    const std::string& m_Bytes;
    size_t m_At = 0;
    size_t m_End = 0;
    bool m_Shows;
};

// Reads all available packets; reading is the percentage of each packet's bytes to consume.
void drain(zet::PacketReader& reader, int reading, Outcome& outcome)
{
    while (!outcome.m_IsBroken)
    {
        zet::InputStream stream;
        if (!reader.read(stream))
        {
            outcome.m_IsBroken = true;
            break;
        }
        const int size = stream.available();
        if (size == 0 && reader.hasPaused())
            continue;
        if (size == 0)
            break;
        std::string packet(static_cast<size_t>(size), '\0');
        require(stream.peek(packet.data(), size) == size);
        require(stream.peek(packet.data(), size + 1) == size);
        const int part = static_cast<int>(static_cast<long long>(size) * reading / 100);
        std::string taken(static_cast<size_t>(part), '\0');
        require(stream.read(taken.data(), part) == part && packet.compare(0, taken.size(), taken) == 0);
        require(stream.available() == size - part);
        outcome.m_Packets.push_back(std::move(packet));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    constexpr size_t kChoice = 4;
    if (size < kChoice)
        return 0;
    const fuzz::Budget budget(size);
    const std::string bytes(data + kChoice, data + size);
    const int limit = data[0] == 0 ? zet::PacketReader::kDefaultLimit : data[0] * 4;
    const Outcome expected = split(bytes, static_cast<size_t>(limit));

    Pieces source(bytes, data[2] & 1);
    source.addRef();
    zet::PacketReader reader;
    reader.setLimit(limit);
    reader.attach(&source);
    Outcome got;
    unsigned int piece = data[1];
    do
    {
        drain(reader, data[3] % 101, got);
        // Pieces of varying size, 1 to 64 bytes; all of 1 byte if the choice is 0.
        piece = data[1] == 0 ? 0 : piece * 5 + 1;
    } while (source.grow(1 + piece % 64));
    drain(reader, data[3] % 101, got);
    require(got == expected);
    reader.detach();
    return 0;
}
