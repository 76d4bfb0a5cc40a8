#pragma once

#include "stage/import/imported_node.h"

#include <string>
#include <vector>

namespace Stage {

/// Reads the text of an OBJ file: a root node for each "o" or "g" with faces, which are cut into
/// triangles. What has no name is called `fallbackName`. Materials are not looked at, nor is any
/// other file. False, with the reason in `error`, if there is something wrong with it.
[[nodiscard]] bool readObj(const std::string& text, const std::string& fallbackName,
                           std::vector<ImportedNode>& out, std::string& error);

} // namespace Stage
