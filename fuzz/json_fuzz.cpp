// JSON: any text is refused or parsed up to a position inside it, a parsed value prints and parses to the same value,
// and statistics read from any text round-trip.
#include "framework/json.h"
#include "framework/string_helper.h"
#include "fuzz/support/budget.h"
#include "fuzz/support/require.h"
#include "runtime/openmetrics.h"
#include "runtime/system_cmd_info.h"

#include <cstdint>
#include <string>

namespace
{

using fuzz::require;

void checkValue(const zet::String_T<wchar_t>& text)
{
    zet::JsonValue value;
    const wchar_t* end = zet::Json::parseValue(text, value);
    if (!end)
    {
        require(value.isNull());
        return;
    }
    require(end > text.getBuffer() && end <= text.getBuffer() + text.getLength());
    // The parsed part is a complete value.
    zet::JsonValue alone;
    const zet::String_T<wchar_t> part(text.getBuffer(), static_cast<int>(end - text.getBuffer()));
    require(zet::Json::parseValue(part, alone) == part.getBuffer() + part.getLength());
    const zet::String_T<wchar_t> printed = zet::Json::convertToString(value, false);
    require(zet::Json::convertToString(alone, false) == printed);
    for (const bool isPretty : {false, true})
    {
        const zet::String_T<wchar_t> form = zet::Json::convertToString(value, isPretty);
        zet::JsonValue again;
        require(zet::Json::parseValue(form, again) == form.getBuffer() + form.getLength());
        require(zet::Json::convertToString(again, false) == printed);
    }
}

void checkDocument(const zet::String_T<wchar_t>& text)
{
    SystemCmdInfo info;
    info.FromJsonString(text);
    info.AddConnect();
    info.Tick(60001);
    info.GetAllRecvSize();
    convertToOpenMetrics(info);
    SystemCmdInfo again;
    again.FromJsonString(info.ToJsonString());
    require(again.ToJsonString() == info.ToJsonString());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const fuzz::Budget budget(size);
    const std::string bytes(data, data + size);
    const zet::String_T<wchar_t> text = zet::StringHelper::utf8ToWide(bytes.c_str());
    checkValue(text);
    checkDocument(text);
    // Invalid units, as a peer may send them.
    zet::String_T<wchar_t> odd(text);
    wchar_t* units = odd.resizeForOverwrite(static_cast<int>(size / 2));
    for (std::size_t i = 0; i < size / 2; ++i)
        units[i] = static_cast<wchar_t>(data[2 * i] | (data[2 * i + 1] > 127 ? data[2 * i + 1] << 8 : 0));
    zet::JsonValue value;
    if (zet::Json::parseValue(odd, value))
        zet::Json::convertToString(value, true);
    return 0;
}
