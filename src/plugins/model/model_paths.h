// Files that a model names. A model may come from anybody, so by itself it reaches only files
// beside it.
#pragma once

#include <string>

namespace MVR {

/// Returns the full path, links followed, of the file that a model in `modelFolder` calls `name`: a
/// path below that folder, or an absolute one, in which path macros are expanded. Wherever "..",
/// absolute paths and links lead, it must be in the model's folder, the user's documents root or
/// the shared data. Returns "", with a line in the log, if it isn't, or if there is no such file.
/// Without a model folder only absolute names can be found.
std::string findModelFile(const std::string& modelFolder, const std::string& name);

} // namespace MVR
