// wirelens decode: captures, and recordings of one connection.
#include "tools/capture/capture_decoder.h"
#include "tools/command_counts.h"
#include "tools/frame_decoder.h"
#include "tools/object_json.h"
#include "tools/wirelens/commands.h"
#include "tools/wirelens/terminal.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <optional>

namespace wirelens
{

namespace
{

// The bytes of a file or of the standard input, as they arrive.
class Input
{
public:
    explicit Input(std::istream& in) : m_In(in) {}

    // Reads further bytes for peeked(). False at the end.
    bool peekMore()
    {
        char bytes[tools::kMagicBytes];
        const size_t got = readNew(bytes, sizeof bytes - m_Peeked.size());
        m_Peeked.append(bytes, got);
        return got > 0;
    }
    const std::string& peeked() const { return m_Peeked; }

    // Waits for at least one byte and reads all available bytes, beginning with those that were peeked at; 0 at the
    // end.
    size_t read(char* data, size_t size)
    {
        if (m_Peeked.empty())
            return readNew(data, size);
        const size_t got = std::min(size, m_Peeked.size());
        std::memcpy(data, m_Peeked.data(), got);
        m_Peeked.erase(0, got);
        return got;
    }

private:
    size_t readNew(char* data, size_t size)
    {
        // What was printed is seen before the next wait for input.
        std::cout.flush();
        if (m_In.peek() == std::istream::traits_type::eof())
            return 0;
        std::streamsize got = m_In.readsome(data, static_cast<std::streamsize>(size));
        // A buffer that does not know how many bytes it has is read byte by byte.
        if (got <= 0 && m_In.get(data[0]))
            got = 1;
        return static_cast<size_t>(std::max<std::streamsize>(got, 0));
    }

    std::istream& m_In;
    std::string m_Peeked;
};

class Decoding
{
public:
    explicit Decoding(const DecodeOptions& options)
        : m_Options(options), m_IsFiltered(!options.m_Filter.isEmpty()),
          m_IsCounting(options.m_Count || options.m_Summary)
    {
    }

    int run();

private:
    // The exit code for one path.
    int decodePath(const std::string& path);
    void decodeRecording(Input& input);
    int decodeCapture(Input& input);
    void print(std::string_view line, bool isError)
    {
        if (m_IsFiltered && !m_Options.m_Filter.passes(line))
        {
            m_Next = {};
            return;
        }
        m_IsBad = m_IsBad || isError;
        if (m_IsCounting)
            return countLine(isError);
        if (isError && m_HasColours)
            std::cout << red(std::string(line), true) << '\n';
        else
            std::cout << line << '\n';
    }
    // Of commands that a filter has passed: without one, the decoders count.
    void countLine(bool isError);
    template <class Decoder>
    void prepare(Decoder& decoder);
    void printCounts() const;
    void report(const tools::Notice& notice) const;
    void reportTotals(const tools::CaptureTotals& totals) const;
    bool readPackTypes();

    const DecodeOptions& m_Options;
    const bool m_IsFiltered;
    const bool m_IsCounting;
    const bool m_HasColours = hasColours(Stream::kOutput);
    bool m_IsBad = false;
    tools::PackTypes m_PackTypes;
    tools::CommandCounts m_Counts;
    // The command whose line comes next.
    struct
    {
        bool m_IsThere = false;
        unsigned short m_Id = 0;
        uint64_t m_Size = 0;
        std::optional<int64_t> m_Time;
    } m_Next;
};

void Decoding::countLine(bool isError)
{
    if (isError)
        m_Counts.addError();
    if (m_Next.m_IsThere && m_Next.m_Time)
        m_Counts.add(m_Next.m_Id, m_Next.m_Size, *m_Next.m_Time);
    else if (m_Next.m_IsThere)
        m_Counts.add(m_Next.m_Id, m_Next.m_Size);
    m_Next = {};
}

template <class Decoder>
void Decoding::prepare(Decoder& decoder)
{
    decoder.setPackTypes(m_PackTypes.isEmpty() ? nullptr : &m_PackTypes);
    if (m_IsCounting && !m_IsFiltered)
        decoder.setCounts(&m_Counts);
}

void Decoding::printCounts() const
{
    if (m_Options.m_Count)
        std::cout << m_Counts.commands() << '\n';
    if (m_Options.m_Summary)
        for (const std::string& line : m_Counts.lines())
            std::cout << line << '\n';
    std::cout.flush();
}

void Decoding::decodeRecording(Input& input)
{
    tools::Recording recording(m_Options.m_Packets     ? tools::Framing::kPackets
                               : m_Options.m_Datagram  ? tools::Framing::kDatagram
                               : m_Options.m_UdpStream ? tools::Framing::kUdpStream
                                                       : tools::Framing::kStream,
                               [this](std::string_view line, bool isError) { print(line, isError); });
    prepare(recording);
    if (m_IsCounting && m_IsFiltered)
        recording.setTakeFrame(
            [this](const CCmdPackager& frame) {
                m_Next = {true, frame.GetCmdID(), static_cast<uint64_t>(frame.GetDataSize()), std::nullopt};
            });
    std::string piece(0x10000, '\0');
    while (const size_t got = input.read(piece.data(), piece.size()))
        recording.add(std::string_view(piece).substr(0, got));
    recording.finish();
}

void Decoding::report(const tools::Notice& notice) const
{
    if (!m_Options.m_Notices)
    {
        std::cerr << "wirelens: " << tools::timeText(notice.m_Time) << " " << notice.m_Connection << " "
                  << notice.m_Direction << (*notice.m_Direction ? ": " : "") << notice.m_What << "\n";
        return;
    }
    nlohmann::ordered_json json = {{"time", tools::timeText(notice.m_Time)}, {"connection", notice.m_Connection}};
    if (*notice.m_Direction)
        json.update({{"direction", notice.m_Direction}, {"offset", notice.m_Offset}, {"skipped", notice.m_Skipped}});
    json["notice"] = notice.m_What;
    std::cout << json.dump() << '\n';
}

void Decoding::reportTotals(const tools::CaptureTotals& totals) const
{
    struct Row
    {
        const char* m_Key;
        const char* m_Words;
        uint64_t m_Number;
    };
    const Row rows[] = {
        {"packets", "packets", totals.m_Packets},
        {"commands", "commands", totals.m_Commands},
        {"lost_bytes", "bytes lost in connections", totals.m_LostBytes},
        {"skipped_bytes", "bytes skipped in connections", totals.m_SkippedBytes},
        {"fragments", "fragments skipped", totals.m_Fragments},
        {"other_packets", "packets of other protocols", totals.m_OtherPackets},
        {"bad_packets", "packets with bad headers", totals.m_BadPackets},
        {"other_datagrams", "datagrams without a command", totals.m_OtherDatagrams},
        {"other_messages", "messages of sessions without a command", totals.m_OtherMessages},
        {"given_up", "connections given up", totals.m_GivenUp},
    };
    if (m_Options.m_Notices)
    {
        nlohmann::ordered_json json;
        for (const Row& row : rows)
            json["totals"][row.m_Key] = row.m_Number;
        std::cout << json.dump() << '\n';
        return;
    }
    std::string text;
    for (const Row& row : rows)
        if (row.m_Number > 0)
            text += (text.empty() ? "" : ", ") + std::to_string(row.m_Number) + " " + row.m_Words;
    std::cerr << "wirelens: " << (text.empty() ? "no packets" : text) << "\n";
}

int Decoding::decodeCapture(Input& input)
{
    tools::CaptureFile file([&](char* data, size_t size) { return input.read(data, size); });
    if (!tools::CaptureFile::isSupported())
    {
        std::cerr << "wirelens: the input is a capture, but wirelens is built without libpcap\n";
        return 2;
    }
    if (!file.open())
    {
        std::cerr << "wirelens: " << file.error() << "\n";
        return 1;
    }
    tools::CaptureDecoder decoder([this](std::string_view line, bool isError) { print(line, isError); },
                                  [this](const tools::Notice& notice) { report(notice); });
    prepare(decoder);
    if (m_IsCounting && m_IsFiltered)
        decoder.setTakeFrame(
            [this](int64_t time, const std::string&, std::string_view, const CCmdPackager& frame) {
                m_Next = {true, frame.GetCmdID(), static_cast<uint64_t>(frame.GetDataSize()), time};
            });
    for (tools::CapturedPacket packet; file.next(packet);)
        decoder.add(packet);
    decoder.finish();
    std::cout.flush();
    reportTotals(decoder.totals());
    if (!file.error().empty())
        std::cerr << "wirelens: " << file.error() << "\n";
    return file.error().empty() ? 0 : 1;
}

int Decoding::decodePath(const std::string& path)
{
    const bool isStandardInput = path.empty() || path == "-";
    std::ifstream file;
    if (!isStandardInput)
        file.open(path, std::ios::binary);
    std::istream& in = isStandardInput ? std::cin : file;
    if (!in)
    {
        std::cerr << "wirelens: cannot open " << path << "\n";
        return 1;
    }
    Input input(in);
    tools::Recognised recognised = tools::Recognised::kUndecided;
    while (recognised == tools::Recognised::kUndecided && input.peekMore())
        recognised = tools::recogniseCapture(input.peeked());
    int code = 0;
    if (recognised == tools::Recognised::kYes)
        code = decodeCapture(input);
    else
        decodeRecording(input);
    if (in.bad())
    {
        std::cerr << "wirelens: cannot read " << (isStandardInput ? "the input" : path) << "\n";
        code = 1;
    }
    std::cout.flush();
    return code;
}

bool Decoding::readPackTypes()
{
    std::ifstream file(m_Options.m_PackTypes, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    std::string fault = file.is_open() ? m_PackTypes.add(text) : "it cannot be opened";
    if (fault.empty() && m_PackTypes.isEmpty())
        fault = "it has no messages";
    if (!fault.empty())
        std::cerr << "wirelens: " << m_Options.m_PackTypes << ": " << fault << "\n";
    return fault.empty();
}

int Decoding::run()
{
    if (!m_Options.m_PackTypes.empty() && !readPackTypes())
        return 1;
    // Its buffer then returns what has arrived instead of waiting for a full read.
    std::ios::sync_with_stdio(false);
    int code = 0;
    for (const std::string& path : m_Options.m_Paths)
        code = std::max(code, decodePath(path));
    if (m_Options.m_Paths.empty())
        code = decodePath("-");
    if (m_IsCounting)
        printCounts();
    return std::max(code, m_IsBad ? 1 : 0);
}

} // namespace

int decode(const DecodeOptions& options)
{
    return Decoding(options).run();
}

} // namespace wirelens
