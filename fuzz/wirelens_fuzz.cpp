// The input of wirelens: lines to read, and recordings in each framing, raw and as hexadecimal. Every result prints as
// one line, and a recording gives no more results than it has bytes.
#include "fuzz/support/require.h"
#include "tools/frame_decoder.h"
#include "tools/line_reader.h"
#include "tools/object_json.h"

#include <cstdint>
#include <sstream>
#include <string>

namespace
{

using fuzz::require;

void checkPrinted(std::string_view line)
{
    require(line.find('\n') == std::string::npos);
    require(nlohmann::ordered_json::accept(line));
}

void checkLines(const std::string& text)
{
    std::istringstream lines(text);
    std::string line;
    // A result shows an object of its class, which may be large however short the line is.
    for (int i = 0; i < 8 && std::getline(lines, line); ++i)
    {
        const auto answer = tools::answerLine(line);
        require(answer.contains("error") != answer.contains("rewrite"));
        checkPrinted(tools::printedLine(answer));
    }
}

// The results for a recording, decoded in pieces of the given size.
std::string toldOf(const std::string& content, tools::Framing framing, size_t pieceSize)
{
    size_t lines = 0;
    std::string all;
    tools::Recording recording(framing,
                               [&](std::string_view line, bool isError)
                               {
                                   ++lines;
                                   checkPrinted(line);
                                   require(nlohmann::ordered_json::parse(line).contains("error") == isError);
                                   all.append(line).append(1, '\n');
                               });
    for (size_t at = 0; at < content.size(); at += pieceSize)
        recording.add(std::string_view(content).substr(at, pieceSize));
    recording.finish();
    require(lines <= content.size() + 1);
    return all;
}

void checkRecording(const std::string& content)
{
    for (const auto framing : {tools::Framing::kStream, tools::Framing::kPackets, tools::Framing::kDatagram})
        require(toldOf(content, framing, content.size() + 1) == toldOf(content, framing, content.size() % 7 + 1));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string content(data, data + size);
    checkLines(content);
    checkRecording(content);
    // Hexadecimal text round-trips.
    std::string again;
    require(tools::bytesOfHex(tools::hexOf(content.data(), content.size()), again) && again == content);
    return 0;
}
