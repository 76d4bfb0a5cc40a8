#pragma once

#include "stage/install_values.h"
#include "stage/options.h"

#include <string>
#include <vector>

/// The commands of the program. Each takes the words behind its name.
namespace Stage {

ExitCode recordCommand(const std::vector<std::string>& words);
ExitCode toolsCommand(const std::vector<std::string>& words);
ExitCode devicesCommand(const std::vector<std::string>& words);

void printVersion();

/// The options that every command has: --core, --data, --plugins, --documents, --help, --version.
std::vector<Option> commonOptions();
/// Takes an argument of these; false if it is none of them.
bool takeCommonArgument(const Argument& argument, InstallValues& values);

/// Answers --help (with `help`) and --version. True if one of them is among the words.
bool answerHelp(const std::vector<std::string>& words, const std::string& help);

} // namespace Stage
