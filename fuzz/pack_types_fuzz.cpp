// Tables of pack routers, and after a zero byte stream frames that are opened by them. A table that is accepted names
// messages and envelopes that exist; each line prints.
#include "fuzz/support/require.h"
#include "tools/class_table.h"
#include "tools/frame_decoder.h"
#include "tools/object_json.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using fuzz::require;
    const std::string_view content(reinterpret_cast<const char*>(data), size);
    const size_t end = std::min(content.find('\0'), content.size());
    tools::PackTypes types;
    const std::string fault = types.add(content.substr(0, end));
    require(fault.empty() || fault.find('\n') == std::string::npos);
    for (const char* const envelope : {"CCmdHomePackRequest", "CCmdProfilingPackReply", "CCmdSocialRequest"})
        for (const int number : {-1, 0, 1, 7})
            if (const tools::ClassInfo* const info = types.find(envelope, number))
                require(info->m_Family != tools::Family::kCommand && tools::findClass(info->m_Name) == info);
    tools::FrameDecoder decoder(tools::Framing::kStream,
                                [](std::string_view line, bool isError)
                                {
                                    const auto json = nlohmann::ordered_json::parse(line);
                                    require(json.contains("error") == isError);
                                });
    decoder.setPackTypes(&types);
    decoder.add(content.substr(std::min(end + 1, content.size())));
    decoder.finish();
    return 0;
}
