#pragma once

#include "stage/base/options.h"
#include "stage/host/install_values.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

/// The commands of the program. Each takes the words behind its name.
namespace Stage {

ExitCode recordCommand(const std::vector<std::string>& words);
ExitCode resimulateCommand(const std::vector<std::string>& words);
ExitCode modelCommand(const std::vector<std::string>& words);
ExitCode toolsCommand(const std::vector<std::string>& words);
ExitCode devicesCommand(const std::vector<std::string>& words);

/// The earliest time that a command takes, in seconds; times are single numbers in a glTF file.
constexpr double kLeastTime = -1e6;
/// The latest end of a take. A scene's file takes later ones: a take may make its range longer.
constexpr double kLatestTime = 1e6;

void printVersion();

/// Adds the options that every command has: --core, --data, --plugins, --documents, --help,
/// --version.
std::vector<Option> withCommonOptions(std::vector<Option> options);
/// Takes an argument of these; false if it is none of them.
bool takeCommonArgument(const Argument& argument, InstallValues& values);

/// Answers --help (with `help`) and --version. True if one of them is among the words.
bool answerHelp(const std::vector<std::string>& words, const std::string& help);

/// Answers --help and --version, or reads the words by `options`: the common ones into `values`,
/// each other by `take`, in order, which is false with a message in `error` for a wrong one. The
/// code to end with if the command is answered or a word is wrong, which is told; else nothing.
using TakeArgument = std::function<bool(const Argument& argument, std::string& error)>;
std::optional<ExitCode> readCommand(const std::vector<std::string>& words,
                                    const std::vector<Option>& options, const std::string& help,
                                    InstallValues& values, const TakeArgument& take = {});

} // namespace Stage
