#pragma once

#include <string>

namespace Stage {

/// Reads the text of a model or a profile's file, compressed or plain, and replaces packed elements
/// by their trees. Returns false, with the fault and its position in `error`, such as "line 3,
/// column 7: ...", if it isn't such a file or is damaged.
[[nodiscard]] bool toModelText(const std::string& bytes, std::string& out, std::string& error);

} // namespace Stage
