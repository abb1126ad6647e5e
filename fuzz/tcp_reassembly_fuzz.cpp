// Segments of a TCP direction in any order, repeated, overlapping, cut and missing. What comes out is the sender's
// bytes in their order, each place once, as bytes or as a part of a gap; and the packets found in it lie within it.
#include "fuzz/support/require.h"
#include "tools/capture/packet_finder.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace
{

using fuzz::require;

// Compares with what was sent.
class Checked final : public tools::ByteSink, public tools::FinderSink
{
public:
    explicit Checked(std::string_view sent, bool isStart) : m_Sent(sent)
    {
        m_Finder.start(isStart ? "" : "a start in the middle");
    }

    void onBytes(std::string_view bytes) override
    {
        require(!bytes.empty() && bytes == m_Sent.substr(std::min(m_Place, m_Sent.size()), bytes.size()));
        m_Place += bytes.size();
        m_Finder.onBytes(bytes);
    }
    void onGap(uint64_t size) override
    {
        require(size > 0);
        m_Place += static_cast<size_t>(size);
        m_Lost += size;
        m_Finder.onGap(size);
    }
    void onFrame(const CCmdPackager& frame, uint64_t offset, const NetPacketView*) override
    {
        require(offset + static_cast<uint64_t>(frame.GetDataSize()) <= m_Place);
        require(offset >= m_LastOffset);
        m_LastOffset = offset;
    }
    void onMessage(std::string_view, uint64_t offset, uint64_t size) override { require(offset + size <= m_Place); }
    void onNotice(const std::string& what, uint64_t, uint64_t skipped) override
    {
        require(!what.empty());
        m_Skipped += skipped;
    }
    void onLoss(uint64_t size) override { m_LossReported += size; }
    void finish()
    {
        m_Finder.finish();
        require(m_Finder.held() == 0);
        require(m_LossReported == m_Lost);
        // A packet with a gap counts whole, also if the bytes end within it.
        require(m_Skipped <= m_Place + tools::PacketFinder::kMostPacket);
    }

    size_t m_Place = 0;

private:
    std::string_view m_Sent;
    uint64_t m_Lost = 0;
    uint64_t m_LossReported = 0;
    uint64_t m_Skipped = 0;
    uint64_t m_LastOffset = 0;
    tools::PacketFinder m_Finder{*this};
};

// Four bytes each: the place, its size, and what happens besides.
constexpr size_t kStep = 4;

void reassemble(std::string_view steps, std::string_view sent)
{
    enum Flags : unsigned
    {
        kCut = 1,
        kAcknowledge = 2
    };
    const uint32_t first = static_cast<uint32_t>(steps.size()) * 0x01234567U;
    Checked checked(sent, steps.size() % 2 == 0);
    tools::TcpDirection bytes;
    bytes.start(first);
    for (; steps.size() >= kStep; steps.remove_prefix(kStep))
    {
        const auto at = [&](size_t i) { return static_cast<size_t>(static_cast<unsigned char>(steps[i])); };
        const size_t begin = std::min(at(0) << 8 | at(1), sent.size());
        const size_t size = std::min(at(2), sent.size() - begin);
        const size_t cut = (at(3) & kCut) != 0 ? std::min(size, at(3) >> 2) : 0;
        const auto sequence = first + static_cast<uint32_t>(begin);
        if ((at(3) & kAcknowledge) != 0)
            bytes.acknowledge(sequence + static_cast<uint32_t>(size));
        bytes.add(sequence, sent.substr(begin, size - cut), cut, false, checked);
        require(bytes.held() <= tools::TcpDirection::kMostAhead + 0x10000);
        require(checked.m_Place <= sent.size());
    }
    bytes.finish(checked);
    require(checked.m_Place <= sent.size() && bytes.held() == 0);
    checked.finish();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view content(reinterpret_cast<const char*>(data), size);
    if (content.size() < 2)
        return 0;
    const size_t steps = std::min<size_t>(static_cast<unsigned char>(content[0]) * kStep, content.size() - 1);
    reassemble(content.substr(1, steps), content.substr(1 + steps));
    return 0;
}
