#pragma once

#include <string>
#include <vector>

namespace Stage {

/// What the program ends with; told in the help of each command.
enum class ExitCode {
    Ok = 0,
    Usage = 1,
    CoreOrToolMissing = 2,
    BadBinding = 3,
    OutputNotWritten = 4,
    CutShort = 5,
    CheckFailed = 6,
};

/// One option of a command. A table of them is both what is read and what the help shows.
struct Option {
    const char* name;     ///< with its dashes
    const char* argument; ///< what follows it, for the help; null for an option that stands alone
    const char* help;     ///< lines end with "\n" where they are to be broken
};

struct Argument {
    std::string name; ///< of the option
    std::string value;
};

/// Reads "--name value", "--name=value" and "--name" by the table, in order. False, with a message
/// for the user in `error`, for what the table doesn't have.
[[nodiscard]] bool readArguments(const std::vector<std::string>& words,
                                 const std::vector<Option>& options,
                                 std::vector<Argument>& arguments, std::string& error);

/// The value as a number of at least `least`; false, with a message in `error`, if it is none.
[[nodiscard]] bool readNumber(const Argument& argument, double least, double& out,
                              std::string& error);
[[nodiscard]] bool readNumber(const Argument& argument, int least, int most, int& out,
                              std::string& error);

/// The table as lines of the help.
std::string describe(const std::vector<Option>& options);

/// The exit codes as lines of the help, those of `codes` only.
std::string describe(const std::vector<ExitCode>& codes);

/// Writes a line "mirvane-stage: <message>" to the error stream.
void complain(const std::string& message);

} // namespace Stage
