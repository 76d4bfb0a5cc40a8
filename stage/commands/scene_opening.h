#pragma once

#include "stage/base/options.h"

#include <optional>
#include <string>
#include <vector>

namespace MVR {
struct CoreFault;
}

namespace Stage {

class Session;
struct SceneData;

/// The option --force, for the commands that open a scene.
inline constexpr Option kForceOption{
    "--force", nullptr, "save over a scene even if tools of it can't be created,\nand lose them"};

/// How a command opens a saved scene.
struct SceneOpening {
    std::string path;                 ///< the scene's file
    std::vector<std::string> targets; ///< the files that it will be saved to; "" for none
    bool isForced = false;            ///< even if that loses tools of it
};

/// Restores the scene, and prints what of it can't be created. Returns Ok, or Incomplete, with
/// which the command then goes on and ends, or CoreOrToolMissing if tools can't be created and one
/// of `targets` is the scene's own file, unless that is forced.
[[nodiscard]] ExitCode openScene(Session& session, const SceneData& data,
                                 const SceneOpening& opening);

/// Prints a line on the error stream for a fault of the core in the file `path`.
void tellFault(const std::string& path, const MVR::CoreFault& fault);

/// Reads the words of a command that has the common options alone, and opens the session. Returns
/// the code to end with, or nothing if the command is to run.
std::optional<ExitCode> openSession(const std::vector<std::string>& words, const std::string& help,
                                    Session& session);

} // namespace Stage
