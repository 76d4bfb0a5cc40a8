// What the commands share.
#pragma once

#include "stage/base/options.h"
#include "stage/host/install_values.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace Stage {

/// A command of the program, or of one of its commands. A new one is a pair of files and a row.
struct Command {
    const char* name;
    const char* purpose;                                    ///< for the help
    ExitCode (*run)(const std::vector<std::string>& words); ///< the words that follow its name
};

/// Runs the command that the first word names, or prints help on all of them. `group`: the command
/// that they belong to, with a blank; "" for the program's own.
ExitCode runCommand(const std::string& group, const std::string& about,
                    std::span<const Command> commands, const std::vector<std::string>& words);

/// The earliest time that a command accepts, in seconds; times have single precision in a glTF
/// file.
constexpr double kLeastTime = -1e6;
/// The latest end of a take. A scene's file allows later ones: a take may extend its range.
constexpr double kLatestTime = 1e6;

/// Adds the options that every command has: --core, --data, --plugins, --documents, --verbose,
/// --help, --version.
std::vector<Option> withCommonOptions(std::vector<Option> options);
/// Applies an argument of these options; returns false if it is none of them.
bool takeCommonArgument(const Argument& argument, InstallValues& values);

/// Answers --help (with `help`) and --version. Returns true if one of them is among the words.
bool answerHelp(const std::vector<std::string>& words, const std::string& help);

/// Answers --help and --version, or reads the words by `options`: the common ones into `values`,
/// the others by `take`, in order, which returns false with a message in `error` for a wrong one.
/// Returns the exit code if the command has been answered or a word is wrong (the message is
/// printed), or nothing.
using TakeArgument = std::function<bool(const Argument& argument, std::string& error)>;
std::optional<ExitCode> readCommand(const std::vector<std::string>& words,
                                    const std::vector<Option>& options, const std::string& help,
                                    InstallValues& values, const TakeArgument& take = {});

} // namespace Stage
