// Decoding a recording to JSON as `wirelens decode` does, in memory: MB/s of the recording and of the lines. Usage:
// wirelens_bench [--json] [--write FILE], which writes the recording.
#include "bench/support/records.h"
#include "bench/support/rounds.h"
#include "commands/registry.h"
#include "tools/frame_decoder.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

namespace
{

// Bytes that the decoder is given at once, as wirelens reads them.
constexpr size_t kPiece = 8192;

void addFrame(std::string& recording, const CCmdHead& command, const CCmdPackager& packager)
{
    bench::keep(command);
    int size = 0;
    const unsigned char* const frame = packager.FrameInPlace(size);
    recording.append(reinterpret_cast<const char*>(frame), static_cast<size_t>(size));
}

template <class Command>
void addCommand(std::string& recording, std::mt19937& random)
{
    Command command;
    bench::fill(command, random);
    CCmdPackager packager;
    packager.SetCmdID(command.GetID());
    if (command.Write(&packager))
        addFrame(recording, command, packager);
}

// 64 times the traffic of a race: what players do, what cameras see, an envelope.
std::string recordingOf()
{
    std::string recording;
    std::mt19937 random(11);
    for (int i = 0; i < bench::kRecords; ++i)
    {
        for (int move = 0; move < 8; ++move)
        {
            addCommand<CCmdGS_PawnRunning>(recording, random);
            addCommand<CCmdGS_PawnInput>(recording, random);
            addCommand<CCmdKeyEvent>(recording, random);
            addCommand<CCmdTouchEvent>(recording, random);
        }
        addCommand<CCmdSkeletons>(recording, random);
        addCommand<CCmdHomePackRequest>(recording, random);
    }
    return recording;
}

} // namespace

int main(int argc, char** argv)
{
    const std::string recording = recordingOf();
    if (argc > 2 && std::strcmp(argv[argc - 2], "--write") == 0)
        return std::ofstream(argv[argc - 1], std::ios::binary)
                       .write(recording.data(), static_cast<std::streamsize>(recording.size()))
                   ? 0
                   : 1;
    bench::start(argc, argv);
    size_t lines = 0;
    size_t printed = 0;
    const auto decode = [&]
    {
        lines = 0;
        printed = 0;
        tools::FrameDecoder decoder(tools::Framing::kStream,
                                    [&](std::string_view line, bool isError)
                                    {
                                        lines += isError ? 0 : 1;
                                        printed += line.size() + 1;
                                    });
        for (size_t at = 0; at < recording.size(); at += kPiece)
            decoder.add(std::string_view(recording).substr(at, kPiece));
        decoder.finish();
    };
    decode();
    if (lines != 34u * bench::kRecords)
    {
        std::fprintf(stderr, "decoded %zu commands\n", lines);
        return 1;
    }
    bench::measureRate("wirelens decode, recording", recording.size(), decode);
    bench::measureRate("wirelens decode, lines", printed, decode);
    return 0;
}
