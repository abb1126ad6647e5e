#include "tools/wirelens/usage.h"

#include <algorithm>
#include <iostream>

namespace wirelens
{

namespace
{

struct Command
{
    const char* m_Name;
    const char* m_Arguments;
    const char* m_Summary;
    const char* m_Details;
};

constexpr Command kCommands[] = {
    {"catalogue", "[--json]", "every class: commands by id, records, messages by envelope",
     "One line per class: a command with its id and its base, a record with its forms, a message with its forms and\n"
     "the envelope that carries it. A message that is sent both ways has two envelopes.\n"
     "  --json   one JSON array instead\n"},
    {"schema", "CLASS", "fields in wire order, types, defaults, quirks, smallest size", ""},
    {"new", "CLASS", "a default-constructed object as JSON", ""},
    {"read", "", "lines \"CLASS cmd|data HEX\" in, one JSON object per line out",
     "Reads lines from the standard input. cmd reads the bytes through the command packager, data through the data\n"
     "packager; for a command they are the payload without its frame. - means no bytes. Each result shows\n"
     "the object after Read and the bytes that Write then gives.\n"},
    {"explain", "CLASS HEX", "offset, bytes, field and value, one line each",
     "- means no bytes. The exit code is 1 if bytes are missing or left over.\n"},
    {"decode", "[--datagram|--packets] [FILE|-]", "frames from binary or hexadecimal as JSON lines",
     "Reads consecutive stream frames from the file or the standard input, and prints each as soon as it is complete.\n"
     "The input is hexadecimal text if its first 8 bytes are digits and white space, else raw.\n"
     "  --packets    each frame is in a packet, after a 32-bit length; a bad packet is reported and skipped\n"
     "  --datagram   the input is one datagram with one frame\n"
     "The exit code is 1 if a line has an \"error\".\n"},
};

const Command* find(const std::string& name)
{
    for (const Command& command : kCommands)
        if (name == command.m_Name)
            return &command;
    return nullptr;
}

std::string formOf(const Command& command)
{
    std::string form = std::string("wirelens ") + command.m_Name;
    if (*command.m_Arguments)
        form.append(" ").append(command.m_Arguments);
    return form;
}

} // namespace

bool isCommand(const std::string& name)
{
    return find(name) != nullptr;
}

void printHelp(std::ostream& out, const std::string& name)
{
    if (const Command* const command = find(name))
    {
        out << "usage: " << formOf(*command) << "\n" << command->m_Summary << "\n" << command->m_Details;
        return;
    }
    out << "usage:\n";
    for (const Command& command : kCommands)
    {
        std::string form = formOf(command);
        form.resize(std::max<size_t>(form.size() + 1, 48), ' ');
        out << "  " << form << command.m_Summary << "\n";
    }
    out << "  wirelens COMMAND --help\n"
           "  wirelens --version\n"
           "Exit codes: 0 good, 1 the input is bad, 2 misuse.\n";
}

int misuse(const std::string& name, const std::string& what)
{
    std::cerr << "wirelens: " << what << "\n";
    printHelp(std::cerr, name);
    return 2;
}

} // namespace wirelens
