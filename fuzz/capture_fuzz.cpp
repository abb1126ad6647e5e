// Captures: files in pcap and pcapng where libpcap is there, and packets given to the decoder one after the other. Each
// line and each notice prints, memory stays within its bounds, and nothing skipped or decoded exceeds the input.
#include "fuzz/support/require.h"
#include "tools/capture/capture_decoder.h"
#include "tools/object_json.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace
{

using fuzz::require;

class Checked
{
public:
    explicit Checked(size_t size) : m_Size(size) {}

    void add(const tools::CapturedPacket& packet)
    {
        m_Decoder.add(packet);
        // A packet may exceed the bounds of its own connection alone.
        require(m_Decoder.connections() <= kLimits.m_Connections);
        require(m_Decoder.held() <= kLimits.m_HeldBytes || m_Decoder.connections() == 1);
    }
    void finish()
    {
        m_Decoder.finish();
        require(m_Decoder.held() == 0);
        require(m_Decoder.totals().m_Commands + m_Decoder.totals().m_OtherMessages == m_Lines);
        require(m_Lines <= m_Size);
        require(m_Decoder.totals().m_SkippedBytes <= m_Decoder.totals().m_LostBytes + 0x1000000 + m_Size);
    }

private:
    static constexpr tools::CaptureDecoder::Limits kLimits{4, 4096};

    size_t m_Size;
    size_t m_Lines = 0;
    tools::CaptureDecoder m_Decoder{[this](std::string_view line, bool isError)
                                    {
                                        ++m_Lines;
                                        const auto json = nlohmann::ordered_json::parse(line);
                                        require(json.contains("error") == isError && json.contains("connection"));
                                    },
                                    [](const tools::Notice& notice) { require(!notice.m_What.empty()); }, kLimits};
};

void checkFile(std::string_view content)
{
    size_t at = 0;
    tools::CaptureFile file(
        [&](char* data, size_t size)
        {
            // In small pieces, as from a pipe.
            const size_t got = std::min({size, content.size() - at, size_t{7}});
            std::memcpy(data, content.data() + at, got);
            at += got;
            return got;
        });
    if (!file.open())
    {
        require(!file.error().empty());
        return;
    }
    Checked checked(content.size());
    for (tools::CapturedPacket packet; file.next(packet);)
        checked.add(packet);
    checked.finish();
}

// Each packet after a byte with its link layer and one with its length.
void checkPackets(std::string_view content)
{
    Checked checked(content.size());
    int64_t time = 0;
    while (content.size() >= 2)
    {
        const auto link = static_cast<tools::Link>(static_cast<unsigned char>(content[0]) % 6);
        const size_t size = std::min<size_t>(static_cast<unsigned char>(content[1]), content.size() - 2);
        checked.add({++time, link, content.substr(2, size)});
        content.remove_prefix(2 + size);
    }
    checked.finish();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string content(data, data + size);
    tools::recogniseCapture(content);
    checkFile(content);
    checkPackets(content);
    return 0;
}
