#include "stage/commands/commands.h"

#include "core/contract/adaptor_interface.h"

#include <cstdio>
#include <iterator>

namespace Stage {

void printVersion() {
    std::printf("mirvane-stage %s (core interface %d)\n", MIRVANE_STAGE_VERSION, MVR::kCoreVersion);
}

std::vector<Option> withCommonOptions(std::vector<Option> options) {
    const Option common[] = {
        {"--core", "PATH", "the core library; else MIRVANE_CORE, else the one beside this program"},
        {"--plugins", "FOLDER", "tool libraries, in place of those beside the core"},
        {"--data", "FOLDER", "shared data; drivers lie in its folder \"unidevice\""},
        {"--documents", "FOLDER", "where settings, profiles and the log go; else your documents"},
        {"--help", nullptr, "this text"},
        {"--version", nullptr, "the version"},
    };
    options.insert(options.end(), std::begin(common), std::end(common));
    return options;
}

bool takeCommonArgument(const Argument& argument, InstallValues& values) {
    std::string* const value = argument.name == "--core"        ? &values.core
                               : argument.name == "--plugins"   ? &values.plugins
                               : argument.name == "--data"      ? &values.data
                               : argument.name == "--documents" ? &values.documents
                                                                : nullptr;
    if (value != nullptr) {
        *value = argument.value;
    }
    return value != nullptr;
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
    if (answerHelp(words, help)) {
        return ExitCode::Ok;
    }
    std::vector<Argument> arguments;
    std::string error;
    bool isGood = readArguments(words, options, arguments, error);
    for (std::size_t i = 0; isGood && i < arguments.size(); ++i) {
        isGood = takeCommonArgument(arguments[i], values) || take(arguments[i], error);
    }
    if (!isGood) {
        complain(error);
        return ExitCode::Usage;
    }
    return std::nullopt;
}

} // namespace Stage
