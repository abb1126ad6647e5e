#include "tools/wirelens/help.h"

#include "tools/wirelens/terminal.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <sstream>
#include <vector>

namespace wirelens
{

namespace
{

constexpr size_t kSummaryColumn = 36;
constexpr size_t kOptionColumn = 24;
constexpr char kExitCodes[] = "Exit codes: 0 good, 1 the input is bad, 2 misuse.";

bool isListed(const CLI::Option* option)
{
    return !option->get_positional() && !option->check_name("--help");
}

std::vector<const CLI::App*> commandsOf(const CLI::App* app)
{
    return app->get_subcommands([](const CLI::App*) { return true; });
}

bool takesSeveral(const CLI::Option* option)
{
    return option->get_items_expected_max() > 1;
}

// The name of a positional argument as it is in a form: "[FILE...]".
std::string placeOf(const CLI::Option* option)
{
    const std::string name = option->get_name() + (takesSeveral(option) ? "..." : "");
    return option->get_required() ? name : "[" + name + "]";
}

// "decode [OPTIONS] [FILE...]"
std::string formOf(const CLI::App* command)
{
    std::string form = "wirelens " + command->get_name();
    if (!command->get_options(isListed).empty())
        form += " [OPTIONS]";
    for (const CLI::Option* const option : command->get_options())
        if (option->get_positional())
            form += " " + placeOf(option);
    return form;
}

// "a|b" of an option that takes one of some words, else "".
std::string choicesOf(const CLI::Option* option)
{
    const std::string type = option->get_type_name();
    const size_t open = type.find('{');
    const size_t close = type.rfind('}');
    if (open == std::string::npos || close == std::string::npos)
        return "";
    std::string words = type.substr(open + 1, close - open - 1);
    std::replace(words.begin(), words.end(), ',', '|');
    return words;
}

// What people call the value of an option; empty for a flag.
std::string valueOf(const CLI::Option* option)
{
    if (option->get_items_expected_max() == 0)
        return "";
    const std::string type = option->get_type_name();
    return type.substr(0, type.find(':'));
}

// The name of an option with its value, and its description in a column of its own.
std::string lineOf(const CLI::Option* option, bool hasColours)
{
    std::string name = option->get_name();
    const std::string value = valueOf(option).empty() ? "" : " " + valueOf(option);
    const size_t size = 2 + name.size() + value.size();
    std::string description = option->get_description();
    if (const std::string choices = choicesOf(option); !choices.empty())
        description += ": " + choices;
    return "  " + bold(name, hasColours) + value + std::string(std::max(size + 2, kOptionColumn) - size, ' ') +
           description + "\n";
}

// A line of text with nothing that a page of the manual takes for a request.
std::string escaped(const std::string& text)
{
    std::string out;
    for (const char c : text)
    {
        if (c == '\\')
            out += "\\e";
        else if (c == '-')
            out += "\\-";
        else
            out += c;
    }
    return !out.empty() && (out[0] == '.' || out[0] == '\'') ? "\\&" + out : out;
}

// What completes a value: words, names of classes, files, or nothing.
std::string suggestionsOf(const CLI::Option* option)
{
    if (const std::string choices = choicesOf(option); !choices.empty())
        return choices;
    const std::string value = option->get_positional() ? option->get_name() : valueOf(option);
    static const std::vector<std::string> files = {"OLD", "NEW", "DOCUMENT", "CAPTURE"};
    if (value == "CLASS")
        return "@classes";
    if (value == "COMMAND")
        return "@commands";
    const bool isFile =
        value.find("FILE") != std::string::npos || std::find(files.begin(), files.end(), value) != files.end();
    return isFile ? "@files" : "";
}

} // namespace

std::string helpOf(const CLI::App* app, bool hasColours)
{
    if (app->get_parent())
    {
        std::string text = bold("usage:", hasColours) + " " + formOf(app) + "\n" + app->get_description() + "\n";
        for (const CLI::Option* const option : app->get_options())
            if (option->get_positional() && !choicesOf(option).empty())
                text += "  " + option->get_name() + " is " + choicesOf(option) + "\n";
        for (const CLI::Option* const option : app->get_options(isListed))
            text += lineOf(option, hasColours);
        return app->get_footer().empty() ? text : text + app->get_footer() + "\n";
    }
    std::string text = bold("usage:", hasColours) + "\n";
    for (const CLI::App* const command : commandsOf(app))
    {
        std::string form = formOf(command);
        form.resize(std::max(form.size() + 1, kSummaryColumn), ' ');
        text += "  " + form + command->get_description() + "\n";
    }
    return text + "  wirelens COMMAND --help\n  wirelens --version\n" + kExitCodes + "\n";
}

std::string manualOf(const CLI::App* app, const std::string& version)
{
    std::string page = ".TH WIRELENS 1 \"\" \"commonground " + version +
                       "\" \"commonground\"\n"
                       ".SH NAME\nwirelens \\- reads what the wire of commonground carries\n.SH SYNOPSIS\n";
    const std::vector<const CLI::App*> all = commandsOf(app);
    for (const CLI::App* const command : all)
        page += (command == all.front() ? ".B " : ".br\n.B ") + escaped(formOf(command)) + "\n";
    page += ".br\n.B wirelens COMMAND \\-\\-help\n.br\n.B wirelens \\-\\-version\n.SH COMMANDS\n";
    for (const CLI::App* const command : all)
    {
        page += ".SS \"" + escaped(formOf(command)) + "\"\n" + escaped(command->get_description()) + ".\n";
        if (!command->get_footer().empty())
        {
            page += ".PP\n";
            std::istringstream lines(command->get_footer());
            for (std::string line; std::getline(lines, line);)
                page += escaped(line) + "\n";
        }
        for (const CLI::Option* const option : command->get_options())
        {
            const std::string choices = choicesOf(option);
            if (option->check_name("--help") || (option->get_positional() && choices.empty()))
                continue;
            page += ".TP\n\\fB" + escaped(option->get_name()) + "\\fR";
            if (!option->get_positional() && !valueOf(option).empty())
                page += " \\fI" + escaped(valueOf(option)) + "\\fR";
            std::string description = option->get_description();
            if (!choices.empty())
                description += (description.empty() ? "one of " : ": ") + choices;
            page += "\n" + escaped(description) + ".\n";
        }
    }
    return page + ".SH EXIT STATUS\n.TP\n0\ngood.\n.TP\n1\nthe input is bad; of diff, something breaks.\n"
                  ".TP\n2\nmisuse.\n"
                  ".SH ENVIRONMENT\n.TP\nNO_COLOR\nif it is set, there are no colours on a terminal either.\n";
}

std::string bashCompletionOf(const CLI::App* app)
{
    // A line for each option or argument: its command, its name, or its number from 1, and what completes its value.
    std::string options;
    std::string values;
    std::string commands;
    for (const CLI::App* const command : commandsOf(app))
    {
        commands += (commands.empty() ? "" : " ") + command->get_name();
        options += "        " + command->get_name() + ") echo '";
        int place = 0;
        for (const CLI::Option* const option : command->get_options())
        {
            const bool isPlace = option->get_positional();
            place += isPlace ? 1 : 0;
            if (!isPlace)
                options += option->get_name() + " ";
            const std::string suggestions = suggestionsOf(option);
            const bool hasValue = option->get_items_expected_max() > 0 && !option->check_name("--help");
            if (hasValue)
                values += "        " + command->get_name() + ":" +
                          (isPlace ? takesSeveral(option) ? "*" : std::to_string(place) : option->get_name()) +
                          ") echo '" + suggestions + "' ;;\n";
        }
        options.back() = '\'';
        options += " ;;\n";
    }
    return "# Completes wirelens in bash. Made by wirelens help --completion bash.\n"
           "_wirelens_commands='" +
           commands + "'\n_wirelens_options()\n{\n    case $1 in\n" + options +
           "    esac\n}\n\n"
           "# What completes a value, of the command $1 and its option or place $2: words, or a kind of them.\n"
           "_wirelens_values()\n{\n    case $1:$2 in\n" +
           values +
           "        *) echo '@none' ;;\n"
           "    esac\n}\n\n" +
           R"bash(# Puts the suggestions for the last word of a command line into COMPREPLY.
_wirelens()
{
    local word=${COMP_WORDS[COMP_CWORD]} command='' place=0 kind=@none i=1 values
    COMPREPLY=()
    for ((; i < COMP_CWORD; ++i)); do
        local each=${COMP_WORDS[i]}
        kind=@none
        if [ -z "$command" ]; then
            command=$each
        elif [[ $each == --* ]]; then
            values=$(_wirelens_values "$command" "$each")
            # An option that takes a value: the next word is that value.
            if [ "$values" != @none ]; then
                kind=${values:-@nothing}
                ((++i))
            fi
        else
            ((++place))
        fi
    done
    # The value of the last option is the word itself only if it was not there before.
    ((i > COMP_CWORD)) || kind=@none
    if [ -z "$command" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$_wirelens_commands --help --version" -- "$word")
        return
    fi
    if [ "$kind" = @none ]; then
        if [[ $word == -* ]]; then
            mapfile -t COMPREPLY < <(compgen -W "$(_wirelens_options "$command")" -- "$word")
            return
        fi
        kind=$(_wirelens_values "$command" "$((place + 1))")
        [ "$kind" != @none ] || kind=$(_wirelens_values "$command" '*')
    fi
    case $kind in
        @files) mapfile -t COMPREPLY < <(compgen -f -- "$word") ;;
        @classes)
            mapfile -t COMPREPLY < <(compgen -W "$(wirelens catalogue 2>/dev/null | awk '{print $2}')" -- "$word")
            ;;
        @commands) mapfile -t COMPREPLY < <(compgen -W "$_wirelens_commands" -- "$word") ;;
        @*) ;;
        *) mapfile -t COMPREPLY < <(compgen -W "${kind//|/ }" -- "$word") ;;
    esac
}
complete -o filenames -F _wirelens wirelens
)bash";
}

std::string zshCompletionOf(const CLI::App* app)
{
    std::string text = "#compdef wirelens\n# Completes wirelens in zsh. Made by wirelens help --completion zsh.\n"
                       "_wirelens()\n{\n    local -a commands\n    commands=(\n";
    const auto quoted = [](std::string plain)
    {
        for (size_t at = 0; (at = plain.find_first_of("'[]:", at)) != std::string::npos; at += 2)
            plain.insert(at, "\\");
        // A quote ends the word, is added by itself, and starts it again.
        for (size_t at = 0; (at = plain.find("\\'", at)) != std::string::npos; at += 4)
            plain.replace(at, 2, "'\\''");
        return plain;
    };
    const auto actionOf = [](const CLI::Option* option)
    {
        std::string suggestions = suggestionsOf(option);
        if (suggestions == "@files")
            return std::string("_files");
        if (suggestions == "@classes")
            return std::string("_wirelens_classes");
        if (suggestions == "@commands")
            return std::string("_wirelens_commands");
        std::replace(suggestions.begin(), suggestions.end(), '|', ' ');
        return suggestions.empty() ? std::string(" ") : "(" + suggestions + ")";
    };
    std::string cases;
    for (const CLI::App* const command : commandsOf(app))
    {
        text += "        '" + command->get_name() + ":" + quoted(command->get_description()) + "'\n";
        cases += "        " + command->get_name() + ")\n            _arguments";
        for (const CLI::Option* const option : command->get_options())
        {
            cases += " \\\n                ";
            if (option->get_positional())
                cases += std::string(takesSeveral(option) ? "'*" : "'") + (option->get_required() ? ":" : "::") +
                         option->get_name() + ":" + actionOf(option) + "'";
            else
                cases += std::string("'") + (takesSeveral(option) ? "*" : "") + option->get_name() + "[" +
                         quoted(option->get_description()) + "]" +
                         (valueOf(option).empty() ? "" : ":" + valueOf(option) + ":" + actionOf(option)) + "'";
        }
        cases += "\n            ;;\n";
    }
    return text +
           "    )\n"
           "    _wirelens_commands() { _describe command commands }\n"
           "    _wirelens_classes() { compadd -- ${(f)\"$(wirelens catalogue 2>/dev/null | awk '{print $2}')\"} }\n"
           "    if ((CURRENT == 2)); then\n        _wirelens_commands\n        return\n    fi\n"
           "    local command=${words[2]}\n    shift words\n    ((CURRENT--))\n    case $command in\n" +
           cases + "    esac\n}\n_wirelens \"$@\"\n";
}

} // namespace wirelens
