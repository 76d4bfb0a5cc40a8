#pragma once

#include "stage/base/options.h"

#include <initializer_list>
#include <string>
#include <vector>

/// The files that commands write.
namespace Stage {

class Scene;
class StageNode;
struct ShownAsCameras;

/// The option --as, for the commands that write glTF.
inline constexpr Option kAsOption{"--as", "camera[:OBJECT]",
                                  "in glTF, show each moving object without a mesh as a camera,\n"
                                  "or the named one. May be repeated"};

/// Reads the value of kAsOption, and adds it. Returns false, with a message in `error`, if it has
/// another form.
[[nodiscard]] bool addCamera(const Argument& argument, ShownAsCameras& out, std::string& error);

/// Returns Ok, or BadBinding, with a message, if the scene lacks an object that is to be a camera.
[[nodiscard]] ExitCode checkCameras(const Scene& scene, const ShownAsCameras& cameras);

/// Prints `message` and returns `code`.
ExitCode fail(ExitCode code, const std::string& message);

/// Checks beforehand that the outputs can be written: each path's folder exists, and the path isn't
/// a folder; and that they may be: no two outputs share a file, and none replaces one of `sources`,
/// files that are read. `scenes` are outputs too: they may replace a source, but can't go to a
/// pipe. Ignores empty paths.
[[nodiscard]] ExitCode checkOutputs(const std::vector<std::string>& paths,
                                    const std::vector<std::string>& sources = {},
                                    const std::vector<std::string>& scenes = {});

/// Replaces a file, or does nothing for an empty path.
[[nodiscard]] ExitCode writeOutput(const std::string& path, const std::string& bytes);

/// Writes the nodes as glTF to `out` and their curves as a table to `outCurves`; either may be
/// empty. `start`: of the range, in seconds.
[[nodiscard]] ExitCode writeNodes(const std::vector<const StageNode*>& nodes, double start,
                                  const ShownAsCameras& cameras, const std::string& out,
                                  const std::string& outCurves);

/// Writes out what was printed. Returns `code`, but OutputNotWritten, with a message, if that is Ok
/// and some of it is lost, such as on a full disk.
[[nodiscard]] ExitCode flushOutput(ExitCode code);

/// Returns the first code that isn't Ok, or Ok.
ExitCode firstFailure(std::initializer_list<ExitCode> codes);

} // namespace Stage
