#pragma once

#include "stage/base/options.h"

#include <string>

namespace MVR {
struct CoreFault;
}

namespace Stage {

class Session;
struct SceneData;

/// The option --force, for the commands that open a scene.
inline constexpr Option kForceOption{
    "--force", nullptr, "save over a scene though tools of it can't be made, and lose them"};

/// How a command goes on from a scene that was saved.
struct SceneOpening {
    std::string path;      ///< the scene's file
    std::string target;    ///< the file that it will be saved to; empty for none
    bool isForced = false; ///< also if tools of it would be lost by that
};

/// Brings the scene back, and tells what of it can't be made. Ok or Incomplete to go on, Incomplete
/// being what the command then ends with. CoreOrToolMissing if tools can't be made and `target` is
/// the scene's own file, unless that is forced.
[[nodiscard]] ExitCode openScene(Session& session, const SceneData& data,
                                 const SceneOpening& opening);

/// One line of the error stream for a fault of the core, which came with the file `path`.
void tellFault(const std::string& path, const MVR::CoreFault& fault);

} // namespace Stage
