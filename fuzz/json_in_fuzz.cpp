// JSON that wirelens gets: lines to encode, and scripts of answers. What is encoded is read to its last byte by the
// schema alone, and the answers of a script that was accepted are encoded.
#include "fuzz/support/require.h"
#include "tools/line_encoder.h"
#include "tools/object_json.h"
#include "tools/schema_reader.h"
#include "tools/serve_script.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace
{

using fuzz::require;

std::string_view bytesOf(const tools::EncodedLine& line)
{
    if (!line.isCommand())
        return line.m_Bytes;
    return {reinterpret_cast<const char*>(line.m_Command.GetBuffer()),
            static_cast<size_t>(line.m_Command.GetDataSize())};
}

void checkLine(std::string_view text, tools::TextWidth width)
{
    const auto line = std::make_unique<tools::EncodedLine>();
    if (!tools::encodeLine(text, width, *line).empty() || !line->m_Class)
        return;
    const std::string_view bytes = bytesOf(*line);
    const tools::Explanation explanation = tools::explain(line->m_Class->m_Wire(), bytes);
    require(explanation.m_Failure.empty());
    require(explanation.m_Consumed == bytes.size());
}

void checkScript(std::string_view text)
{
    tools::ServeScript script;
    const std::string fault = script.parse(text);
    if (!fault.empty())
        return;
    const auto encoded = std::make_unique<tools::EncodedLine>();
    for (const tools::ClassInfo& info : tools::classTable())
    {
        if (info.m_Family != tools::Family::kCommand || text.find(info.m_Name) == std::string_view::npos)
            continue;
        const nlohmann::ordered_json line = {{"class", info.m_Name},
                                             {"fields", tools::objectJson(info.m_Wire(), info.make().get())}};
        for (const auto& answer : script.answersTo(line))
        {
            // A field that is echoed into one of another kind is a fault, and no more.
            const std::string wrong = tools::encodeJson(answer, tools::kNativeWidth, *encoded);
            require(wrong.empty() || text.find("echo") != std::string_view::npos);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    checkLine(text, tools::TextWidth::k16);
    checkLine(text, tools::TextWidth::k32);
    checkScript(text);
    return 0;
}
