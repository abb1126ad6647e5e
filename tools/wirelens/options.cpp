#include "tools/wirelens/options.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>
#include <CLI/Validators.hpp>

#include <vector>

namespace wirelens
{

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

void addSeconds(CLI::App& command, const std::string& name, const std::string& description, double& seconds)
{
    // Ticks are milliseconds: with less, the time would be over before anything can happen.
    constexpr double kLeast = 0.001;
    constexpr double kDay = 24 * 60 * 60;
    command.add_option(name, seconds, description)
        ->type_name("SECONDS")
        ->check(CLI::Range(kLeast, kDay).description(""));
}

} // namespace wirelens
