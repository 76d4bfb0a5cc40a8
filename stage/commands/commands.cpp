#include "stage/commands/commands.h"

#include "core/contract/adaptor_interface.h"
#include "stage/base/nearest_name.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <string_view>

namespace Stage {

namespace {

void printVersion() {
    std::printf("mirvane-stage %s (core interface %d)\n", MIRVANE_STAGE_VERSION, MVR::kCoreVersion);
}

std::string helpOf(const std::string& group, const std::string& about,
                   std::span<const Command> commands) {
    std::size_t width = 0;
    for (const Command& command : commands)
        width = std::max(width, std::string_view(command.name).size());
    std::string help = "usage: mirvane-stage " + group + "COMMAND [OPTIONS]\n\n" + about + "\n\n";
    for (const Command& command : commands) {
        std::string name = command.name;
        name.resize(width, ' ');
        help += "  " + name + "  " + command.purpose + "\n";
    }
    return help + "\nmirvane-stage " + group +
           "COMMAND --help says more. --version prints the version.\n";
}

} // namespace

ExitCode runCommand(const std::string& group, const std::string& about,
                    std::span<const Command> commands, const std::vector<std::string>& words) {
    const std::string help = helpOf(group, about, commands);
    if (words.empty()) {
        std::fputs(help.c_str(), stderr);
        return ExitCode::Usage;
    }
    const std::string& name = words.front();
    for (const Command& command : commands)
        if (name == command.name)
            return command.run({words.begin() + 1, words.end()});
    if (answerHelp({name == "help" ? "--help" : name}, help))
        return ExitCode::Ok;
    std::vector<std::string> names;
    for (const Command& command : commands)
        names.emplace_back(command.name);
    complain("no command named \"" + group + name + "\"" + askForNearest(name, names) +
             " (mirvane-stage " + group + "--help lists them)");
    return ExitCode::Usage;
}

std::vector<Option> withCommonOptions(std::vector<Option> options) {
    const Option common[] = {
        {"--core", "PATH",
         "the core library; by default MIRVANE_CORE, or the one\nbeside this program"},
        {"--plugins", "FOLDER", "tool libraries, instead of those beside the core"},
        {"--data", "FOLDER", "shared data; its folder \"unidevice\" holds the drivers"},
        {"--documents", "FOLDER",
         "for settings, profiles and the log (core.log in\nOskelworks/Mirvane/Data/core); by "
         "default your documents"},
        {"--verbose", nullptr, "print the core's log at the end, on the error stream"},
        {"--help", nullptr, "print this text"},
        {"--version", nullptr, "print the version"},
    };
    options.insert(options.end(), std::begin(common), std::end(common));
    return options;
}

bool takeCommonArgument(const Argument& argument, InstallValues& values) {
    values.isVerbose = values.isVerbose || argument.name == "--verbose";
    std::string* const value = argument.name == "--core"        ? &values.core
                               : argument.name == "--plugins"   ? &values.plugins
                               : argument.name == "--data"      ? &values.data
                               : argument.name == "--documents" ? &values.documents
                                                                : nullptr;
    if (value != nullptr)
        *value = argument.value;
    return value != nullptr || argument.name == "--verbose";
}

bool answerHelp(const std::vector<std::string>& words, const std::string& help) {
    for (const std::string& word : words) {
        if (word == "--help" || word == "-h") {
            std::fputs(help.c_str(), stdout);
            return true;
        }
        if (word == "--version") {
            printVersion();
            return true;
        }
    }
    return false;
}

std::optional<ExitCode> readCommand(const std::vector<std::string>& words,
                                    const std::vector<Option>& options, const std::string& help,
                                    InstallValues& values, const TakeArgument& take) {
    if (answerHelp(words, help))
        return ExitCode::Ok;
    std::vector<Argument> arguments;
    std::string error;
    bool isGood = readArguments(words, options, arguments, error);
    for (std::size_t i = 0; isGood && i < arguments.size(); ++i)
        isGood = takeCommonArgument(arguments[i], values) || take(arguments[i], error);
    if (!isGood) {
        complain(error);
        return ExitCode::Usage;
    }
    return std::nullopt;
}

} // namespace Stage
