// Files that the user owns and the system writes.
#pragma once

#include "data/sdk/tag.h"

#include <string>

namespace MVR {

/// Copies what is at `path`, which is damaged, beside it: under its name with ".bad" behind it, and
/// then a number if an older copy differs. To be called before the first save over it. Returns
/// false, with a line in the log, if that fails: then it must not be saved over.
[[nodiscard]] bool keepDamagedFile(const std::string& path);

/// Saves as Tag::save() does. What is at `path` is kept by keepDamagedFile() if it isn't the whole
/// text of an element that has the name of `tree`.
[[nodiscard]] bool saveUserFile(const Tag& tree, const std::string& path);

} // namespace MVR
