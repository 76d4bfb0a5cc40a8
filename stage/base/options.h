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
    BadFile = 7,
    Incomplete = 8,
};

/// One option of a command, or one operand: a word that must be given, in the order of the table. A
/// table of them is both what is read and what the help shows.
struct Option {
    const char* name;     ///< with its dashes; an operand's has none
    const char* argument; ///< what follows it, for the help; null for what stands alone
    const char* help;     ///< lines end with "\n" where they are to be broken
};

struct Argument {
    std::string name; ///< of the option or operand
    std::string value;
};

/// Reads "--name value", "--name=value", "--name" and operands by the table, in order. False, with
/// a message for the user in `error`, for what the table doesn't have, or if an operand is missing.
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
