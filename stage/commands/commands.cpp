#include "stage/commands/commands.h"

#include "core/adaptor_interface.h"

#include <cstdio>

namespace Stage {

void printVersion() {
    std::printf("mirvane-stage %s (core interface %d)\n", MIRVANE_STAGE_VERSION, MVR::kCoreVersion);
}

std::vector<Option> commonOptions() {
    return {
        {"--core", "PATH", "the core library; else MIRVANE_CORE, else the one beside this program"},
        {"--plugins", "FOLDER", "tool libraries, in place of those beside the core"},
        {"--data", "FOLDER", "shared data; drivers lie in its folder \"unidevice\""},
        {"--documents", "FOLDER", "where settings, profiles and the log go; else your documents"},
        {"--help", nullptr, "this text"},
        {"--version", nullptr, "the version"},
    };
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

} // namespace Stage
