// Parts of the grammar, for commands that describe their own options.
#pragma once

#include <functional>
#include <string>

namespace CLI
{
class App;
}

namespace wirelens
{

// What the command line asks for. A command that describes its own options sets it when it is parsed.
using Chosen = std::function<int()>;

CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& summary, const std::string& details);

// An option that may be given several times. Its function stores one value, and returns what is wrong with it.
void addRepeated(CLI::App& command, const std::string& name, const std::string& type, const std::string& description,
                 const std::function<std::string(const std::string&)>& store);

// An option for a time: seconds from a millisecond to a day, with or without a fraction.
void addSeconds(CLI::App& command, const std::string& name, const std::string& description, double& seconds);

// The commands with files of their own.
void addEncode(CLI::App& app, Chosen& chosen);
void addSend(CLI::App& app, Chosen& chosen);
void addServe(CLI::App& app, Chosen& chosen);
void addProxy(CLI::App& app, Chosen& chosen);
void addReplay(CLI::App& app, Chosen& chosen);

} // namespace wirelens
