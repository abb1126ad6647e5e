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
     "One line a class: a command with its id and its base, a record with its forms, a message with its forms and\n"
     "the envelope that carries it. A message that travels either way has two envelopes.\n"
     "  --json   one JSON array instead\n"},
    {"schema", "CLASS", "fields in wire order, types, defaults, quirks, smallest size", ""},
    {"new", "CLASS", "a default-made object as JSON", ""},
    {"read", "", "lines \"CLASS cmd|data HEX\" in, a JSON object a line out",
     "Reads lines from the standard input. cmd reads the bytes through the command packager, data through the data\n"
     "packager; of a command they are the payload without its frame. - stands for no bytes. Each answer says what "
     "Read\n"
     "made of them and what Write then gives.\n"},
    {"explain", "CLASS HEX", "offset, bytes, field and value, a line each",
     "- stands for no bytes. Exit code 1 where bytes are missing or left over.\n"},
    {"decode", "[--datagram|--packets] [FILE|-]", "frames from binary or hexadecimal as JSON lines",
     "Reads stream frames back to back from the file or the standard input, and shows each as soon as it is whole.\n"
     "The input is hexadecimal text where its first 8 bytes are digits and white space, else raw.\n"
     "  --packets    each frame is in a packet, after its length of 32 bits; a bad packet is told and passed over\n"
     "  --datagram   the input is one datagram with one frame\n"
     "Exit code 1 where a line has an \"error\".\n"},
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
