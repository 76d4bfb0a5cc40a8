#pragma once

#include <string>
#include <vector>

namespace Stage {

/// The exit codes of the program; the help of each command explains them.
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
    NotAsPerformed = 9,
};

/// One option of a command, or one operand: a word that must be given, in the order of the table.
/// The table of a command is used for reading its options and for its help.
struct Option {
    const char* name;     ///< with its dashes; an operand's has none
    const char* argument; ///< what follows it, for the help; null if it stands alone
    const char* help;     ///< with "\n" where a line is to be broken
};

struct Argument {
    std::string name; ///< of the option or operand
    std::string value;
};

/// Reads "--name value", "--name=value", "--name" and operands by the table, in order. Returns
/// false, with a message for the user in `error`, for a word that the table lacks or a missing
/// operand.
[[nodiscard]] bool readArguments(const std::vector<std::string>& words,
                                 const std::vector<Option>& options,
                                 std::vector<Argument>& arguments, std::string& error);

/// Reads the value as a number from `least` to `most`. Returns false, with a message in `error`, if
/// it isn't one.
[[nodiscard]] bool readNumber(const Argument& argument, double least, double most, double& out,
                              std::string& error);
[[nodiscard]] bool readNumber(const Argument& argument, int least, int most, int& out,
                              std::string& error);

/// Returns the table as lines of the help.
std::string describe(const std::vector<Option>& options);

/// Returns the exit codes as lines of the help, the lowest first.
std::string describe(std::vector<ExitCode> codes);

/// Writes a line "mirvane-stage: <message>" to the error stream.
void complain(const std::string& message);

} // namespace Stage
