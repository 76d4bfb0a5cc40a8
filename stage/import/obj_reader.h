#pragma once

#include "stage/import/imported_node.h"

#include <string>
#include <vector>

namespace Stage {

/// Reads the text of an OBJ file: a root node for each "o" or "g" with faces, which are cut into
/// triangles. A part without a name gets `fallbackName`. Ignores materials and all other files.
/// Returns false, with the reason in `error`, on a fault.
[[nodiscard]] bool readObj(const std::string& text, const std::string& fallbackName,
                           std::vector<ImportedNode>& out, std::string& error);

} // namespace Stage
