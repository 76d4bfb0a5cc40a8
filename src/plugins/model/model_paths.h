/// \file
/// Files that a model names. A model may come from anybody, so it reaches no file of its own accord
/// but those beside it.
#pragma once

#include <string>

namespace MVR {

/// The full path, links followed, of the file that a model in `modelFolder` calls `name`: a path
/// below that folder, or an absolute one, in which the path macros count. It must lie in the
/// model's folder, the user's documents root or the shared data, wherever "..", absolute paths
/// and links lead. "" with a line in the log if it doesn't, or if there is no such file.
/// Without a model folder only absolute names can be found.
std::string findModelFile(const std::string& modelFolder, const std::string& name);

} // namespace MVR
