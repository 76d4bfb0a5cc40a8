#pragma once

#include "stage/base/options.h"

#include <initializer_list>
#include <string>
#include <vector>

/// The files that commands write.
namespace Stage {

class StageNode;

/// Tells `message` and passes on `code`.
ExitCode fail(ExitCode code, const std::string& message);

/// Finds out beforehand what can't be written: a path whose folder isn't there, or that is a
/// folder; and what must not be: two outputs in one file, or one in the place of `sources`, files
/// of other kinds that are read. Empty paths are passed over.
[[nodiscard]] ExitCode checkOutputs(const std::vector<std::string>& paths,
                                    const std::vector<std::string>& sources = {});

/// Replaces a file, or does nothing for an empty path.
[[nodiscard]] ExitCode writeOutput(const std::string& path, const std::string& bytes);

/// Writes the nodes as glTF to `out` and their curves as a table to `outCurves`; either may be
/// empty. `start`: of the range, in seconds.
[[nodiscard]] ExitCode writeNodes(const std::vector<const StageNode*>& nodes, double start,
                                  const std::string& out, const std::string& outCurves);

/// The first of the codes that isn't Ok.
ExitCode firstFailure(std::initializer_list<ExitCode> codes);

} // namespace Stage
