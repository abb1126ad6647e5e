#include "tools/capture/capture_file.h"

#include <algorithm>

namespace tools
{

using namespace std::string_view_literals;

// pcap has its magic number in either byte order, with the fraction of a second in micro- or nanoseconds. The first
// block of pcapng has a type of four line ends, its length, and a magic number in either byte order; the first four
// bytes alone could be the white space of hexadecimal text.
Recognised recogniseCapture(std::string_view beginning)
{
    constexpr std::string_view kPcap[] = {"\xA1\xB2\xC3\xD4"sv, "\xD4\xC3\xB2\xA1"sv, "\xA1\xB2\x3C\x4D"sv,
                                          "\x4D\x3C\xB2\xA1"sv};
    constexpr std::string_view kBlock = "\n\r\r\n"sv;
    constexpr std::string_view kOrders[] = {"\x1A\x2B\x3C\x4D"sv, "\x4D\x3C\x2B\x1A"sv};
    constexpr size_t kOrderAt = 8;

    const auto startsAs = [](std::string_view bytes, std::string_view magic)
    {
        const size_t size = std::min(bytes.size(), magic.size());
        return bytes.substr(0, size) == magic.substr(0, size);
    };
    const auto isAny = [&](std::string_view bytes, const auto& magics)
    { return std::any_of(std::begin(magics), std::end(magics), [&](auto magic) { return startsAs(bytes, magic); }); };

    if (isAny(beginning, kPcap))
        return beginning.size() < kBlock.size() ? Recognised::kUndecided : Recognised::kYes;
    if (!startsAs(beginning, kBlock))
        return Recognised::kNo;
    if (beginning.size() <= kOrderAt)
        return Recognised::kUndecided;
    if (!isAny(beginning.substr(kOrderAt), kOrders))
        return Recognised::kNo;
    return beginning.size() < kMagicBytes ? Recognised::kUndecided : Recognised::kYes;
}

} // namespace tools
