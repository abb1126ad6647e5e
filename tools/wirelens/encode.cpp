// wirelens encode: lines of JSON to bytes.
#include "packaging/cmd_packager.h"
#include "tools/frame_writer.h"
#include "tools/line_encoder.h"
#include "tools/object_json.h"
#include "tools/wirelens/options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <memory>
#include <vector>

namespace wirelens
{

namespace
{

struct EncodeOptions
{
    bool m_Payload = false;
    bool m_Packets = false;
    bool m_Datagram = false;
    bool m_Raw = false;
    int m_Width = tools::kNativeWidth == tools::TextWidth::k16 ? 16 : 32;
    std::vector<std::string> m_Paths;
};

class Encoding
{
public:
    explicit Encoding(const EncodeOptions& options) : m_Options(options) {}

    int run();

private:
    void encodeStream(std::istream& in);
    void encodeOne(const std::string& line);
    // The bytes of a command in its framing. False if it has no such frame.
    bool addFrame(std::string& bytes) const;
    void report(const std::string& what)
    {
        m_IsBad = true;
        std::cerr << "wirelens: line " << m_Lines << ": " << what << "\n";
    }

    const EncodeOptions& m_Options;
    tools::EncodedLine m_Encoded;
    unsigned long long m_Lines = 0;
    bool m_IsBad = false;
};

bool Encoding::addFrame(std::string& bytes) const
{
    if (m_Options.m_Datagram)
        return tools::addDatagramFrame(bytes, m_Encoded.m_Command);
    if (m_Options.m_Packets)
        return tools::addPacket(bytes, m_Encoded.m_Command);
    return tools::addStreamFrame(bytes, m_Encoded.m_Command);
}

void Encoding::encodeOne(const std::string& line)
{
    const auto json = nlohmann::ordered_json::parse(line, nullptr, false);
    if (json.is_discarded())
        return report("it is not valid JSON");
    if (tools::isOtherLine(json))
        return;
    const auto width = m_Options.m_Width == 16 ? tools::TextWidth::k16 : tools::TextWidth::k32;
    if (const std::string fault = tools::encodeJson(json, width, m_Encoded); !fault.empty())
        return report(fault);
    std::string bytes;
    if (!m_Encoded.isCommand() && (m_Options.m_Packets || m_Options.m_Datagram))
        return report(std::string(m_Encoded.m_Class->m_Name) + " is not a command, so it has no frame");
    if (!m_Encoded.isCommand())
        bytes = m_Encoded.m_Bytes;
    else if (m_Options.m_Payload)
        bytes.assign(reinterpret_cast<const char*>(m_Encoded.m_Command.GetBuffer()),
                     static_cast<size_t>(m_Encoded.m_Command.GetDataSize()));
    else if (!addFrame(bytes))
        return report("the command is too long for its frame");
    if (m_Options.m_Raw)
        std::cout << bytes;
    else
        std::cout << tools::hexOf(bytes.data(), bytes.size()) << '\n';
}

void Encoding::encodeStream(std::istream& in)
{
    std::string line;
    while (std::getline(in, line))
    {
        ++m_Lines;
        if (line.find_first_not_of(" \t\r") != std::string::npos)
            encodeOne(line);
        // What was encoded is seen before the next wait for input.
        if (in.rdbuf()->in_avail() <= 0)
            std::cout.flush();
    }
}

int Encoding::run()
{
    std::ios::sync_with_stdio(false);
    if (m_Options.m_Paths.empty())
        encodeStream(std::cin);
    for (const std::string& path : m_Options.m_Paths)
    {
        m_Lines = 0;
        std::ifstream file;
        if (path != "-")
            file.open(path, std::ios::binary);
        std::istream& in = path == "-" ? std::cin : file;
        if (!in)
        {
            std::cerr << "wirelens: cannot open " << path << "\n";
            m_IsBad = true;
            continue;
        }
        encodeStream(in);
    }
    std::cout.flush();
    return m_IsBad ? 1 : 0;
}

} // namespace

void addEncode(CLI::App& app, Chosen& chosen)
{
    const auto options = std::make_shared<EncodeOptions>();
    CLI::App* const command = addCommand(
        app, "encode", "lines of JSON to bytes",
        "Reads each file, or the standard input: lines as decode, read and new print them. Of an object \"class\" and\n"
        "\"fields\" are needed; a command may have \"from\" and \"target\", a record the \"form\" cmd or data. A field "
        "that\n"
        "is missing gets its default, {} is all defaults; an unknown field or a value out of range is an error that "
        "names\n"
        "its path. An object with \"id\" and \"payload\" and without a class is that command.\n"
        "Prints one line of hexadecimal digits for each: a command's stream frame, which decode reads again, and the\n"
        "bytes of a record or a message. A line that is not encoded is reported, and the next one follows. The exit "
        "code\n"
        "is 1 then.");
    CLI::Option* const payload =
        command->add_flag("--payload", options->m_Payload, "a command's payload, without a frame, as read takes it");
    CLI::Option* const packets = command->add_flag("--packets", options->m_Packets,
                                                   "each frame as a packet of a connection, after a 32-bit length");
    CLI::Option* const datagram = command->add_flag("--datagram", options->m_Datagram, "a command's datagram frame");
    payload->excludes(packets)->excludes(datagram);
    packets->excludes(datagram);
    command->add_flag("--raw", options->m_Raw, "the bytes themselves instead of digits");
    command
        ->add_option("--width", options->m_Width,
                     "of the text: as a host with 16 or with 32 bits per character writes it")
        ->type_name("16|32")
        ->check([](const std::string& text) { return text == "16" || text == "32" ? "" : "is neither 16 nor 32"; });
    command->add_option("FILE", options->m_Paths);
    command->callback([options, &chosen] { chosen = [options] { return Encoding(*options).run(); }; });
}

} // namespace wirelens
