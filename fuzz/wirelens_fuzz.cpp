// What wirelens is given: lines to read, and recordings in each framing, raw and as hexadecimal. Every answer prints as
// one line, and a recording is never told more often than it has bytes.
#include "fuzz/support/require.h"
#include "tools/frame_reader.h"
#include "tools/line_reader.h"
#include "tools/object_json.h"

#include <cstdint>
#include <sstream>
#include <string>

namespace
{

using fuzz::require;

void checkPrinted(const nlohmann::ordered_json& json)
{
    const std::string line = tools::printedLine(json);
    require(line.find('\n') == std::string::npos);
    require(nlohmann::ordered_json::accept(line));
}

void checkLines(const std::string& text)
{
    std::istringstream lines(text);
    std::string line;
    // An answer shows an object of its class, which may be large however short the line is.
    for (int i = 0; i < 8 && std::getline(lines, line); ++i)
    {
        const auto answer = tools::answerLine(line);
        require(answer.contains("error") != answer.contains("rewrite"));
        checkPrinted(answer);
    }
}

void checkRecording(const std::string& bytes)
{
    for (const auto framing : {tools::Framing::kStream, tools::Framing::kPackets, tools::Framing::kDatagram})
    {
        size_t told = 0;
        tools::decodeFrames(bytes, framing,
                            [&](const nlohmann::ordered_json& json)
                            {
                                ++told;
                                checkPrinted(json);
                            });
        require(told <= bytes.size() + 1);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string content(data, data + size);
    checkLines(content);
    checkRecording(content);
    const std::string recorded = tools::recordedBytes(content);
    if (recorded != content)
        checkRecording(recorded);
    // Hexadecimal goes round.
    std::string again;
    require(tools::bytesOfHex(tools::hexOf(content.data(), content.size()), again) && again == content);
    return 0;
}
