#include "tools/wirelens/grammar.h"

#include "tools/class_table.h"
#include "tools/command_id.h"
#include "tools/wirelens/commands.h"
#include "tools/wirelens/help.h"
#include "tools/wirelens/options.h"
#include "tools/wirelens/terminal.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include <algorithm>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace wirelens
{

namespace
{

void addFilter(CLI::App& command, tools::LineFilter& filter)
{
    addRepeated(command, "--id", "ID", "only commands with this id, such as 0x1013",
                [&filter](const std::string& text) -> std::string
                {
                    const int id = tools::commandIdOf(text);
                    if (id < 0)
                        return "is not an id";
                    filter.m_Ids.push_back(static_cast<unsigned>(id));
                    return "";
                });
    addRepeated(command, "--class", "CLASS", "only commands of this class",
                [&filter](const std::string& text) -> std::string
                {
                    filter.m_Classes.push_back(text);
                    return tools::findClass(text) ? "" : "is not a class";
                });
    addRepeated(command, "--direction", "DIRECTION", "only commands to_server or to_client, of a capture",
                [&filter](const std::string& text) -> std::string
                {
                    filter.m_Directions.push_back(text);
                    return text == "to_server" || text == "to_client" ? "" : "is neither to_server nor to_client";
                });
    addRepeated(
        command, "--address", "ADDRESS",
        "only commands of a connection with this IP address, with or without :port, or with this from or target",
        [&filter](const std::string& text) -> std::string
        {
            filter.m_Addresses.push_back(text);
            return "";
        });
    addRepeated(command, "--field", "TEST", "only commands where this holds, such as 'm_Result != 0'",
                [&filter](const std::string& text) -> std::string
                {
                    const auto test = tools::FieldTest::parse(text);
                    if (!test)
                        return "is not a field, one of == != < <= > >= and a value";
                    filter.m_Fields.push_back(*test);
                    return "";
                });
    const auto addTime = [&command](const char* name, const char* description, std::string& time)
    {
        addRepeated(command, name, "TIME", description,
                    [&time](const std::string& text) -> std::string
                    {
                        time = tools::parseTime(text).value_or("");
                        return time.empty() ? "is neither like 2026-01-31T12:00:00Z nor seconds since 1970" : "";
                    });
    };
    addTime("--since",
            "only commands captured at this time or later: a date with or without time, or seconds since 1970",
            filter.m_Since);
    addTime("--until", "only commands captured before this time", filter.m_Until);
}

// The command that the arguments named, or the program.
const CLI::App* namedOf(const CLI::App& app)
{
    const auto named = app.get_subcommands();
    return named.empty() ? &app : named.front();
}

int misuse(const CLI::App* app, const std::string& what)
{
    const bool colours = hasColours(Stream::kError);
    std::cerr << red("wirelens: " + what, colours) << "\n" << helpOf(app, colours);
    return 2;
}

} // namespace

int run(int argc, const char* const* argv)
{
    CLI::App app;
    // A path may start with a slash on every system.
    app.allow_windows_style_options(false);
    app.require_subcommand(1);
    app.set_version_flag("--version", "wirelens " WIRELENS_VERSION);

    bool asJson = false;
    CLI::App* const catalogueCommand =
        addCommand(app, "catalogue", "every class: commands by id, records, messages by envelope",
                   "One line per class: a command with its id and its base, a record with its forms, a message with "
                   "its forms and\nthe envelope that carries it. A message that is sent both ways has two envelopes.");
    catalogueCommand->add_flag("--json", asJson, "one JSON array instead");

    std::string className;
    CLI::App* const schemaCommand =
        addCommand(app, "schema", "fields in wire order, types, defaults, quirks, smallest size",
                   "The document has all classes, or one and the records that it holds, with all that a codec needs:\n"
                   "see docs/wire.md.");
    CLI::Option* const schemaClass = schemaCommand->add_option("CLASS", className);
    schemaCommand->add_flag("--json", asJson, "one versioned JSON document instead; without CLASS of all classes");

    std::string older;
    std::string newer;
    CLI::App* const diffCommand = addCommand(
        app, "diff", "what a change of the schemas breaks, in sentences",
        "Compares two documents of wirelens schema --json, or one with the classes of this wirelens. - is the\n"
        "standard input. Each difference is one line: what breaks, and whether an older peer fails to read a\n"
        "newer one's bytes or a newer peer an older one's; what only adds; what is documentation, since the\n"
        "bytes stay.\n"
        "The exit code is 1 if something breaks, and 2 also for a document that cannot be read.");
    diffCommand->add_option("OLD", older)->required();
    diffCommand->add_option("NEW", newer);
    diffCommand->add_flag("--json", asJson, "one JSON object per line instead");

    std::string language;
    std::string document;
    CLI::App* const generateCommand = addCommand(
        app, "generate", "a codec for scripts: python, typescript or javascript",
        "Prints a module of one file without dependencies: a class for each command, record and message with\n"
        "its fields by name, encoding, decoding and frames. javascript is the typescript module without its\n"
        "types. It is made from the classes of this wirelens or from a document of wirelens schema --json.");
    generateCommand->add_option("LANGUAGE", language)
        ->required()
        ->check(CLI::IsMember({"python", "typescript", "javascript"}));
    generateCommand->add_option("DOCUMENT", document);

    CLI::App* const newCommand = addCommand(app, "new", "a default-constructed object as JSON", "");
    newCommand->add_option("CLASS", className)->required();

    CLI::App* const readCommand = addCommand(
        app, "read", "lines \"CLASS cmd|data HEX\" in, one JSON object per line out",
        "Reads lines from the standard input. cmd reads the bytes through the command packager, data through the data\n"
        "packager; for a command they are the payload without its frame. - means no bytes. Each result shows\n"
        "the object after Read and the bytes that Write then gives.");

    std::string hex;
    CLI::App* const explainCommand =
        addCommand(app, "explain", "offset, bytes, field and value, one line each",
                   "- means no bytes. The exit code is 1 if bytes are missing or left over.");
    explainCommand->add_option("CLASS", className)->required();
    explainCommand->add_option("HEX", hex)->required();

    DecodeOptions decodeOptions;
    CLI::App* const decodeCommand = addCommand(
        app, "decode", "commands from captures, binary or hexadecimal as JSON lines",
        "Reads each file, or the standard input, and prints each command as soon as it is complete.\n"
        "A capture (pcap or pcapng) is recognised by its beginning. Its TCP connections are put together in both\n"
        "directions, and its datagrams that are one frame, or frames after 16-bit lengths, are read; each line also\n"
        "has the time, the connection and the direction, and in a net session its message. What is lost, skipped or\n"
        "given up is reported on the standard error.\n"
        "Of several ids, classes, directions or addresses one must fit, of several fields all. Lines that are not\n"
        "commands are never left out.\n"
        "--count and --summary do not read the fields, unless commands are chosen by filters: they also count a\n"
        "command that its class refuses.\n"
        "Other input is consecutive stream frames. It is hexadecimal text if its first 8 bytes are digits and white\n"
        "space, else raw.\n"
        "The exit code is 1 if a line has an \"error\" or a capture is damaged.");
    CLI::Option* const packets = decodeCommand->add_flag(
        "--packets", decodeOptions.m_Packets,
        "each frame is in a packet, after a 32-bit length; a bad packet is reported and skipped");
    CLI::Option* const datagram =
        decodeCommand->add_flag("--datagram", decodeOptions.m_Datagram, "the input is one datagram with one frame")
            ->excludes(packets);
    decodeCommand
        ->add_flag("--udp-stream", decodeOptions.m_UdpStream,
                   "the input is the stream of a connection over UDP: a 16-bit length before each datagram frame")
        ->excludes(packets, datagram);
    CLI::Option* const count =
        decodeCommand->add_flag("--count", decodeOptions.m_Count, "print the number of commands only");
    decodeCommand
        ->add_flag("--summary", decodeOptions.m_Summary,
                   "print only the number and the payload bytes by class, and their rates in a capture, as JSON lines")
        ->excludes(count);
    decodeCommand->add_flag("--notices", decodeOptions.m_Notices,
                            "report what a capture lost or skipped as JSON lines among the commands");
    decodeCommand
        ->add_option("--pack-types", decodeOptions.m_PackTypes,
                     "open packs by the tables in this file, and tunnels in tunnels")
        ->type_name("FILE");
    addFilter(*decodeCommand, decodeOptions.m_Filter);
    decodeCommand->add_option("FILE", decodeOptions.m_Paths);

    Chosen chosen;
    addEncode(app, chosen);
    addSend(app, chosen);
    addServe(app, chosen);
    addProxy(app, chosen);
    addReplay(app, chosen);

    CLI::App* const dissectorCommand =
        addCommand(app, "dissector", "a dissector for Wireshark and tshark, in Lua",
                   "Prints one script. Put it into Wireshark's folder of personal Lua plugins, or name it:\n"
                   "  wirelens dissector > commonground.lua && tshark -X lua_script:commonground.lua -r FILE\n"
                   "Ports, the types of pack messages and the width of text are preferences of the protocol.");

    CLI::App* const docsCommand =
        addCommand(app, "docs", "the protocol reference as one page of HTML",
                   "Prints one page: frames and heads, then every class with its fields, quirks and an example. It\n"
                   "needs no network and no server: wirelens docs > protocol.html");

    std::string topic;
    std::string shell;
    bool asManual = false;
    CLI::App* const helpCommand =
        addCommand(app, "help", "the help of one command, or this list",
                   "The installation has the manual page and the scripts for both shells where these look for them.");
    helpCommand->add_option("COMMAND", topic);
    CLI::Option* const manual = helpCommand->add_flag("--man", asManual, "the manual page wirelens(1), for man");
    helpCommand->add_option("--completion", shell, "a script that completes command lines")
        ->type_name("SHELL")
        ->check(CLI::IsMember({"bash", "zsh"}))
        ->excludes(manual);

    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::CallForHelp&)
    {
        std::cout << helpOf(namedOf(app), hasColours(Stream::kOutput));
        return 0;
    }
    catch (const CLI::CallForVersion& version)
    {
        std::cout << version.what() << "\n";
        return 0;
    }
    catch (const CLI::ParseError& error)
    {
        if (namedOf(app) != &app)
            return misuse(namedOf(app), error.what());
        return misuse(&app, argc > 1 ? std::string("no command ") + argv[1] : "a command is missing");
    }

    if (helpCommand->parsed())
    {
        const auto named = app.get_subcommands([&](const CLI::App* command) { return command->get_name() == topic; });
        std::cout << (asManual          ? manualOf(&app, WIRELENS_VERSION)
                      : shell == "bash" ? bashCompletionOf(&app)
                      : shell == "zsh"  ? zshCompletionOf(&app)
                                        : helpOf(named.empty() ? &app : named.front(), hasColours(Stream::kOutput)));
        return 0;
    }
    if (chosen)
        return chosen();
    if (catalogueCommand->parsed())
        return catalogue(asJson);
    if (schemaCommand->parsed())
        return schemaClass->count() == 0 && !asJson ? misuse(schemaCommand, "CLASS is required")
                                                    : schema(className, asJson);
    if (diffCommand->parsed())
        return diff(older, newer, asJson);
    if (generateCommand->parsed())
        return generate(language, document);
    if (newCommand->parsed())
        return makeNew(className);
    if (readCommand->parsed())
        return read();
    if (explainCommand->parsed())
        return explain(className, hex);
    if (docsCommand->parsed())
        return docs();
    if (dissectorCommand->parsed())
        return dissector();
    return decode(decodeOptions);
}

} // namespace wirelens
