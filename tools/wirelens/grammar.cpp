#include "tools/wirelens/grammar.h"

#include "tools/class_table.h"
#include "tools/wirelens/commands.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace wirelens
{

namespace
{

constexpr size_t kSummaryColumn = 36;
constexpr size_t kOptionColumn = 24;

bool isListed(const CLI::Option* option)
{
    return !option->get_positional() && !option->check_name("--help");
}

// "decode [OPTIONS] [FILE...]"
std::string formOf(const CLI::App* command)
{
    std::string form = "wirelens " + command->get_name();
    if (!command->get_options(isListed).empty())
        form += " [OPTIONS]";
    for (const CLI::Option* const option : command->get_options())
        if (option->get_positional())
        {
            const std::string name = option->get_name() + (option->get_items_expected_max() > 1 ? "..." : "");
            form += option->get_required() ? " " + name : " [" + name + "]";
        }
    return form;
}

// The name of an option with its value, and its description in a column of its own.
std::string lineOf(const CLI::Option* option)
{
    std::string line = "  " + option->get_name();
    if (option->get_items_expected_max() > 0)
        line += " " + option->get_type_name();
    line.resize(std::max(line.size() + 2, kOptionColumn), ' ');
    return line + option->get_description() + "\n";
}

std::string helpOf(const CLI::App* app)
{
    if (app->get_parent())
    {
        std::string text = "usage: " + formOf(app) + "\n" + app->get_description() + "\n";
        for (const CLI::Option* const option : app->get_options(isListed))
            text += lineOf(option);
        return app->get_footer().empty() ? text : text + app->get_footer() + "\n";
    }
    std::string text = "usage:\n";
    for (const CLI::App* const command : app->get_subcommands([](const CLI::App*) { return true; }))
    {
        std::string form = formOf(command);
        form.resize(std::max(form.size() + 1, kSummaryColumn), ' ');
        text += "  " + form + command->get_description() + "\n";
    }
    return text + "  wirelens COMMAND --help\n  wirelens --version\n"
                  "Exit codes: 0 good, 1 the input is bad, 2 misuse.\n";
}

CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& summary, const std::string& details)
{
    CLI::App* const command = app.add_subcommand(name, summary);
    command->footer(details);
    return command;
}

// An option that may be given several times. Its function stores one value, and returns what is wrong with it.
void addRepeated(CLI::App& command, const std::string& name, const std::string& type, const std::string& description,
                 const std::function<std::string(const std::string&)>& store)
{
    command
        .add_option_function<std::vector<std::string>>(
            name,
            [name, store](const std::vector<std::string>& values)
            {
                for (const std::string& value : values)
                    if (const std::string fault = store(value); !fault.empty())
                        throw CLI::ValidationError(name, std::string(value).append(" ").append(fault));
            },
            description)
        ->type_name(type)
        ->allow_extra_args(false);
}

// The id in a text, decimal or hexadecimal, or -1.
int idOf(const std::string& text)
{
    const bool isHex = text.starts_with("0x");
    const std::string digits = isHex ? text.substr(2) : text;
    if (digits.empty() || digits.size() > 5 ||
        digits.find_first_not_of(isHex ? "0123456789abcdefABCDEF" : "0123456789") != std::string::npos)
        return -1;
    const unsigned long id = std::stoul(digits, nullptr, isHex ? 16 : 10);
    return id <= 0xFFFF ? static_cast<int>(id) : -1;
}

void addFilter(CLI::App& command, tools::LineFilter& filter)
{
    addRepeated(command, "--id", "ID", "only commands with this id, such as 0x1013",
                [&filter](const std::string& text) -> std::string
                {
                    const int id = idOf(text);
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
    std::cerr << "wirelens: " << what << "\n" << helpOf(app);
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
        addCommand(app, "schema", "fields in wire order, types, defaults, quirks, smallest size", "");
    schemaCommand->add_option("CLASS", className)->required();

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
        "directions, and its datagrams that are one frame are read; each line also has the time, the connection and\n"
        "the direction. What is lost, skipped or given up is reported on the standard error.\n"
        "Of several ids, classes, directions or addresses one must fit, of several fields all. Lines that are not\n"
        "commands are never left out.\n"
        "Other input is consecutive stream frames. It is hexadecimal text if its first 8 bytes are digits and white\n"
        "space, else raw.\n"
        "The exit code is 1 if a line has an \"error\" or a capture is damaged.");
    CLI::Option* const packets = decodeCommand->add_flag(
        "--packets", decodeOptions.m_Packets,
        "each frame is in a packet, after a 32-bit length; a bad packet is reported and skipped");
    decodeCommand->add_flag("--datagram", decodeOptions.m_Datagram, "the input is one datagram with one frame")
        ->excludes(packets);
    decodeCommand->add_flag("--notices", decodeOptions.m_Notices,
                            "report what a capture lost or skipped as JSON lines among the commands");
    addFilter(*decodeCommand, decodeOptions.m_Filter);
    decodeCommand->add_option("FILE", decodeOptions.m_Paths);

    std::string topic;
    CLI::App* const helpCommand = addCommand(app, "help", "the help of one command, or this list", "");
    helpCommand->add_option("COMMAND", topic);

    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::CallForHelp&)
    {
        std::cout << helpOf(namedOf(app));
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
        std::cout << helpOf(named.empty() ? &app : named.front());
        return 0;
    }
    if (catalogueCommand->parsed())
        return catalogue(asJson);
    if (schemaCommand->parsed())
        return schema(className);
    if (newCommand->parsed())
        return makeNew(className);
    if (readCommand->parsed())
        return read();
    if (explainCommand->parsed())
        return explain(className, hex);
    return decode(decodeOptions);
}

} // namespace wirelens
